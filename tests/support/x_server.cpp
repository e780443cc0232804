#include "tests/support/x_server.hpp"

#include "tests/support/program.hpp"
#include "tests/support/wait.hpp"

#include <X11/extensions/Xdamage.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <stdexcept>
#include <thread>

namespace rig
{

namespace
{

// Where no window is attended: longer than most frames take.
constexpr auto hold_time = std::chrono::milliseconds(120);
constexpr auto answer_time = std::chrono::seconds(30);

XErrorHandler end_of_test = nullptr;

// A program's windows may vanish while they are looked at: what is asked of one has no answer
// then. Any other error ends the test, as Xlib does by itself.
int let_lost_windows_pass(Display *display, XErrorEvent *error)
{
    return error->error_code == BadWindow ? 0 : end_of_test(display, error);
}

void install_error_handler()
{
    const XErrorHandler before = XSetErrorHandler(let_lost_windows_pass);
    if (before != let_lost_windows_pass)
        end_of_test = before;
}

} // namespace

x_server::x_server(int width, int height, bool with_gl)
{
    hide_wayland();
    install_error_handler();
    // Servers that start at the same time can get in each other's way.
    constexpr int attempts = 20;
    const std::string screen = std::to_string(width) + 'x' + std::to_string(height) + "x24";
    for (int i = 0; i < attempts && display == nullptr; ++i)
        start_server(screen, with_gl);
    if (display == nullptr)
        throw std::runtime_error("Xvfb did not start");
}

void x_server::start_server(const std::string &screen, bool with_gl)
{
    int ends[2] = {};
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    const std::string number_end = std::to_string(ends[1]);
    server = fork();
    if (server == 0) {
        end_with_parent();
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        close(ends[0]);
        execlp("Xvfb", "Xvfb", "-displayfd", number_end.c_str(), "-screen", "0", screen.c_str(),
               "-nolisten", "tcp", "-noreset", with_gl ? "+extension" : "-extension", "GLX",
               nullptr);
        _exit(127);
    }
    close(ends[1]);
    // The number and the end of its line come apart.
    std::string number;
    char digit = '\0';
    while (read(ends[0], &digit, 1) == 1 && digit != '\n')
        number += digit;
    close(ends[0]);
    if (!number.empty() && digit == '\n') {
        display_name = ":" + number;
        display = XOpenDisplay(display_name.c_str());
    }
    if (display == nullptr)
        end_server();
}

void x_server::end_server()
{
    kill(server, SIGTERM);
    waitpid(server, nullptr, 0);
    server = 0;
}

x_server::~x_server()
{
    if (display != nullptr)
        XCloseDisplay(display);
    if (server > 0)
        end_server();
}

unsigned long x_server::find_window(std::string_view title) const
{
    Window root = 0;
    Window parent = 0;
    Window *children = nullptr;
    unsigned int count = 0;
    XQueryTree(display, DefaultRootWindow(display), &root, &parent, &children, &count);
    unsigned long found = 0;
    for (unsigned int i = 0; i < count && found == 0; ++i) {
        char *name = nullptr;
        XWindowAttributes attributes = {};
        const bool named = XFetchName(display, children[i], &name) != 0 && name != nullptr;
        if ((title.empty() || (named && title == name)) &&
            XGetWindowAttributes(display, children[i], &attributes) != 0 &&
            attributes.map_state == IsViewable)
            found = children[i];
        XFree(name);
    }
    XFree(children);
    return found;
}

void x_server::close_window(unsigned long window) const
{
    XEvent event = {};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
    XSendEvent(display, window, False, NoEventMask, &event);
    XSync(display, False);
}

void x_server::resize_window(unsigned long window, int width, int height) const
{
    XResizeWindow(display, window, static_cast<unsigned int>(width),
                  static_cast<unsigned int>(height));
    XSync(display, False);
}

void x_server::move_window(unsigned long window, point to) const
{
    XMoveWindow(display, window, to.x, to.y);
    XSync(display, False);
}

void x_server::attend(unsigned long window)
{
    // The answer to a ping comes by way of the root window.
    XSelectInput(display, DefaultRootWindow(display), SubstructureNotifyMask);
    attended = window;
    answers = true;
}

void x_server::attend_shown_frames(unsigned long window)
{
    attended = window;
    answers = false;
}

// Window managers ping a window to see whether it still takes its events; the
// answer comes in the program's turn, behind everything sent before.
void x_server::await_answer() const
{
    const Atom ping = XInternAtom(display, "_NET_WM_PING", False);
    static long serial = 0;
    XEvent question = {};
    question.xclient.type = ClientMessage;
    question.xclient.window = attended;
    question.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
    question.xclient.format = 32;
    question.xclient.data.l[0] = static_cast<long>(ping);
    question.xclient.data.l[1] = ++serial;
    question.xclient.data.l[2] = static_cast<long>(attended);
    XSendEvent(display, attended, False, NoEventMask, &question);
    const auto answered = [&] {
        XEvent event = {};
        while (XPending(display) > 0) {
            XNextEvent(display, &event);
            if (event.type == ClientMessage && event.xclient.data.l[0] == static_cast<long>(ping) &&
                event.xclient.data.l[1] == serial)
                return true;
        }
        return false;
    };
    if (!wait_until(answered, answer_time))
        throw std::runtime_error("the program does not answer any more");
}

void x_server::settle() const
{
    if (attended == 0) {
        std::this_thread::sleep_for(hold_time);
        return;
    }
    if (!answers) {
        await_shown_frames();
        return;
    }
    // The first answer may come while events are still being taken; between
    // the answers lies at least one whole frame.
    for (int i = 0; i < 3; ++i)
        await_answer();
}

// Two frames may be on their way when the event comes in; the third begins after it.
void x_server::await_shown_frames() const
{
    constexpr int frames = 4;
    constexpr auto look = std::chrono::milliseconds(20);
    int shown = 0;
    const auto all_shown = [&] { return (shown += count_redraws(attended, look)) >= frames; };
    if (!wait_until(all_shown, answer_time))
        throw std::runtime_error("the compositor's screen shows no frames any more");
}

int x_server::count_redraws(unsigned long window, std::chrono::milliseconds time) const
{
    int first_event = 0;
    int first_error = 0;
    if (XDamageQueryExtension(display, &first_event, &first_error) == 0)
        throw std::runtime_error("the X server tells no damage");
    const Damage damage = XDamageCreate(display, window, XDamageReportNonEmpty);
    int count = 0;
    XEvent event = {};
    const auto end = std::chrono::steady_clock::now() + time;
    while (std::chrono::steady_clock::now() < end) {
        while (XPending(display) > 0) {
            XNextEvent(display, &event);
            if (event.type != first_event + XDamageNotify)
                continue;
            ++count;
            XDamageSubtract(display, damage, None, None);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    XDamageDestroy(display, damage);
    XSync(display, True);
    return count;
}

image x_server::screenshot() const
{
    const Window root = DefaultRootWindow(display);
    XWindowAttributes attributes = {};
    XGetWindowAttributes(display, root, &attributes);
    XImage *raw = XGetImage(display, root, 0, 0, static_cast<unsigned int>(attributes.width),
                            static_cast<unsigned int>(attributes.height), AllPlanes, ZPixmap);
    image picture = {attributes.width, attributes.height, {}};
    picture.pixels.reserve(static_cast<std::size_t>(picture.width) *
                           static_cast<std::size_t>(picture.height));
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x) {
            const unsigned long pixel = XGetPixel(raw, x, y);
            picture.pixels.push_back({static_cast<std::uint8_t>(pixel >> 16),
                                      static_cast<std::uint8_t>(pixel >> 8),
                                      static_cast<std::uint8_t>(pixel)});
        }
    XDestroyImage(raw);
    return picture;
}

} // namespace rig
