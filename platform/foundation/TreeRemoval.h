#pragma once

#include "platform/foundation/FilePlace.h"

#include <QString>

/// Removes a folder with all it holds, or anything else. Answers whether that was done: for what is
/// missing it is not.
///
/// Links are removed, never followed, wherever they stand, in the last place of the path too and
/// with a slash behind them; one that is put in a folder's place while this runs leads nowhere
/// either. What cannot be removed stays, with the folders that lead to it, and everything else goes
/// all the same. Mount points stay as they are, untouched inside: another volume is not part of
/// what was named. Refuses "/" and paths that end in "." or "..". There is no limit of depth. Any
/// thread.
bool removeTree(const QString &path);
/// The same for a place from FilePlace::inFolder().
bool removeTree(const FilePlace &place);
