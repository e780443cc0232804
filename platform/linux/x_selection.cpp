// ICCCM selections: the requestor's side, large texts in pieces by INCR.
#include "platform/linux/x_selection.hpp"

#include <xcb/xcb.h>

#include <poll.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace vimbo
{

namespace
{

using steady_clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds timeout(1000);
// For an owner that has just let that pass: a held key asks again and again.
constexpr milliseconds timeout_of_hung_owner(50);

// The selection's owners, known again by their windows: ourselves, and the last
// one that let the time pass.
xcb_window_t own_window;
xcb_window_t hung_window;

// One conversion of the selection into a text.
struct conversion {
    xcb_connection_t *connection;
    xcb_window_t window;    // the requestor
    xcb_atom_t clipboard;   // the selection, and the property that it is to be put into
    xcb_atom_t incremental; // INCR
    xcb_atom_t target;      // the kind of text
    steady_clock::time_point deadline;
    std::span<char> out;
    std::size_t used;
};

enum class outcome : std::uint8_t { text, refused, timed_out };

xcb_atom_t atom_of(xcb_connection_t *connection, std::string_view name)
{
    const auto length = static_cast<std::uint16_t>(name.size());
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, 0, length, name.data()), nullptr);
    const xcb_atom_t atom = reply != nullptr ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    std::free(reply);
    return atom;
}

xcb_window_t owner_of(xcb_connection_t *connection, xcb_atom_t selection)
{
    xcb_get_selection_owner_reply_t *reply = xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr);
    const xcb_window_t owner = reply != nullptr ? reply->owner : xcb_window_t{XCB_WINDOW_NONE};
    std::free(reply);
    return owner;
}

xcb_window_t create_window(xcb_connection_t *connection)
{
    const xcb_window_t window = xcb_generate_id(connection);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    return window;
}

// Null when the time is over or the connection is lost.
xcb_generic_event_t *next_event(const conversion &asked)
{
    for (;;) {
        xcb_generic_event_t *event = xcb_poll_for_event(asked.connection);
        const auto left = std::chrono::ceil<milliseconds>(asked.deadline - steady_clock::now());
        if (event != nullptr || left.count() <= 0 ||
            xcb_connection_has_error(asked.connection) != 0)
            return event;
        pollfd descriptor = {xcb_get_file_descriptor(asked.connection), POLLIN, 0};
        poll(&descriptor, 1, static_cast<int>(left.count()));
    }
}

// Waits for SelectionNotify. False when the owner does not answer; `granted` tells
// whether it has the text.
bool await_answer(const conversion &asked, bool &granted)
{
    constexpr int sent_by_a_client = 0x80;
    bool found = false;
    while (!found) {
        xcb_generic_event_t *event = next_event(asked);
        if (event == nullptr)
            return false;
        const auto *answer = reinterpret_cast<xcb_selection_notify_event_t *>(event);
        found = (event->response_type & ~sent_by_a_client) == XCB_SELECTION_NOTIFY &&
                answer->target == asked.target;
        granted = found && answer->property != XCB_ATOM_NONE;
        std::free(event);
    }
    return true;
}

// False when the next piece of an incremental transfer does not come.
bool await_piece(const conversion &asked)
{
    bool found = false;
    while (!found) {
        xcb_generic_event_t *event = next_event(asked);
        if (event == nullptr)
            return false;
        const auto *change = reinterpret_cast<xcb_property_notify_event_t *>(event);
        found = event->response_type == XCB_PROPERTY_NOTIFY && change->atom == asked.clipboard &&
                change->state == XCB_PROPERTY_NEW_VALUE;
        std::free(event);
    }
    return true;
}

// Appends what the owner has put into the property, and deletes it there, which in
// an incremental transfer asks for the next piece. Gives its type.
xcb_atom_t take_piece(conversion &asked)
{
    const std::size_t room = asked.out.size() - asked.used;
    const auto words = static_cast<std::uint32_t>(room / 4 + 1);
    xcb_get_property_reply_t *reply =
        xcb_get_property_reply(asked.connection,
                               xcb_get_property(asked.connection, 1, asked.window, asked.clipboard,
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, words),
                               nullptr);
    const xcb_atom_t type = reply != nullptr ? reply->type : xcb_atom_t{XCB_ATOM_NONE};
    if (reply != nullptr && type == asked.target && reply->format == 8) {
        const auto length = static_cast<std::size_t>(xcb_get_property_value_length(reply));
        const std::size_t taken = std::min(length, room);
        std::memcpy(asked.out.data() + asked.used, xcb_get_property_value(reply), taken);
        asked.used += taken;
    }
    std::free(reply);
    return type;
}

outcome ask_for(conversion &asked, xcb_atom_t target)
{
    asked.target = target;
    xcb_convert_selection(asked.connection, asked.window, asked.clipboard, target, asked.clipboard,
                          XCB_CURRENT_TIME);
    xcb_flush(asked.connection);
    bool granted = false;
    if (!await_answer(asked, granted))
        return outcome::timed_out;
    if (!granted)
        return outcome::refused;
    const xcb_atom_t type = take_piece(asked);
    if (type != asked.incremental)
        return type == target ? outcome::text : outcome::refused;
    // A piece of no bytes is the end, and what does not fit is not wanted.
    std::size_t before = 0;
    do {
        before = asked.used;
        if (!await_piece(asked))
            return outcome::timed_out;
        take_piece(asked);
    } while (asked.used > before && asked.used < asked.out.size());
    return outcome::text;
}

// The characters beyond ASCII take two bytes in UTF-8. As many as fit.
std::size_t latin_1_to_utf_8(std::span<char> text, std::size_t length)
{
    const auto is_ascii = [&](std::size_t at) {
        return static_cast<unsigned char>(text[at]) < 0x80;
    };
    std::size_t characters = 0;
    std::size_t bytes = 0;
    while (characters < length && bytes + (is_ascii(characters) ? 1 : 2) <= text.size())
        bytes += is_ascii(characters++) ? 1 : 2;
    for (std::size_t to = bytes; characters > 0;) {
        const bool ascii = is_ascii(--characters);
        const auto character = static_cast<unsigned char>(text[characters]);
        text[--to] = static_cast<char>(ascii ? character : 0x80 | (character & 0x3F));
        if (!ascii)
            text[--to] = static_cast<char>(0xC0 | character >> 6);
    }
    return bytes;
}

outcome ask_for_text(conversion &asked)
{
    const outcome utf_8 = ask_for(asked, atom_of(asked.connection, "UTF8_STRING"));
    if (utf_8 != outcome::refused)
        return utf_8;
    asked.used = 0;
    const outcome latin_1 = ask_for(asked, XCB_ATOM_STRING);
    if (latin_1 == outcome::text)
        asked.used = latin_1_to_utf_8(asked.out, asked.used);
    return latin_1;
}

clipboard_answer read_over(xcb_connection_t *connection, std::span<char> out)
{
    const xcb_atom_t clipboard = atom_of(connection, "CLIPBOARD");
    const xcb_window_t owner = owner_of(connection, clipboard);
    if (owner == XCB_WINDOW_NONE)
        return clipboard_answer::nothing;
    // This thread would have to answer itself.
    if (owner == own_window)
        return clipboard_answer::own;
    const milliseconds limit = owner == hung_window ? timeout_of_hung_owner : timeout;
    conversion asked = {.connection = connection,
                        .window = create_window(connection),
                        .clipboard = clipboard,
                        .incremental = atom_of(connection, "INCR"),
                        .target = XCB_ATOM_NONE,
                        .deadline = steady_clock::now() + limit,
                        .out = out.first(out.size() - 1),
                        .used = 0};
    const outcome got = ask_for_text(asked);
    hung_window = got == outcome::timed_out ? owner : xcb_window_t{XCB_WINDOW_NONE};
    if (got != outcome::text)
        return clipboard_answer::nothing;
    out[asked.used] = '\0';
    return clipboard_answer::text;
}

} // namespace

void note_own_selection()
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection) == 0)
        own_window = owner_of(connection, atom_of(connection, "CLIPBOARD"));
    xcb_disconnect(connection);
}

clipboard_answer read_selection(std::span<char> out)
{
    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    const clipboard_answer answer = xcb_connection_has_error(connection) == 0
                                        ? read_over(connection, out)
                                        : clipboard_answer::nothing;
    xcb_disconnect(connection);
    return answer;
}

} // namespace vimbo
