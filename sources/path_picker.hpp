#pragma once

#include <cstddef>

struct nk_context;

namespace vimbo
{

/// A picked path's most bytes, its zero included; a longer one is not taken.
inline constexpr std::size_t picked_path_capacity = 260;

/// What a picker lists of a tree.
enum class picker_mode {
    files = 1,       // regular files
    directories = 2, // directories, but not the tree's own
};

/// Main thread only.
struct path_picker_state {
    char picked_path[picked_path_capacity];
};

/// A combo box that lists what stands under `directory`, each entry by its name
/// part, the whole tree in the order of its walk. Returns the full path of the
/// entry that was clicked in this frame, else null; it lives until the next call.
const char *path_picker(nk_context *context, path_picker_state &picker, const char *directory,
                        const char *label, picker_mode mode);

} // namespace vimbo
