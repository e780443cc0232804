// GLFW 3.4 drops the place that Wayland sends with the pointer's entry: until it moves,
// a click would go to where it was before. So the seat is asked for a pointer of our
// own, whose events GLFW hands out with its own ones.
#include "platform/window_system.hpp"

#include <wayland-client.h>

#define GLFW_EXPOSE_NATIVE_WAYLAND
#include <GLFW/glfw3.h>
#include <GLFW/glfw3native.h>

#include <cstdint>
#include <cstring>

namespace vimbo
{

namespace
{

struct pointer_entry {
    GLFWwindow *window;
    void (*entered)(GLFWwindow *, double, double);
    wl_registry *registry;
    wl_seat *seat;
    wl_pointer *pointer;
};

pointer_entry watched;

void on_enter(void * /*user*/, wl_pointer * /*pointer*/, std::uint32_t /*serial*/,
              wl_surface *surface, wl_fixed_t x, wl_fixed_t y)
{
    if (surface == glfwGetWaylandWindow(watched.window))
        watched.entered(watched.window, wl_fixed_to_double(x), wl_fixed_to_double(y));
}

// The rest is GLFW's to tell.
constexpr wl_pointer_listener pointer_listener = {
    .enter = on_enter,
    .leave = [](void *, wl_pointer *, std::uint32_t, wl_surface *) {},
    .motion = [](void *, wl_pointer *, std::uint32_t, wl_fixed_t, wl_fixed_t) {},
    .button = [](void *, wl_pointer *, std::uint32_t, std::uint32_t, std::uint32_t,
                 std::uint32_t) {},
    .axis = [](void *, wl_pointer *, std::uint32_t, std::uint32_t, wl_fixed_t) {},
    .frame = nullptr,
    .axis_source = nullptr,
    .axis_stop = nullptr,
    .axis_discrete = nullptr,
    .axis_value120 = nullptr,
    .axis_relative_direction = nullptr,
};

void drop_pointer()
{
    if (watched.pointer != nullptr)
        wl_pointer_destroy(watched.pointer);
    watched.pointer = nullptr;
}

// A pointer may be plugged in and out.
void on_capabilities(void * /*user*/, wl_seat *seat, std::uint32_t capabilities)
{
    const bool there = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
    if (!there)
        drop_pointer();
    else if (watched.pointer == nullptr) {
        watched.pointer = wl_seat_get_pointer(seat);
        wl_pointer_add_listener(watched.pointer, &pointer_listener, nullptr);
    }
}

constexpr wl_seat_listener seat_listener = {.capabilities = on_capabilities, .name = nullptr};

// The first seat, at the version that knows nothing more than is listened to.
void on_global(void * /*user*/, wl_registry *registry, std::uint32_t name, const char *interface,
               std::uint32_t /*version*/)
{
    if (watched.seat != nullptr || std::strcmp(interface, wl_seat_interface.name) != 0)
        return;
    watched.seat = static_cast<wl_seat *>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    wl_seat_add_listener(watched.seat, &seat_listener, nullptr);
}

constexpr wl_registry_listener registry_listener = {
    .global = on_global,
    .global_remove = [](void *, wl_registry *, std::uint32_t) {},
};

} // namespace

bool watch_pointer_entry(GLFWwindow *window,
                         void (*entered)(GLFWwindow *window, double x, double y))
{
    if (glfwGetPlatform() != GLFW_PLATFORM_WAYLAND)
        return false;
    watched = {window, entered, wl_display_get_registry(glfwGetWaylandDisplay()), nullptr, nullptr};
    wl_registry_add_listener(watched.registry, &registry_listener, nullptr);
    return true;
}

void unwatch_pointer_entry()
{
    drop_pointer();
    if (watched.seat != nullptr)
        wl_seat_destroy(watched.seat);
    if (watched.registry != nullptr)
        wl_registry_destroy(watched.registry);
    watched = {};
}

} // namespace vimbo
