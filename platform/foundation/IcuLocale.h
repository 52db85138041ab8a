#pragma once

#include <QLocale>

#include <unicode/locid.h>

/// ICU's name for the locale. The language tag is the form both libraries agree on, scripts
/// included; the "C" locale reads as English.
inline icu::Locale icuLocale(const QLocale &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const QByteArray tag = locale.bcp47Name().toLatin1();
    const icu::Locale named = icu::Locale::forLanguageTag(tag.constData(), status);
    return U_SUCCESS(status) && !named.isBogus() ? named : icu::Locale::getEnglish();
}
