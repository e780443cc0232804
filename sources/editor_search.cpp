#include "sources/editor_search.hpp"

#include "sources/editor_keys.hpp"
#include "ui/input_queue.hpp"
#include "ui/take_key.hpp"
#include "ui/utf8.hpp"

#include <algorithm>

namespace vimbo
{

namespace
{

std::size_t next_place(std::string_view text, std::string_view wanted, std::size_t behind)
{
    const std::size_t found = text.find(wanted, behind);
    return found != std::string_view::npos ? found : text.find(wanted);
}

std::size_t previous_place(std::string_view text, std::string_view wanted, std::size_t before)
{
    // Not one that reaches into the place itself.
    const std::size_t found = text.substr(0, before).rfind(wanted);
    return found != std::string_view::npos ? found : text.rfind(wanted);
}

} // namespace

void search_by_keys(nk_context *context, nk_text_edit &edit)
{
    if (!take_key(context, find_key) || edit.select_start == edit.select_end)
        return;
    const bool backward = context->input.keyboard.keys[NK_KEY_SHIFT].down != 0;
    const std::string_view text = edited_text(edit);
    const std::size_t first = character_offset(text, std::min(edit.select_start, edit.select_end));
    const std::size_t last = character_offset(text, std::max(edit.select_start, edit.select_end));
    const std::string_view wanted = text.substr(first, last - first);
    const std::size_t found =
        backward ? previous_place(text, wanted, first) : next_place(text, wanted, last);
    edit.select_start = character_count(text.substr(0, found));
    edit.select_end = character_count(text.substr(0, found + wanted.size()));
    edit.cursor = edit.select_end;
    edit.has_preferred_x = 0;
}

} // namespace vimbo
