#pragma once

#include <QString>
#include <QStringList>

#include <functional>

/// The languages the user wants to read, most wanted first; empty when nothing says.
///
/// What is set under "AppleLanguages" counts as it is. Else the locale environment decides: the
/// language list in LANGUAGE, then the first of LC_ALL, LC_MESSAGES and LANG that is set. As in
/// gettext, LANGUAGE counts only when that one names a language ("C" and "POSIX" do not). Entries
/// become language tags (BCP 47) as short as their meaning allows: "de" for de_DE, "de-AT" for
/// de_AT; Portuguese always has its region, Chinese its script instead. What is no locale name is
/// left out, as is what is there already.
///
/// @param environment the value of a variable, null or empty when it is not set.
QStringList preferredLanguages(const QStringList &appleLanguages,
                               const std::function<QString(const char *)> &environment);
