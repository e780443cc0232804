// Any edits, undone and redone on the way: undo to the end gives the first text, redo
// to the end the last one, byte for byte, and no text on the way that never was.
#include "sources/edit_history.hpp"

#include <cstdlib>
#include <memory>
#include <set>
#include <string>

namespace
{

using vimbo::text_change;

// The input, byte by byte; zeros once it is used up.
class supply
{
public:
    supply(const unsigned char *bytes, std::size_t count) : at(bytes), end(bytes + count) {}
    bool empty() const
    {
        return at == end;
    }
    unsigned char next()
    {
        return empty() ? 0 : *at++;
    }

private:
    const unsigned char *at;
    const unsigned char *end;
};

void require(bool held)
{
    if (!held)
        std::abort();
}

class edited
{
public:
    void edit(supply &input)
    {
        std::string after = text;
        const std::size_t from = input.next() % (after.size() + 1);
        std::string inserted;
        const std::size_t removed = input.next() % 8;
        for (int count = input.next() % 8; count > 0; --count)
            inserted += static_cast<char>(input.next());
        after.replace(from, removed, inserted);
        if (after == text)
            return;
        const std::string taken = text.substr(from, removed);
        note_edit(*history, {.kind = vimbo::edit_kind::whole,
                             .position = from,
                             .removed = taken,
                             .inserted = inserted,
                             .cursor_before = from + taken.size(),
                             .cursor_after = from + inserted.size()});
        text = after;
        newest = text;
        known.insert(text);
    }

    bool undo()
    {
        text_change change = {};
        return take_undo(*history, change) && apply(change);
    }

    bool redo()
    {
        text_change change = {};
        return take_redo(*history, change) && apply(change);
    }

    const std::string &now() const
    {
        return text;
    }
    // That of the last edit: what was undone before it comes back no more.
    const std::string &last() const
    {
        return newest;
    }

private:
    bool apply(const text_change &change)
    {
        require(change.position <= text.size() && change.removed <= text.size() - change.position);
        text.replace(change.position, change.removed, change.inserted);
        require(known.contains(text));
        return true;
    }

    std::unique_ptr<vimbo::edit_history> history = std::make_unique<vimbo::edit_history>();
    std::string text;
    std::string newest;
    std::set<std::string> known = {""};
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    supply input(data, size);
    edited text;
    while (!input.empty()) {
        const int action = input.next() % 8;
        if (action == 0)
            text.undo();
        else if (action == 1)
            text.redo();
        else
            text.edit(input);
    }
    while (text.redo()) {
    }
    require(text.now() == text.last());
    while (text.undo()) {
    }
    require(text.now().empty());
    while (text.redo()) {
    }
    require(text.now() == text.last());
    return 0;
}
