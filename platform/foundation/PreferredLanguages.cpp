#include "platform/foundation/PreferredLanguages.h"

#include <QLocale>
#include <QRegularExpression>

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

/// A locale name (language_REGION.encoding@modifier) as a tag; null when it is none.
QString tagOf(const QString &locale)
{
    static const QRegularExpression form(
        u"^([A-Za-z]{2,3})(?:[_-]([A-Za-z]{4}))?(?:[_-]([A-Za-z]{2}|[0-9]{3}))?"
        u"(?:\\.[A-Za-z0-9_-]+)?(?:@([A-Za-z0-9=_-]+))?\\z"_s);
    const QRegularExpressionMatch match = form.match(locale);
    if (!match.hasMatch())
        return {};
    QString code = match.captured(1).toLower();
    QString script = match.captured(2).toLower();
    QString region = match.captured(3).toUpper();
    if (script.isEmpty())
        script = scriptOfModifier(match.captured(4));
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
