// All that lies under a directory. One walk at a time, main thread only.
#pragma once

namespace vimbo
{

/// What a tree walk reports. Links are followed: a link to a file is a file.
enum class entry_kind { file, directory, other };

/// Called by walk_tree once per entry; `path` lives only during the call.
using tree_visitor = void (*)(const char *path, entry_kind kind, void *user);

/// Visits every entry at and under `directory`, each with its path as the walk
/// forms it ("./src/" gives "./src/a"). Of a directory come first the files, then the
/// directories, both by the bytes of their names; each directory right before what it
/// holds, and once, however many links lead there. Directories of more names than the
/// walk has memory for, some two megabytes, come in the order of their system. A directory that
/// cannot be read yields nothing; an entry whose path the system would find too long is left out.
/// Without memory or descriptors for all of a tree it reports what it reached, and says nothing.
void walk_tree(const char *directory, tree_visitor visit, void *user);

} // namespace vimbo
