#pragma once

#include <QtGlobal>

/// What a property list may ask of us, whatever its form: a file made to exhaust the stack or the
/// memory is refused before anything is built from it.
namespace PropertyListLimits {

constexpr int depth = 512;
constexpr qsizetype bytes = 32 * 1024 * 1024;
constexpr qsizetype values =
    200'000; // one takes a hundred bytes or two, as small as it may be in the file

} // namespace PropertyListLimits
