#pragma once

#include <QString>

class Bundle;

/// The address of a web page in the user's language: with "-<language>" before every "?", or at the
/// end where there is none.
///
/// Only for the languages that have web pages: those under "CFBundleLocalizations" in the bundle's
/// information, English excepted, and always zh-Hans and zh-Hant. In every other case, without that
/// entry, and without a language, the link as it is.
QString localizedLink(const QString &link, const QString &preferredLanguage, const Bundle &bundle);
