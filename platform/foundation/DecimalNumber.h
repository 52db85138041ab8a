#pragma once

#include <QLocale>
#include <QVariant>

/// A number as the locale writes decimals: grouped, with at most three fraction digits rounded half
/// to even, and its own digits and signs. Integers of 64 bits are exact; booleans are 1 and 0; a
/// text counts as the number that it is in C. Null for an invalid value and for anything that is no
/// number. Any thread.
QString decimalNumber(const QVariant &number, const QLocale &locale);
