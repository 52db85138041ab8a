#pragma once

#include "plugins/common/Texts.h"

/// A size for people, with one decimal and in steps of 1024: "16.2 GB".
QString sizeText(quint64 bytes, const Texts &texts);

/// "17%".
QString percentText(int percent, const Texts &texts);

/// "3 d 4 h", "4 h 12 min" or "12 min". Abbreviated, since many languages have more than two
/// plurals.
QString durationText(quint64 seconds, const Texts &texts);
