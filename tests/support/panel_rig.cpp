#include "tests/support/panel_rig.hpp"

#include "ui/clipboard.hpp"

#include <stdexcept>

namespace rig
{

namespace
{

constexpr float glyph_width = 8;
constexpr float glyph_height = 16;

float text_width(nk_handle /*user*/, float /*height*/, const char *text, int length)
{
    return glyph_width * static_cast<float>(nk_utf_len(text, length));
}

template <typename drawing>
struct nk_rect rect_of(const drawing &command)
{
    return nk_recti(command.x, command.y, static_cast<int>(command.w), static_cast<int>(command.h));
}

} // namespace

panel_rig::panel_rig(int width, int height) : state(std::make_unique<vimbo::app_state>())
{
    font.height = glyph_height;
    font.width = text_width;
    nk_init_default(&context, &font);
    context.clip.userdata = nk_handle_ptr(this);
    context.clip.paste = [](nk_handle user, nk_text_edit *edit) {
        vimbo::paste_text(*edit, static_cast<panel_rig *>(user.ptr)->clipboard.c_str());
    };
    state->frame.context = &context;
    state->frame.window_width = width;
    state->frame.window_height = height;
    vimbo::initialise_panels(*state);
}

panel_rig::~panel_rig()
{
    nk_free(&context);
}

void panel_rig::frame()
{
    nk_input_begin(&context);
    nk_input_motion(&context, pointer.x, pointer.y);
    for (int button = 0; button < NK_BUTTON_MAX; ++button)
        nk_input_button(&context, static_cast<nk_buttons>(button), pointer.x, pointer.y,
                        button_down[button] ? nk_true : nk_false);
    nk_input_scroll(&context, notches);
    type_into_context();
    for (int key = NK_KEY_NONE + 1; key < NK_KEY_MAX; ++key)
        nk_input_key(&context, static_cast<nk_keys>(key), pressed_key == key ? nk_true : nk_false);
    nk_input_end(&context);
    typed.clear();
    pressed_key.reset();
    notches = {};

    vimbo::reset_frame_flags(state->frame);
    vimbo::main_panel(*state);
    collect_drawing();
    nk_clear(&context);
}

void panel_rig::type_into_context()
{
    nk_rune character = 0;
    for (int at = 0; at < static_cast<int>(typed.size());) {
        at += nk_utf_decode(typed.data() + at, &character, static_cast<int>(typed.size()) - at);
        nk_input_unicode(&context, character);
    }
}

void panel_rig::collect_drawing()
{
    drawn.clear();
    filled.clear();
    stroked.clear();
    const nk_command *command = nullptr;
    nk_foreach(command, &context)
    {
        if (command->type == NK_COMMAND_RECT_FILLED) {
            const auto *box = reinterpret_cast<const nk_command_rect_filled *>(command);
            filled.push_back({rect_of(*box), box->color});
        }
        if (command->type == NK_COMMAND_LINE) {
            const auto *line = reinterpret_cast<const nk_command_line *>(command);
            stroked.push_back(
                {{line->begin.x, line->begin.y}, {line->end.x, line->end.y}, line->color});
        }
        if (command->type != NK_COMMAND_TEXT)
            continue;
        const auto *text = reinterpret_cast<const nk_command_text *>(command);
        drawn.push_back(
            {std::string(text->string, static_cast<std::size_t>(text->length)), rect_of(*text)});
    }
}

std::optional<point> panel_rig::find(std::string_view label, int nth) const
{
    for (const drawn_text &text : drawn)
        if (text.text == label && nth-- == 0)
            return point{static_cast<int>(text.bounds.x + text.bounds.w / 2),
                         static_cast<int>(text.bounds.y + text.bounds.h / 2)};
    return std::nullopt;
}

void panel_rig::move(point to)
{
    pointer = to;
}

void panel_rig::press(point at, nk_buttons button)
{
    pointer = at;
    button_down[button] = true;
}

void panel_rig::release(point at, nk_buttons button)
{
    pointer = at;
    button_down[button] = false;
}

void panel_rig::click(point at, nk_buttons button)
{
    move(at);
    frame();
    press(at, button);
    frame();
    release(at, button);
    frame();
}

void panel_rig::click(std::string_view label, int nth)
{
    frame();
    const std::optional<point> at = find(label, nth);
    if (!at)
        throw std::runtime_error("no label reads \"" + std::string(label) + '"');
    click(*at);
}

void panel_rig::scroll(float upwards, float leftwards)
{
    notches = {leftwards, upwards};
}

void panel_rig::type(std::string_view text)
{
    typed = text;
}

void panel_rig::key(nk_keys key)
{
    pressed_key = key;
}

} // namespace rig
