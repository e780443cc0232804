#include "sources/path_picker.hpp"

#include "platform/tree_walk.hpp"
#include "sources/path_name.hpp"
#include "ui/fixed_text.hpp"
#include "ui/nuklear.hpp"

#include <cstring>
#include <string_view>

namespace vimbo
{

namespace
{

constexpr float list_height = 768;
constexpr float item_height = 32;

struct picker_walk {
    nk_context *context;
    path_picker_state &picker;
    const char *start_directory;
    picker_mode mode;
};

// The walk has its start without the separators at its end.
bool is_start(const picker_walk &walk, std::string_view path)
{
    const std::string_view start = walk.start_directory;
    return start.starts_with(path) &&
           start.find_first_not_of("/\\", path.size()) == std::string_view::npos;
}

bool is_listed(const picker_walk &walk, const char *path, entry_kind kind)
{
    if (walk.mode == picker_mode::files)
        return kind == entry_kind::file;
    return kind == entry_kind::directory && !is_start(walk, path);
}

void add_item(const char *path, entry_kind kind, void *user)
{
    auto &walk = *static_cast<picker_walk *>(user);
    if (!is_listed(walk, path, kind))
        return;
    const bool clicked =
        nk_combo_item_label(walk.context, path_name_part(path), NK_TEXT_ALIGN_LEFT) != 0;
    // A path that was cut would be another file's.
    if (clicked && std::strlen(path) < picked_path_capacity)
        set_text(walk.picker.picked_path, path);
}

} // namespace

const char *path_picker(nk_context *context, path_picker_state &picker, const char *directory,
                        const char *label, picker_mode mode)
{
    clear_text(picker.picked_path);
    const struct nk_vec2 list_size = nk_vec2(nk_widget_width(context), list_height);
    if (nk_combo_begin_label(context, label, list_size) == 0)
        return nullptr;
    nk_layout_row_dynamic(context, item_height, 1);
    picker_walk walk = {context, picker, directory, mode};
    walk_tree(directory, add_item, &walk);
    nk_combo_end(context);
    return picker.picked_path[0] != '\0' ? picker.picked_path : nullptr;
}

} // namespace vimbo
