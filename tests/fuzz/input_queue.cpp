// Any input: nothing is lost, nothing is out of order, and what one layout is given
// is what a layout acts upon in that order.
#include "ui/input_queue.hpp"

#include "ui/nuklear.hpp"

#include <cstdlib>
#include <memory>
#include <vector>

namespace
{

using namespace vimbo;

void require(bool held)
{
    if (!held)
        std::abort();
}

// An event as it is told from others: keys, characters, presses and releases.
struct happening {
    input_kind kind;
    std::uint32_t code;
    bool flag; // a button's direction, or Shift with a key
    bool operator==(const happening &) const = default;
};

constexpr nk_keys keys[] = {NK_KEY_DEL,   NK_KEY_BACKSPACE,  NK_KEY_LEFT,    NK_KEY_UP,
                            NK_KEY_TAB,   NK_KEY_ENTER,      NK_KEY_COPY,    NK_KEY_CUT,
                            NK_KEY_PASTE, NK_KEY_TEXT_START, NK_KEY_TEXT_END};

bool comes_before_text(nk_keys key)
{
    return key != NK_KEY_ENTER && key != NK_KEY_COPY && key != NK_KEY_CUT && key != NK_KEY_PASTE &&
           key != NK_KEY_TAB;
}

// What Nuklear finds in this layout, in the order in which an edit box acts on it.
class layout_reader
{
public:
    explicit layout_reader(const nk_context &context) : input(context.input) {}

    void append_to(std::vector<happening> &all)
    {
        const std::size_t before = all.size();
        int early = 0;
        for (const nk_keys key : keys)
            if (comes_before_text(key) && pressed(key)) {
                add_key(all, key);
                ++early;
            }
        require(early <= 1); // an edit box takes them by their numbers
        for (int at = 0; at < input.keyboard.text_len;) {
            nk_rune character = 0;
            const int bytes =
                nk_utf_decode(input.keyboard.text + at, &character, input.keyboard.text_len - at);
            require(bytes > 0);
            all.push_back({input_kind::character, character, false});
            at += bytes;
        }
        for (const nk_keys key : {NK_KEY_ENTER, NK_KEY_COPY, NK_KEY_CUT, NK_KEY_PASTE, NK_KEY_TAB})
            if (pressed(key))
                add_key(all, key);
        const std::size_t typed = all.size() - before;
        int buttons = 0;
        for (int i = 0; i < NK_BUTTON_MAX; ++i)
            if (input.mouse.buttons[i].clicked != 0) {
                all.push_back({input_kind::button, static_cast<std::uint32_t>(i),
                               input.mouse.buttons[i].down != 0});
                ++buttons;
            }
        require(buttons <= 1 && (buttons == 0 || typed == 0));
    }

private:
    bool pressed(nk_keys key) const
    {
        return input.keyboard.keys[key].clicked != 0;
    }
    void add_key(std::vector<happening> &all, nk_keys key) const
    {
        all.push_back({input_kind::key, static_cast<std::uint32_t>(key),
                       input.keyboard.keys[NK_KEY_SHIFT].down != 0});
    }

    const nk_input &input;
};

// What goes in, and what has come out.
struct trial {
    std::unique_ptr<input_queue> queue = std::make_unique<input_queue>();
    std::unique_ptr<nk_context> context = std::make_unique<nk_context>();
    std::vector<happening> wanted, seen;
    float notches = 0;
    float seen_notches = 0;
    float x = 0; // of the last event with a place
    bool down[NK_BUTTON_MAX] = {};

    void lay_out()
    {
        const std::size_t waiting = queue->count;
        take_input(*queue, context.get());
        require(waiting == 0 || queue->count < waiting);
        layout_reader(*context).append_to(seen);
        seen_notches += context->input.mouse.scroll_delta.y;
    }

    void press_button(nk_buttons button)
    {
        // Nuklear counts only what changes; so does a mouse.
        down[button] = !down[button];
        queue_input(*queue, {input_kind::button, down[button], false, button, x, 0});
        wanted.push_back({input_kind::button, button, down[button]});
    }

    void type(std::uint32_t character)
    {
        queue_input(*queue, {input_kind::character, true, false, character, 0, 0});
        wanted.push_back({input_kind::character, character, false});
    }

    void press_key(nk_keys key, bool shift)
    {
        queue_input(*queue, {input_kind::key, true, shift, key, 0, 0});
        wanted.push_back({input_kind::key, static_cast<std::uint32_t>(key), shift});
    }

    void scroll(float by)
    {
        queue_input(*queue, {input_kind::scroll, false, false, 0, 0, by});
        notches += by;
    }

    void move(float to)
    {
        x = to;
        queue_input(*queue, {input_kind::motion, false, false, 0, x, 0});
    }
};

void act(trial &run, unsigned char what, unsigned char how)
{
    constexpr std::uint32_t characters[] = {'a', 0xB5, 0x3A3, 0x2190, ' ', 'z'};
    switch (what % 7) {
    case 0:
        run.lay_out();
        break;
    case 1:
        run.press_button(static_cast<nk_buttons>(how % 3));
        break;
    case 2:
        run.scroll(how % 2 == 0 ? 1.0F : -1.0F);
        break;
    case 3:
        run.move(static_cast<float>(how));
        break;
    case 4:
        run.press_key(keys[how % std::size(keys)], how >= 128);
        break;
    default:
        run.type(characters[how % std::size(characters)]);
        break;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size)
{
    trial run;
    for (std::size_t i = 0; i + 1 < size; i += 2)
        act(run, data[i], data[i + 1]);
    while (has_input(*run.queue))
        run.lay_out();
    // Shift is one state for all keys of a layout; those behind text go without it.
    require(run.seen.size() == run.wanted.size());
    for (std::size_t i = 0; i < run.seen.size(); ++i)
        require(run.seen[i] == run.wanted[i]);
    require(run.seen_notches == run.notches);
    require(run.context->input.mouse.pos.x == run.x);
    return 0;
}
