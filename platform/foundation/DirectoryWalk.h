#pragma once

#include "platform/foundation/FileRecord.h"

#include <functional>

/// Finds what lies in a folder's tree.
namespace DirectoryWalk {

using Found = std::function<void(FileRecord &&)>;

/// How many threads a walk may use: one a processor that this thread may run on, up to four.
int usualThreads();

/// Hands over a record for everything in the tree that is no folder, regular file or not: depth
/// first, in the order in which the folders list their entries, a folder's content at the place of
/// its entry. Links are never followed, but for the given path itself, which may be a link to a
/// folder. Of folders that cannot be read, or vanish meanwhile, only what could be read is found;
/// nothing at all when that goes for the first. There is no limit of depth.
///
/// A record's path is the given one, a slash and the path from there, every two slashes in a row
/// made one.
///
/// @param found called on the calling thread. What it throws ends the walk and reaches the caller.
/// @param threads to work with; small trees are left to the caller's alone.
void run(const QString &path, const Found &found, int threads = usualThreads());

} // namespace DirectoryWalk
