// The operator's input, event by event. The backend looks at keys and buttons
// once a frame, so that short ones are lost, held keys do not repeat, and what
// comes between two frames loses its order. Here everything is queued as it
// comes and handed to Nuklear in layouts' worths. Main thread only.
#pragma once

#include "ui/nuklear.hpp"

#include <cstddef>
#include <cstdint>

namespace vimbo
{

enum class input_kind : std::uint8_t { motion, button, scroll, character, key };

/// One event, where the pointer was at that time included.
struct input_event {
    input_kind kind;
    bool down;            // of a button
    bool shift;           // of a key, a button or a scroll: held
    std::uint32_t code;   // nk_buttons, nk_keys or a code point
    float x, y;           // pixels; of a scroll, notches
    bool control = false; // as shift
    bool again = false;   // of a press: soon after the one before, at its place
};

/// F3. The toolkit has no key for it, and this one's meaning is no edit's here.
inline constexpr nk_keys find_key = NK_KEY_TEXT_REPLACE_MODE;

/// More than anybody types while the window hangs; what does not fit is lost.
inline constexpr std::size_t input_capacity = 16384;

/// All zero: nothing waits.
struct input_queue {
    input_event events[input_capacity];
    std::size_t first;
    std::size_t count;
    float pointer_x, pointer_y; // as the last motion left it
    double pressed_at;          // seconds; of the left button's last press
    float pressed_x, pressed_y;
    bool entry_told; // where the pointer comes in is told apart; GLFW does not know
    bool exposed;    // a part of the window that was covered is seen again
};

/// Appends an event; a motion replaces a motion that waits right before it.
void queue_input(input_queue &queue, const input_event &event);

/// Hands Nuklear as many of the events that wait as one layout acts upon in
/// their order: Nuklear takes keys before text, and text before Enter, and knows
/// one pointer position. NK_KEY_SHIFT and NK_KEY_CTRL are down as they were at the
/// events; NK_BUTTON_DOUBLE is pressed beside the left button in the second press at
/// a place, and in each that follows it soon.
void take_input(input_queue &queue, nk_context *context);

/// True while events wait.
bool has_input(const input_queue &queue);

/// True when the window was exposed since the last time.
bool take_exposure(input_queue &queue);

} // namespace vimbo
