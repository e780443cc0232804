// What the backend loses of the operator's input, and how it is kept: clicks and
// keys shorter than a frame, the repeats of a held key, and a clipboard with
// characters of several bytes. Main thread only.
#pragma once

struct GLFWwindow;
struct nk_context;

namespace vimbo
{

/// Once, after the backend has set its own callbacks.
void keep_all_input(GLFWwindow *window, nk_context *context);

/// Right after the backend's new frame: keys that repeated since the last one
/// count as pressed again.
void replay_key_repeats(nk_context *context);

} // namespace vimbo
