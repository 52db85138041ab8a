#include "platform/foundation/PreferredLanguages.h"

#include <QLocale>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

/// The modifiers that change the script; others ("euro", "valencia") say nothing about it.
QString scriptOfModifier(const QString &modifier)
{
    if (modifier == "latin"_L1)
        return u"Latn"_s;
    if (modifier == "cyrillic"_L1)
        return u"Cyrl"_s;
    return modifier == "devanagari"_L1 ? u"Deva"_s : QString();
}

QString chineseTag(const QString &script, QLocale::Territory territory)
{
    const bool traditional = script.isEmpty()
        ? QLocale(QLocale::Chinese, QLocale::AnyScript, territory).script()
            == QLocale::TraditionalHanScript
        : script == "Hant"_L1;
    return traditional ? u"zh-Hant"_s : u"zh-Hans"_s;
}

bool isLetter(QChar one)
{
    const char16_t lower = one.unicode() | 0x20;
    return lower >= u'a' && lower <= u'z';
}

bool isDigit(QChar one)
{
    return one >= u'0' && one <= u'9';
}

bool areLetters(QStringView text, qsizetype least, qsizetype most)
{
    return text.size() >= least && text.size() <= most
        && std::all_of(text.begin(), text.end(), isLetter);
}

struct LocaleName
{
    QString language;
    QString script;
    QString region;
    QString modifier;
};

/// language_Script_REGION.encoding@modifier, of which all but the language may be missing. Read by
/// hand: a plugin's thread may have less of a stack than regular expressions take.
std::optional<LocaleName> localeName(const QString &name)
{
    QStringView rest = name;
    const auto cutOff = [&rest](QChar mark, QStringView others) -> std::optional<QString> {
        const qsizetype place = rest.indexOf(mark);
        if (place < 0)
            return QString();
        const QStringView part = rest.sliced(place + 1);
        rest = rest.first(place);
        const bool isWell =
            !part.isEmpty() && std::all_of(part.begin(), part.end(), [&](QChar one) {
                return isLetter(one) || isDigit(one) || others.contains(one);
            });
        return isWell ? std::optional(part.toString()) : std::nullopt;
    };
    const std::optional<QString> modifier = cutOff(u'@', u"=_-");
    if (!modifier || !cutOff(u'.', u"_-"))
        return std::nullopt;

    QStringList parts = rest.toString().replace(u'-', u'_').split(u'_');
    LocaleName found{parts.takeFirst(), {}, {}, *modifier};
    if (!parts.isEmpty() && areLetters(parts.first(), 4, 4))
        found.script = parts.takeFirst();
    if (!parts.isEmpty())
        found.region = parts.takeFirst();
    const bool isRegion = areLetters(found.region, 2, 2)
        || (found.region.size() == 3
            && std::all_of(found.region.begin(), found.region.end(), isDigit));
    const bool isWell =
        areLetters(found.language, 2, 3) && parts.isEmpty() && (found.region.isNull() || isRegion);
    return isWell ? std::optional(found) : std::nullopt;
}

/// A locale name as a tag; null when it is none.
QString tagOf(const QString &locale)
{
    const std::optional<LocaleName> name = localeName(locale);
    if (!name)
        return {};
    QString code = name->language.toLower();
    QString script = name->script.toLower();
    QString region = name->region.toUpper();
    if (script.isEmpty())
        script = scriptOfModifier(name->modifier);
    else
        script[0] = script[0].toUpper();

    const QLocale::Language language = QLocale::codeToLanguage(code);
    // Also puts today's code in place of a withdrawn one: "he" for "iw".
    if (language != QLocale::AnyLanguage && language != QLocale::C)
        code = QLocale::languageToCode(language);
    const QLocale::Territory territory = QLocale::codeToTerritory(region);
    if (language == QLocale::Chinese)
        return chineseTag(script, territory);

    const QLocale usual(language);
    const bool known = usual.language() == language && language != QLocale::C;
    if (known && script == QLocale::scriptToCode(usual.script()))
        script.clear();
    const QLocale usualInScript(language, QLocale::codeToScript(script), QLocale::AnyTerritory);
    if (language == QLocale::Portuguese && region.isEmpty())
        region = QLocale::territoryToCode(usual.territory());
    else if (language != QLocale::Portuguese && known && territory == usualInScript.territory())
        region.clear();

    QString tag = code;
    for (const QString &part : {script, region}) {
        if (!part.isEmpty())
            tag += u'-' + part;
    }
    return tag;
}

} // namespace

QStringList preferredLanguages(const QStringList &appleLanguages,
                               const std::function<QString(const char *)> &environment)
{
    QStringList languages = appleLanguages;
    languages.removeAll(QString());
    if (languages.isEmpty()) {
        QString locale;
        for (const char *variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            if (locale.isEmpty())
                locale = environment(variable);
        }
        // As gettext has it: the plain C locale, spelled so, shuts LANGUAGE up; "C.UTF-8" does not.
        if (locale.isEmpty() || locale == "C"_L1 || locale == "POSIX"_L1)
            return {};
        const QStringList names = environment("LANGUAGE").split(u':') << locale;
        for (const QString &name : names)
            languages << tagOf(name);
        languages.removeAll(QString());
    }
    languages.removeDuplicates();
    return languages;
}
