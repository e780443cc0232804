// Another program on the desktop that has something in the clipboard, and hands
// it over in good ways and bad ones.
#pragma once

#include <atomic>
#include <string>
#include <thread>

struct xcb_connection_t;

namespace bench
{

class clipboard_owner
{
public:
    struct manner {
        std::string text;                 // what it has
        std::string kind = "UTF8_STRING"; // what it has it as; all else is refused
        std::size_t piece = 0;            // hands the text over in pieces of so many bytes,
        std::size_t pieces = ~0UL;        // at most so many of them, then falls silent
        bool silent = false;              // never answers at all
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

private:
    void serve();
    void answer(const void *request);
    void hand_out_piece();
    unsigned int atom_of(const std::string &name) const;

    const manner how;
    xcb_connection_t *connection;
    unsigned int window = 0;
    // Of a transfer in pieces: to whom, where, and how far it has come.
    unsigned int receiver = 0;
    unsigned int property = 0;
    std::size_t sent = 0;
    std::size_t sent_pieces = 0;
    std::atomic<int> asked = 0;
    std::atomic<bool> stopped = false;
    std::thread server;
};

} // namespace bench
