// Another program on the desktop that has something in the clipboard, and hands
// it over in good ways and bad ones; or that keeps what programs had there which
// have ended.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <string>
#include <thread>

namespace rig
{

class clipboard_owner
{
public:
    struct manner {
        std::string text = {};                // what it has
        std::string kind = "UTF8_STRING";     // what it has it as; all else is refused
        std::size_t piece = 0;                // hands the text over in pieces of so many bytes,
        std::size_t pieces = ~0UL;            // at most so many of them, then falls silent
        bool silent = false;                  // never answers at all
        bool strays = false;                  // first refuses what was not asked for
        std::chrono::milliseconds delay = {}; // takes so long to answer
        std::string selection = "CLIPBOARD";  // what it owns
    };
    clipboard_owner(const std::string &display, manner how);
    ~clipboard_owner();
    clipboard_owner(const clipboard_owner &) = delete;
    clipboard_owner &operator=(const clipboard_owner &) = delete;

    /// Requests that have come so far.
    int requests() const
    {
        return asked;
    }

    /// As "CLIPBOARD_MANAGER": the text that it was asked to keep and has got.
    std::string kept_text();

private:
    void serve();
    void answer(const xcb_selection_request_event_t &request);
    void ask_for_what_is_to_be_kept(const xcb_selection_request_event_t &request);
    void keep(const xcb_selection_notify_event_t &notice);
    void notify(const xcb_selection_request_event_t &request, xcb_atom_t property) const;
    void hand_out_piece();
    xcb_atom_t atom_of(const std::string &name) const;

    const manner how;
    xcb_connection_t *connection;
    xcb_window_t window = 0;
    // Of a transfer in pieces: to whom, where, and how far it has come.
    xcb_window_t receiver = 0;
    xcb_atom_t property = 0;
    std::size_t sent = 0;
    std::size_t sent_pieces = 0;
    // Of a text to be kept.
    xcb_selection_request_event_t keep_request = {};
    std::mutex keeping;
    std::string kept;
    std::atomic<int> asked = 0;
    std::atomic<bool> stopped = false;
    std::thread server;
};

} // namespace rig
