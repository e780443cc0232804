#include "tests/support/clipboard_owner.hpp"

#include <poll.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace rig
{

namespace
{

struct free_it {
    void operator()(void *reply) const
    {
        std::free(reply);
    }
};
template <typename reply>
using owned = std::unique_ptr<reply, free_it>;

} // namespace

clipboard_owner::clipboard_owner(const std::string &display, manner manner_wanted)
    : how(std::move(manner_wanted)), connection(xcb_connect(display.c_str(), nullptr))
{
    if (xcb_connection_has_error(connection) != 0)
        throw std::runtime_error("no connection to " + display);
    window = xcb_generate_id(connection);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    xcb_create_window(connection, 0, window, root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(connection, window, atom_of(how.selection), XCB_CURRENT_TIME);
    // Answered behind the request above.
    atom_of("CLIPBOARD");
    server = std::thread([this] { serve(); });
}

clipboard_owner::~clipboard_owner()
{
    stopped = true;
    server.join();
    xcb_disconnect(connection);
}

xcb_atom_t clipboard_owner::atom_of(const std::string &name) const
{
    const owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(
        connection,
        xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data()),
        nullptr));
    if (!reply)
        throw std::runtime_error("the display is gone");
    return reply->atom;
}

void clipboard_owner::serve()
{
    constexpr int between_looks = 10; // milliseconds
    constexpr int sent_by_a_client = 0x80;
    while (!stopped && xcb_connection_has_error(connection) == 0) {
        pollfd descriptor = {xcb_get_file_descriptor(connection), POLLIN, 0};
        poll(&descriptor, 1, between_looks);
        while (const auto event = owned<xcb_generic_event_t>(xcb_poll_for_event(connection))) {
            const int type = event->response_type & ~sent_by_a_client;
            if (type == XCB_SELECTION_REQUEST) {
                ++asked;
                if (!how.silent)
                    answer(*reinterpret_cast<xcb_selection_request_event_t *>(event.get()));
            } else if (type == XCB_SELECTION_NOTIFY) {
                keep(*reinterpret_cast<xcb_selection_notify_event_t *>(event.get()));
            }
            const auto *change = reinterpret_cast<xcb_property_notify_event_t *>(event.get());
            if (type == XCB_PROPERTY_NOTIFY && change->window == receiver &&
                change->atom == property && change->state == XCB_PROPERTY_DELETE)
                hand_out_piece();
        }
    }
}

void clipboard_owner::answer(const xcb_selection_request_event_t &request)
{
    if (request.target == atom_of("SAVE_TARGETS")) {
        ask_for_what_is_to_be_kept(request);
        return;
    }
    std::this_thread::sleep_for(how.delay);
    if (how.strays) {
        xcb_selection_request_event_t other = request;
        other.target = atom_of("TEXT");
        notify(other, XCB_ATOM_NONE);
    }
    if (request.target != atom_of(how.kind)) {
        notify(request, XCB_ATOM_NONE);
        return;
    }
    if (how.piece == 0) {
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor, request.property,
                            request.target, 8, static_cast<std::uint32_t>(how.text.size()),
                            how.text.data());
    } else {
        receiver = request.requestor;
        property = request.property;
        sent = 0;
        sent_pieces = 0;
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_change_window_attributes(connection, receiver, XCB_CW_EVENT_MASK, &events);
        const auto size = static_cast<std::uint32_t>(how.text.size());
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, receiver, property, atom_of("INCR"),
                            32, 1, &size);
    }
    notify(request, request.property);
}

void clipboard_owner::ask_for_what_is_to_be_kept(const xcb_selection_request_event_t &request)
{
    keep_request = request;
    xcb_convert_selection(connection, window, atom_of("CLIPBOARD"), atom_of(how.kind),
                          atom_of("CLIPBOARD"), XCB_CURRENT_TIME);
    xcb_flush(connection);
}

void clipboard_owner::keep(const xcb_selection_notify_event_t &notice)
{
    constexpr std::uint32_t most_words = 1 << 20;
    const owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(connection,
                               xcb_get_property(connection, 1, window, notice.property,
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, most_words),
                               nullptr));
    if (reply) {
        const std::lock_guard lock(keeping);
        kept.assign(static_cast<const char *>(xcb_get_property_value(reply.get())),
                    static_cast<std::size_t>(xcb_get_property_value_length(reply.get())));
    }
    notify(keep_request, keep_request.property);
}

std::string clipboard_owner::kept_text()
{
    const std::lock_guard lock(keeping);
    return kept;
}

// Without a property it is a refusal.
void clipboard_owner::notify(const xcb_selection_request_event_t &request,
                             xcb_atom_t at_property) const
{
    xcb_selection_notify_event_t reply = {};
    reply.response_type = XCB_SELECTION_NOTIFY;
    reply.requestor = request.requestor;
    reply.selection = request.selection;
    reply.target = request.target;
    reply.property = at_property;
    xcb_send_event(connection, 0, request.requestor, 0, reinterpret_cast<const char *>(&reply));
    xcb_flush(connection);
}

// The last piece is an empty one.
void clipboard_owner::hand_out_piece()
{
    if (sent_pieces++ == how.pieces) {
        receiver = 0;
        return;
    }
    const std::size_t length = std::min(how.piece, how.text.size() - sent);
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, receiver, property, atom_of(how.kind), 8,
                        static_cast<std::uint32_t>(length), how.text.data() + sent);
    xcb_flush(connection);
    sent += length;
    if (length == 0)
        receiver = 0;
}

} // namespace rig
