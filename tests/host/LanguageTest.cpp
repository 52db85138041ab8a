#include "host/LanguageFile.h"
#include "host/LocalizedLink.h"
#include "platform/foundation/Bundle.h"

#include <QStringEncoder>

struct Language : testing::Test
{
    QTemporaryDir m_folder;
    const QString m_contents = m_folder.filePath(u"Contents/"_s);

    void write(const QString &name, const QByteArray &content)
    {
        makeFile(m_contents + name, content);
    }

    LanguageFile load(const QString &language) const
    {
        return LanguageFile::load(Bundle(m_folder.path()), language);
    }
};

const QByteArray english =
    "\"SZ_TITLE\" = \"Solvane\"; \"SZ_NEXT\" = \"Next\"; \"SZ_NONE\" = \"\";";

TEST_F(Language, TakesTheFirstLanguageAsItIsOrElseEnglish)
{
    QStringEncoder utf16(QStringConverter::Utf16LE, QStringConverter::Flag::WriteBom);
    write(u"Resources/en.strings"_s, english);
    write(u"Resources/de.strings"_s, "{ SZ_TITLE = German; }");
    write(u"Resources/fr.strings"_s, utf16(u"SZ_TITLE = \"Français\";"_s));
    write(u"Resources/zh-Hant.strings"_s,
          "<plist><dict><key>SZ_TITLE</key><string>\xe4\xb8\xad</string></dict></plist>");
    write(u"x.strings"_s, "SZ_TITLE = outside;");
    const std::pair<QString, QString> cases[] = {
        {u"fr"_s, u"Français"_s},  {u"de"_s, u"German"_s},       {u"de-AT"_s, u"Solvane"_s},
        {u"zh-Hant"_s, u"中"_s},   {u"en"_s, u"Solvane"_s},      {u"en.strings"_s, u"Solvane"_s},
        {u"../x"_s, u"Solvane"_s}, {u"../../x"_s, u"Solvane"_s}, {u""_s, u"Solvane"_s},
        {QString(), u"Solvane"_s},
    };
    for (const auto &[language, title] : cases) {
        const LanguageFile file = load(language);
        EXPECT_TRUE(file.isLoaded());
        EXPECT_TRUE(file.problems().isEmpty());
        EXPECT_EQ(file.text(u"SZ_TITLE"_s), title) << language.toStdString();
        EXPECT_TRUE(file.path().startsWith(m_contents + u"Resources/"_s));
    }
}

TEST_F(Language, EnglishStandsInForTheWholeOfAFileThatCannotBeRead)
{
    write(u"Resources/en.strings"_s, english);
    ASSERT_TRUE(QDir().mkpath(m_contents + u"Resources/folder.strings"_s));
    write(u"Resources/malformed.strings"_s, "SZ_TITLE = Titre; SZ_NEXT = ");
    write(u"Resources/list.strings"_s, "(SZ_TITLE, Titre)");
    write(u"Resources/text.strings"_s, "SZ_TITLE");
    write(u"Resources/nothing.strings"_s, "");
    for (const QString &language :
         {u"folder"_s, u"malformed"_s, u"list"_s, u"text"_s, u"nothing"_s}) {
        const LanguageFile file = load(language);
        EXPECT_EQ(file.path(), m_contents + u"Resources/en.strings"_s) << language.toStdString();
        EXPECT_EQ(file.text(u"SZ_TITLE"_s), u"Solvane"_s);
        ASSERT_EQ(file.problems().size(), 1);
        EXPECT_TRUE(file.problems()[0].contains(language + u".strings: "_s));
    }
}

TEST_F(Language, TellsNoFileFromNoReadableFile)
{
    EXPECT_EQ(load(u"fr"_s).outcome(), LanguageFile::Outcome::NotFound);
    write(u"Resources/fr.strings"_s, "(");
    EXPECT_EQ(load(u"fr"_s).outcome(), LanguageFile::Outcome::Unreadable);
    EXPECT_EQ(load(u"de"_s).outcome(), LanguageFile::Outcome::NotFound);
    write(u"Resources/en.strings"_s, "(");
    for (const auto &[language, problems] : {std::pair(u"fr"_s, 2), {u"en"_s, 1}, {u"de"_s, 1}}) {
        const LanguageFile file = load(language);
        EXPECT_EQ(file.outcome(), LanguageFile::Outcome::Unreadable);
        EXPECT_EQ(file.problems().size(), problems);
        EXPECT_TRUE(file.path().isNull());
        EXPECT_FALSE(file.text(u"SZ_TITLE"_s));
    }
}

TEST_F(Language, AKeyIsInTheChosenFileOrNowhere)
{
    write(u"Resources/en.strings"_s, english);
    write(u"Resources/fr.strings"_s, "SZ_NONE = \"\"; SZ_LIST = (a, \"%@\");");
    const LanguageFile file = load(u"fr"_s);
    EXPECT_EQ(file.text(u"SZ_NONE"_s), u""_s);
    EXPECT_EQ(file.text(u"SZ_LIST"_s), u"(a, %@)"_s);
    EXPECT_FALSE(file.text(u"SZ_NEXT"_s) || file.text(QString()));
}

TEST_F(Language, LinksGetASuffixForLanguagesWithPages)
{
    const QString plain = u"https://x/support"_s;
    const std::tuple<const char *, QString, QString, QString> cases[] = {
        {"(en, de, fr)", u"de"_s, plain, u"https://x/support-de"_s},
        {"(en, de, fr)", u"de"_s, u"/support?x=1"_s, u"/support-de?x=1"_s},
        {"(en, de, fr)", u"de"_s, u"/a?b?c%@"_s, u"/a-de?b-de?c%@"_s},
        {"(en, de, fr)", u"de"_s, QString(), QString()},
        {"(en, de, fr)", u"en"_s, plain, plain},
        {"(en, de, fr)", u"DE"_s, plain, plain},
        {"(en, de, fr)", u"de-AT"_s, plain, plain},
        {"(en, de, \"\")", QString(), plain, plain},
        {"()", u"zh-Hant"_s, plain, u"https://x/support-zh-Hant"_s},
        {"(en)", u"zh-Hans"_s, plain, u"https://x/support-zh-Hans"_s},
        {"de", u"de"_s, plain, plain},
        {nullptr, u"zh-Hant"_s, plain, plain},
    };
    for (const auto &[localizations, language, link, expected] : cases) {
        write(u"Info.plist"_s,
              localizations ? QByteArray("{ CFBundleLocalizations = ") + localizations + "; }"
                            : QByteArray("{}"));
        EXPECT_EQ(localizedLink(link, language, Bundle(m_folder.path())), expected)
            << language.toStdString();
    }
}
