// The pointer and the keyboard of the server.
#include "tests/support/x_server.hpp"

#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <X11/XKBlib.h>
#include <X11/Xlib.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <thread>
#include <vector>

namespace rig
{

void x_server::move(point to) const
{
    XTestFakeMotionEvent(display, -1, static_cast<int>(std::lround(to.x * unit)),
                         static_cast<int>(std::lround(to.y * unit)), CurrentTime);
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

void x_server::click_times(point at, int times) const
{
    move(at);
    settle();
    for (int i = 0; i < times; ++i) {
        press();
        release();
    }
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

void x_server::hold_modifier(std::string_view name, bool held) const
{
    send_key(XKeysymToKeycode(display, symbol_called(name)), held);
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

} // namespace rig
