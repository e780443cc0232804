#include "tests/support/x_server.hpp"

#include <X11/extensions/Xdamage.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <fcntl.h>
#include <png.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <stdexcept>
#include <thread>

namespace bench
{

namespace
{

constexpr auto poll_interval = std::chrono::milliseconds(10);
// Where no window is attended: longer than most frames take.
constexpr auto hold_time = std::chrono::milliseconds(120);
constexpr auto answer_time = std::chrono::seconds(30);

// In a fresh child: ends together with the test that started it.
void die_with_parent()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
}

std::vector<char *> pointers_to(std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

void save_png(const image &picture, const std::string &path)
{
    png_image file = {};
    file.version = PNG_IMAGE_VERSION;
    file.width = static_cast<png_uint_32>(picture.width);
    file.height = static_cast<png_uint_32>(picture.height);
    file.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&file, path.c_str(), 0, picture.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write " + path);
}

bool wait_until(const std::function<bool()> &condition, std::chrono::milliseconds limit)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(poll_interval);
    }
    return true;
}

x_server::x_server(int width, int height)
{
    // Servers that start at the same time can get in each other's way.
    constexpr int attempts = 20;
    const std::string screen = std::to_string(width) + 'x' + std::to_string(height) + "x24";
    for (int i = 0; i < attempts && display == nullptr; ++i)
        start_server(screen);
    if (display == nullptr)
        throw std::runtime_error("Xvfb did not start");
}

void x_server::start_server(const std::string &screen)
{
    int ends[2] = {};
    if (pipe(ends) != 0)
        throw std::runtime_error("no pipe");
    const std::string number_end = std::to_string(ends[1]);
    server = fork();
    if (server == 0) {
        die_with_parent();
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDERR_FILENO);
        close(ends[0]);
        execlp("Xvfb", "Xvfb", "-displayfd", number_end.c_str(), "-screen", "0", screen.c_str(),
               "-nolisten", "tcp", "-noreset", nullptr);
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
        if (XFetchName(display, children[i], &name) != 0 && name != nullptr && title == name &&
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
    // The first answer may come while events are still being taken; between
    // the answers lies at least one whole frame.
    for (int i = 0; i < 3; ++i)
        await_answer();
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

void x_server::move(point to) const
{
    XTestFakeMotionEvent(display, -1, to.x, to.y, CurrentTime);
    XSync(display, False);
}

void x_server::press(int button) const
{
    XTestFakeButtonEvent(display, static_cast<unsigned int>(button), True, CurrentTime);
    XSync(display, False);
}

void x_server::release(int button) const
{
    XTestFakeButtonEvent(display, static_cast<unsigned int>(button), False, CurrentTime);
    XSync(display, False);
}

void x_server::click(point at, int button) const
{
    move(at);
    settle();
    press(button);
    settle();
    release(button);
    settle();
}

void x_server::scroll(int notches) const
{
    constexpr int up = 4;
    constexpr int down = 5;
    for (int i = 0; i < std::abs(notches); ++i) {
        press(notches > 0 ? up : down);
        release(notches > 0 ? up : down);
    }
}

void x_server::send_key(unsigned int code, bool down) const
{
    XTestFakeKeyEvent(display, code, down ? True : False, CurrentTime);
    XSync(display, False);
}

// A symbol that no key has is put on one that has none.
unsigned int x_server::code_of(unsigned long symbol, bool &shift) const
{
    shift = false;
    const KeyCode code = XKeysymToKeycode(display, symbol);
    if (code != 0) {
        shift = XkbKeycodeToKeysym(display, code, 0, 0) != symbol;
        return code;
    }
    constexpr KeyCode spare = 250;
    KeySym symbols[2] = {symbol, symbol};
    XChangeKeyboardMapping(display, spare, 2, symbols, 1);
    XSync(display, False);
    settle();
    return spare;
}

namespace
{

KeySym symbol_called(std::string_view name)
{
    const KeySym symbol = XStringToKeysym(std::string(name).c_str());
    if (symbol == NoSymbol)
        throw std::runtime_error("no key is called " + std::string(name));
    return symbol;
}

} // namespace

void x_server::relabel(std::string_view key, std::string_view symbol) const
{
    const KeyCode code = XKeysymToKeycode(display, symbol_called(key));
    KeySym symbols[2] = {symbol_called(symbol), symbol_called(symbol)};
    XChangeKeyboardMapping(display, code, 2, symbols, 1);
    XSync(display, False);
    // Xlib looks its own copy up, which is older than the change.
    XMappingEvent change = {};
    change.type = MappingNotify;
    change.display = display;
    change.request = MappingKeyboard;
    change.first_keycode = code;
    change.count = 1;
    XRefreshKeyboardMapping(&change);
    settle();
}

void x_server::key(std::string_view name) const
{
    hold_key(name, {});
}

void x_server::hold_key(std::string_view name, std::chrono::milliseconds time) const
{
    std::vector<unsigned int> modifiers;
    for (const auto &[prefix, symbol] :
         {std::pair("ctrl+", XK_Control_L), std::pair("shift+", XK_Shift_L)})
        if (name.starts_with(prefix)) {
            name.remove_prefix(std::strlen(prefix));
            modifiers.push_back(XKeysymToKeycode(display, static_cast<KeySym>(symbol)));
        }
    bool shift = false;
    const unsigned int code = code_of(symbol_called(name), shift);
    // A key that is only down until a slow frame has seen it must not repeat.
    if (time.count() == 0)
        XAutoRepeatOff(display);
    else
        XAutoRepeatOn(display);
    for (const unsigned int modifier : modifiers)
        send_key(modifier, true);
    send_key(code, true);
    std::this_thread::sleep_for(time);
    settle();
    send_key(code, false);
    for (const unsigned int modifier : modifiers)
        send_key(modifier, false);
    settle();
}

void x_server::type(std::u32string_view text) const
{
    constexpr unsigned long unicode_symbols = 0x01000000;
    constexpr char32_t last_latin_1 = 0xFF;
    const unsigned int shift_code = XKeysymToKeycode(display, XK_Shift_L);
    for (const char32_t character : text) {
        const unsigned long symbol =
            character <= last_latin_1 ? character : unicode_symbols + character;
        bool shift = false;
        const unsigned int code = code_of(symbol, shift);
        if (shift)
            send_key(shift_code, true);
        send_key(code, true);
        send_key(code, false);
        if (shift)
            send_key(shift_code, false);
    }
    settle();
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

program::program(const options &how)
{
    process = fork();
    if (process != 0)
        return;
    die_with_parent();
    const int output = open(how.output.empty() ? "/dev/null" : how.output.c_str(),
                            O_WRONLY | O_CREAT | O_TRUNC, 0644);
    dup2(output, STDOUT_FILENO);
    dup2(output, STDERR_FILENO);
    for (const std::string &variable : how.environment)
        putenv(const_cast<char *>(variable.c_str()));
    if (!how.directory.empty() && chdir(how.directory.c_str()) != 0)
        _exit(126);
    std::vector<std::string> arguments = how.arguments;
    const std::vector<char *> list = pointers_to(arguments);
    execvp(list[0], list.data());
    _exit(127);
}

program::~program()
{
    if (running()) {
        kill(process, SIGKILL);
        waitpid(process, nullptr, 0);
    }
}

bool program::running()
{
    if (!ended)
        ended = waitpid(process, &status, WNOHANG) == process;
    return !ended;
}

int program::wait_for_end(std::chrono::milliseconds limit)
{
    return wait_until([this] { return !running(); }, limit) ? status : -1;
}

} // namespace bench
