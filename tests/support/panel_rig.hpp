// The program's panels without a window: a Nuklear context with a made-up font,
// input injected, and labels found where the layout puts them.
#pragma once

#include "app/app_state.hpp"
#include "app/main_panel.hpp"
#include "tests/support/point.hpp"
#include "ui/flags.hpp"
#include "ui/nuklear.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace rig
{

/// A text as the last frame drew it.
struct drawn_text {
    std::string text;
    struct nk_rect bounds;
};

/// A filled rectangle as the last frame drew it.
struct drawn_rectangle {
    struct nk_rect bounds;
    struct nk_color colour;
};

/// A straight line as the last frame drew it.
struct drawn_line {
    point from, to;
    struct nk_color colour;
};

class panel_rig
{
public:
    panel_rig(int width = 1600, int height = 1240);
    ~panel_rig();
    panel_rig(const panel_rig &) = delete;
    panel_rig &operator=(const panel_rig &) = delete;

    vimbo::app_state &app()
    {
        return *state;
    }

    /// Lays one frame out with the input injected since the last one.
    void frame();

    /// Everything that the last frame wrote, in drawing order.
    const std::vector<drawn_text> &texts() const
    {
        return drawn;
    }

    const std::vector<drawn_rectangle> &rectangles() const
    {
        return filled;
    }

    const std::vector<drawn_line> &lines() const
    {
        return stroked;
    }

    /// Centre of the nth text that reads exactly so.
    std::optional<point> find(std::string_view label, int nth = 0) const;

    void move(point to);
    void press(point at, nk_buttons button = NK_BUTTON_LEFT);
    void release(point at, nk_buttons button = NK_BUTTON_LEFT);
    /// Presses in one frame and releases in the next.
    void click(point at, nk_buttons button = NK_BUTTON_LEFT);
    /// The same on a label; it must be there.
    void click(std::string_view label, int nth = 0);
    /// Turns the wheel: upwards, and to the left.
    void scroll(float notches, float leftwards = 0);
    /// Text as the operator types it, in UTF-8.
    void type(std::string_view text);
    void key(nk_keys key);

    /// What NK_KEY_PASTE pastes.
    std::string clipboard;

private:
    void type_into_context();
    void collect_drawing();

    std::unique_ptr<vimbo::app_state> state;
    nk_context context = {};
    nk_user_font font = {};
    std::vector<drawn_text> drawn;
    std::vector<drawn_rectangle> filled;
    std::vector<drawn_line> stroked;
    std::string typed;
    std::optional<nk_keys> pressed_key;
    point pointer = {-1, -1};
    struct nk_vec2 notches = {};
    bool button_down[NK_BUTTON_MAX] = {};
};

} // namespace rig
