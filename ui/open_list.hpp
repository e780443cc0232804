#pragma once

struct nk_context;

namespace vimbo
{

/// To be called before the window's first widget: closes the list of a combo box that
/// is open. False when there is none.
bool close_open_list(nk_context *context);

} // namespace vimbo
