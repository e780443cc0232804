#include "ui/open_list.hpp"

#include "ui/nuklear.hpp"

namespace vimbo
{

bool close_open_list(nk_context *context)
{
    nk_window &window = *context->current;
    if (window.popup.win == nullptr || window.popup.type != NK_PANEL_COMBO)
        return false;
    // Combo boxes are known by their number in the layout: as no other's list than
    // that of the box with this one is shown, none is.
    constexpr nk_hash nobodys = ~nk_hash{0};
    window.popup.name = nobodys;
    window.layout->flags |= NK_WINDOW_REMOVE_ROM;
    return true;
}

} // namespace vimbo
