#include "platform/foundation/PreferredLanguages.h"
#include "platform/foundation/PropertyList.h"

#include <QDirIterator>
#include <QMap>

namespace {

const QString root = QStringLiteral(SOLVANE_SOURCE_DIR);

QString languageFile(const QString &language)
{
    return root + u"/resources/languages/"_s + language + u".strings"_s;
}

QVariantMap texts(const QString &language)
{
    const Result<QVariant> file = PropertyList::read(languageFile(language));
    EXPECT_TRUE(file.ok()) << qPrintable(language) << ": " << qPrintable(file.error());
    return file.ok() ? file.value().toMap() : QVariantMap();
}

QString contentOf(const QString &path)
{
    return QString::fromUtf8(fileContent(path));
}

/// All matches of the pattern's first group, in order.
QStringList captures(const QString &pattern, const QString &text)
{
    const QRegularExpression expression(pattern, QRegularExpression::MultilineOption);
    QStringList result;
    for (auto matches = expression.globalMatch(text); matches.hasNext();)
        result += matches.next().captured(1);
    return result;
}

/// Positional ones count in their order; numbered ones may change places, and a "%" that is not
/// one of them stands for itself ("%%1" is Turkish for "%1%").
QStringList placeholders(const QVariant &text)
{
    QStringList numbered = captures(u"(%[1-9](?!\\.))"_s, text.toString());
    numbered.sort();
    return numbered.isEmpty()
        ? captures(u"(%(?:@|[diuxX%]|l[du]|02[xX]|1\\.1f))"_s, text.toString())
        : numbered;
}

/// What the compiler makes of the inside of a string literal.
QString unescaped(QString literal)
{
    static const QRegularExpression character(u"\\\\u([0-9a-fA-F]{4})"_s);
    for (auto match = character.match(literal); match.hasMatch(); match = character.match(literal))
        literal.replace(match.captured(), QChar(match.captured(1).toUShort(nullptr, 16)));
    return literal.replace(u"\\n"_s, u"\n"_s);
}

/// Source and interface files of everything that is shipped.
QStringList sources()
{
    QStringList result;
    for (const QString &folder : {u"app"_s, u"host"_s, u"aux_windows"_s, u"helpers"_s,
                                  u"plugin_host"_s, u"sourcelist"_s, u"platform"_s, u"plugins"_s}) {
        QDirIterator files(root + u'/' + folder, {u"*.h"_s, u"*.cpp"_s, u"*.ui"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            result += files.next();
    }
    return result;
}

struct LanguageFile : testing::TestWithParam<const char *>
{
    const QString language = QString::fromUtf8(GetParam());
    const QVariantMap english = texts(u"en"_s);
    const QVariantMap translated = texts(language);
};

TEST_P(LanguageFile, HasTheKeysOfTheEnglishFile)
{
    ASSERT_GT(english.size(), 50);
    EXPECT_EQ(translated.keys().join(u' ').toStdString(), english.keys().join(u' ').toStdString());
}

TEST_P(LanguageFile, HasEachKeyOnce)
{
    QStringList written = captures(u"^\"([^\"]+)\" = "_s, contentOf(languageFile(language)));
    written.sort();
    EXPECT_EQ(written.join(u' ').toStdString(), translated.keys().join(u' ').toStdString());
}

TEST_P(LanguageFile, HasTextsThatFit)
{
    for (auto text = translated.begin(); text != translated.end(); ++text) {
        const std::string key = text.key().toStdString();
        const QString translation = text->toString();
        EXPECT_FALSE(translation.trimmed().isEmpty()) << key;
        EXPECT_EQ(placeholders(translation), placeholders(english[text.key()])) << key;
        EXPECT_EQ(translation.count(u'\n'), english[text.key()].toString().count(u'\n')) << key;
    }
}

INSTANTIATE_TEST_SUITE_P(All, LanguageFile,
                         testing::Values("en", "de", "fr", "es", "it", "pt-BR", "pt-PT", "nl", "sv",
                                         "pl", "ru", "uk", "tr", "ja", "ko", "zh-Hans", "zh-Hant"),
                         [](const auto &info) {
                             return QString::fromUtf8(info.param).remove(u'-').toStdString();
                         });

TEST(LanguageFiles, HaveEveryKeyTheSourcesAskFor)
{
    const QVariantMap english = texts(u"en"_s);
    for (const QString &source : sources()) {
        for (const QString &key : captures(u"\\b(SZ_[A-Z0-9_]+)\\b"_s, contentOf(source)))
            EXPECT_TRUE(english.contains(key)) << qPrintable(key) << " in " << qPrintable(source);
    }
}

// A fallback shows when a language file is damaged: it must not say something else than the file.
TEST(LanguageFiles, SayInEnglishWhatTheFallbacksSay)
{
    const QVariantMap english = texts(u"en"_s);
    const QRegularExpression call(
        uR"~(u"(SZ_[A-Z0-9_]+)"_s,\s*((?:u?"(?:[^"\\]|\\.)*"(?:_s)?\s*)+))~"_s);
    for (const QString &source : sources()) {
        const QString content = contentOf(source);
        for (auto calls = call.globalMatch(content); calls.hasNext();) {
            const QRegularExpressionMatch match = calls.next();
            const QStringList pieces = captures(uR"~("((?:[^"\\]|\\.)*)")~"_s, match.captured(2));
            const QString fallback = unescaped(pieces.join(QString()));
            EXPECT_EQ(english[match.captured(1)].toString().toStdString(), fallback.toStdString())
                << qPrintable(match.captured(1)) << " in " << qPrintable(source);
        }
    }
}

// As "de_AT" asks for "de-AT" alone, the language reaches its other regions by files named so.
TEST(LanguageFiles, ServeEveryRegion)
{
    QStringList locales{u"pt_BR pt-BR"_s,   u"pt_PT pt-PT"_s,   u"zh_CN zh-Hans"_s,
                        u"zh_SG zh-Hans"_s, u"zh_HK zh-Hant"_s, u"zh_TW zh-Hant"_s};
    for (const QString &line :
         captures(u"^([a-z].*)"_s, contentOf(root + u"/resources/languages/regions.txt"_s))) {
        const QStringList codes = line.split(u' ');
        for (const QString &region : codes.mid(1))
            locales += codes[0] + u'_' + region + u' ' + codes[0];
    }
    EXPECT_GT(locales.size(), 50);
    for (const QString &line : locales) {
        const QString locale = line.section(u' ', 0, 0), language = line.section(u' ', 1);
        const QString tag = preferredLanguages({}, [&](const char *) { return locale; }).value(0);
        const Result<QVariant> found = PropertyList::read(
            QStringLiteral(SOLVANE_APP_DIR) + u"/Contents/Resources/"_s + tag + u".strings"_s);
        ASSERT_TRUE(found.ok()) << qPrintable(found.error());
        QVariantMap expected = texts(language);
        if (tag == u"de-CH"_s || tag == u"de-LI"_s) {
            for (QVariant &text : expected)
                text = text.toString()
                           .replace(u"ß"_s, u"ss"_s)
                           .replace(u'„', u'«')
                           .replace(u'“', u'»');
        }
        EXPECT_EQ(found.value().toMap(), expected) << qPrintable(locale);
    }
}

TEST(LanguageFiles, AreThoseTheApplicationDeclares)
{
    const Result<QVariant> info =
        PropertyList::read(QStringLiteral(SOLVANE_APP_DIR) + u"/Contents/Info.plist"_s);
    ASSERT_TRUE(info.ok()) << qPrintable(info.error());
    QStringList declared = info.value().toMap()[u"CFBundleLocalizations"_s].toStringList();
    declared.sort();

    QStringList present;
    const QDir folder(root + u"/resources/languages"_s);
    for (const QFileInfo &file : folder.entryInfoList({u"*.strings"_s})) {
        present += file.completeBaseName();
        const QString copy =
            QStringLiteral(SOLVANE_APP_DIR) + u"/Contents/Resources/"_s + file.fileName();
        EXPECT_EQ(contentOf(copy), contentOf(file.filePath())) << qPrintable(copy);
    }
    present.sort();
    EXPECT_EQ(declared, present);
    EXPECT_EQ(present.size(), 17);
}

} // namespace
