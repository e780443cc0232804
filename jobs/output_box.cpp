#include "jobs/output_box.hpp"

#include "ui/edit_focus.hpp"
#include "ui/fixed_text.hpp"
#include "ui/take_key.hpp"
#include "ui/takes_input.hpp"
#include "ui/utf8.hpp"
#include "ui/wheel.hpp"

#include <algorithm>
#include <string_view>

namespace vimbo
{

namespace
{

constexpr float group_height = 480;
constexpr float box_height = 450;

// The box ends where the window does: what lies below could not be scrolled to.
float seen_height(const nk_context *context)
{
    const nk_panel &group = *context->current->layout;
    const nk_style_edit &style = context->style.edit;
    // Its lower edge is as unseen as before.
    const float seen = group.clip.y + group.clip.h - group.at_y + style.padding.y + style.border;
    const float least = context->style.font->height + 2 * (style.padding.y + style.border);
    return std::clamp(seen, least, box_height);
}

// Has the edit work on the text as it now stands, which the runs write. What it noted
// to undo fits no more.
void take_text(nk_text_edit &edit, std::span<char> text)
{
    const std::size_t length = text_length(text);
    nk_str_init_fixed(&edit.string, text.data(), text.size());
    edit.string.buffer.allocated = length;
    edit.string.len = character_count({text.data(), length});
    edit.cursor = std::min(edit.cursor, edit.string.len);
    edit.undo.undo_point = 0;
    edit.undo.undo_char_point = 0;
    edit.undo.redo_point = NK_TEXTEDIT_UNDOSTATECOUNT;
    edit.undo.redo_char_point = NK_TEXTEDIT_UNDOCHARCOUNT;
}

float row_height(const nk_context *context)
{
    return context->style.font->height + context->style.edit.row_padding;
}

// How far the box scrolls down: so that the text's last line is its last row, or where
// there is room, the empty row that a line feed makes behind it.
float last_place(const nk_context *context, std::string_view text, float height)
{
    const nk_style_edit &style = context->style.edit;
    const float row = row_height(context);
    const float seen = height - 2 * (style.padding.y + style.border);
    const auto feeds = static_cast<float>(std::ranges::count(text, '\n'));
    const float rows = seen < 2 * row && text.ends_with('\n') ? feeds : feeds + 1;
    return std::max(0.0F, rows * row - seen);
}

// Sideways there is no end: the toolkit has no scrollbar there either.
void follow_wheel(const nk_context *context, nk_text_edit &edit, const struct nk_rect &bounds,
                  float last)
{
    const struct nk_vec2 turned = wheel_scroll(context, bounds, row_height(context));
    if (turned.y != 0)
        edit.scrollbar.y = std::clamp(edit.scrollbar.y + turned.y, 0.0F, last);
    edit.scrollbar.x = std::max(0.0F, edit.scrollbar.x + turned.x);
}

// True when either key was pressed.
bool take_either(nk_context *context, nk_keys one, nk_keys other)
{
    const bool first = take_key(context, one);
    return take_key(context, other) || first;
}

// What the toolkit does by these keys a row at a time, or not at all.
void follow_keys(nk_context *context, nk_text_edit &edit, std::string_view text, float last)
{
    if (take_either(context, NK_KEY_TEXT_START, NK_KEY_TEXT_LINE_START)) {
        edit.cursor = 0;
        edit.scrollbar = nk_vec2(0, 0);
    }
    if (take_either(context, NK_KEY_TEXT_END, NK_KEY_TEXT_LINE_END)) {
        edit.cursor = edit.string.len;
        edit.scrollbar = nk_vec2(0, last);
    }
    // Nothing can be selected here.
    take_key(context, NK_KEY_TEXT_SELECT_ALL);
    if (take_key(context, NK_KEY_COPY) && context->clip.copy != nullptr)
        context->clip.copy(context->clip.userdata, text.data(), edit.string.len);
}

std::string_view line_at(std::string_view text, float row)
{
    for (; row >= 1 && !text.empty(); --row) {
        const std::size_t feed = text.find('\n');
        text.remove_prefix(feed == std::string_view::npos ? text.size() : feed + 1);
    }
    return text.substr(0, text.find('\n'));
}

// What a double click names; 0 when there is none.
int double_clicked_line(const nk_context *context, const nk_text_edit &edit, std::string_view text,
                        const struct nk_rect &bounds)
{
    const nk_style_edit &style = context->style.edit;
    if (!takes_input(context) ||
        nk_input_is_mouse_pressed(&context->input, NK_BUTTON_DOUBLE) == 0 ||
        nk_input_is_mouse_hovering_rect(&context->input, bounds) == 0)
        return 0;
    const float y = context->input.mouse.pos.y - bounds.y - style.padding.y - style.border;
    return named_line(line_at(text, (y + edit.scrollbar.y) / row_height(context)));
}

int text_box(nk_context *context, output_box_state &box, std::span<char> text)
{
    const float height = seen_height(context);
    nk_layout_row_dynamic(context, height, 1);
    nk_text_edit &edit = box.edit;
    take_text(edit, text);
    const struct nk_rect bounds = nk_widget_bounds(context);
    focus_when_pressed(context, bounds);
    const std::string_view before(text.data(), edit.string.buffer.allocated);
    const float last = last_place(context, before, height);
    if (box.wants_end)
        edit.scrollbar = nk_vec2(0, last);
    box.wants_end = false;
    follow_wheel(context, edit, bounds, last);
    const int wanted_line = double_clicked_line(context, edit, before, bounds);
    if (takes_keys(context))
        follow_keys(context, edit, before, last);
    nk_edit_buffer(context, NK_EDIT_MULTILINE, &edit, nk_filter_default);
    text[std::min(edit.string.buffer.allocated, text.size() - 1)] = '\0';
    return wanted_line;
}

} // namespace

int output_box(nk_context *context, output_box_state &box, std::span<char> text)
{
    nk_layout_row_dynamic(context, group_height, 1);
    if (nk_group_begin(context, "Preview", NK_WINDOW_BORDER | NK_WINDOW_NO_SCROLLBAR) == 0)
        return 0;
    const int wanted_line = text_box(context, box, text);
    nk_group_end(context);
    return wanted_line;
}

int named_line(std::string_view text)
{
    for (std::size_t colon = 0; (colon = text.find(':', colon)) != std::string_view::npos;) {
        int number = 0;
        std::size_t at = ++colon;
        for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at)
            number = std::min(number * 10 + (text[at] - '0'), most_named_line);
        if (number > 0 && at < text.size() && text[at] == ':')
            return number;
    }
    return 0;
}

} // namespace vimbo
