#include "tests/support/clipboard_owner.hpp"

#include <xcb/xcb.h>

#include <poll.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace bench
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
    xcb_set_selection_owner(connection, window, atom_of("CLIPBOARD"), XCB_CURRENT_TIME);
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

unsigned int clipboard_owner::atom_of(const std::string &name) const
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
    while (!stopped && xcb_connection_has_error(connection) == 0) {
        pollfd descriptor = {xcb_get_file_descriptor(connection), POLLIN, 0};
        poll(&descriptor, 1, between_looks);
        while (const auto event = owned<xcb_generic_event_t>(xcb_poll_for_event(connection))) {
            if (event->response_type == XCB_SELECTION_REQUEST) {
                ++asked;
                if (!how.silent)
                    answer(event.get());
            }
            const auto *change = reinterpret_cast<xcb_property_notify_event_t *>(event.get());
            if (event->response_type == XCB_PROPERTY_NOTIFY && change->window == receiver &&
                change->atom == property && change->state == XCB_PROPERTY_DELETE)
                hand_out_piece();
        }
    }
}

void clipboard_owner::answer(const void *event)
{
    const auto &request = *static_cast<const xcb_selection_request_event_t *>(event);
    xcb_selection_notify_event_t reply = {};
    reply.response_type = XCB_SELECTION_NOTIFY;
    reply.requestor = request.requestor;
    reply.selection = request.selection;
    reply.target = request.target;
    if (request.target == atom_of(how.kind)) {
        reply.property = request.property;
        if (how.piece == 0) {
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, request.requestor,
                                request.property, request.target, 8,
                                static_cast<std::uint32_t>(how.text.size()), how.text.data());
        } else {
            receiver = request.requestor;
            property = request.property;
            sent = 0;
            sent_pieces = 0;
            const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(connection, receiver, XCB_CW_EVENT_MASK, &events);
            const auto size = static_cast<std::uint32_t>(how.text.size());
            xcb_change_property(connection, XCB_PROP_MODE_REPLACE, receiver, property,
                                atom_of("INCR"), 32, 1, &size);
        }
    }
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

} // namespace bench
