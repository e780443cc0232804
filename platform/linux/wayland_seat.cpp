#include "platform/linux/wayland_seat.hpp"

#include <wayland-client.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace vimbo
{

namespace
{

void on_global(void *seen, wl_registry * /*registry*/, std::uint32_t /*name*/,
               const char *interface, std::uint32_t /*version*/)
{
    if (std::strcmp(interface, wl_seat_interface.name) == 0)
        *static_cast<bool *>(seen) = true;
}

constexpr wl_registry_listener listener = {
    .global = on_global,
    .global_remove = [](void *, wl_registry *, std::uint32_t) {},
};

// Without the directory the library complains on standard error, as it will when GLFW
// asks it. A connection that was handed down can be taken once, by GLFW.
bool can_be_asked()
{
    return std::getenv("XDG_RUNTIME_DIR") != nullptr && std::getenv("WAYLAND_SOCKET") == nullptr;
}

} // namespace

bool is_seat_missing()
{
    wl_display *display = can_be_asked() ? wl_display_connect(nullptr) : nullptr;
    if (display == nullptr)
        return false;
    bool seen = false;
    wl_registry *registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, &seen);
    const bool told = wl_display_roundtrip(display) >= 0;
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return told && !seen;
}

} // namespace vimbo
