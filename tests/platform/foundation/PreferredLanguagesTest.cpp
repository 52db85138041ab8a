#include "platform/foundation/PreferredLanguages.h"

#include <gtest/gtest.h>

#include <QHash>

using namespace Qt::StringLiterals;

static QStringList fromEnvironment(const QHash<QString, QString> &variables)
{
    return preferredLanguages(
        {}, [&](const char *name) { return variables.value(QLatin1StringView(name)); });
}

TEST(PreferredLanguages, WritesLocalesAsShortTags)
{
    const std::pair<QString, QString> cases[] = {
        {u"de_DE"_s, u"de"_s},
        {u"de_AT.UTF-8"_s, u"de-AT"_s},
        {u"de"_s, u"de"_s},
        {u"de_DE@euro"_s, u"de"_s},
        {u"de_DE.ISO-8859-15@euro"_s, u"de"_s},
        {u"de_US"_s, u"de-US"_s},
        {u"pt_PT"_s, u"pt-PT"_s},
        {u"pt_BR"_s, u"pt-BR"_s},
        {u"pt"_s, u"pt-BR"_s},
        {u"zh_CN.GB18030"_s, u"zh-Hans"_s},
        {u"zh_SG"_s, u"zh-Hans"_s},
        {u"zh_TW"_s, u"zh-Hant"_s},
        {u"zh_HK"_s, u"zh-Hant"_s},
        {u"zh"_s, u"zh-Hans"_s},
        {u"zh_Hant_CN"_s, u"zh-Hant"_s},
        {u"en_US"_s, u"en"_s},
        {u"en_GB"_s, u"en-GB"_s},
        {u"es_419"_s, u"es-419"_s},
        {u"fr_CA"_s, u"fr-CA"_s},
        {u"ja_JP.eucJP"_s, u"ja"_s},
        {u"sr_RS"_s, u"sr"_s},
        {u"sr_RS@latin"_s, u"sr-Latn"_s},
        {u"sr-Latn-RS"_s, u"sr-Latn"_s},
        {u"uz_UZ@cyrillic"_s, u"uz-Cyrl"_s},
        {u"ca_ES@valencia"_s, u"ca"_s},
        {u"nb_NO"_s, u"nb"_s},
        {u"nn_NO"_s, u"nn"_s},
        {u"no_NO"_s, u"nb"_s},
        {u"iw_IL"_s, u"he"_s},
        {u"DE_at"_s, u"de-AT"_s},
        {u"C"_s, {}},
        {u"C.UTF-8"_s, {}},
        {u"POSIX"_s, {}},
        {u""_s, {}},
        {u"garbage"_s, {}},
        {u"de_"_s, {}},
        {u"de_DE\n"_s, {}},
        {u"../../x"_s, {}},
        {u"/usr/share/locale/de"_s, {}},
        {u"de/../x"_s, {}},
    };
    for (const auto &[locale, tag] : cases) {
        EXPECT_EQ(fromEnvironment({{u"LANG"_s, locale}}),
                  tag.isNull() ? QStringList() : QStringList(tag))
            << locale.toStdString();
    }
}

TEST(PreferredLanguages, TakesVariablesInTheirUsualOrder)
{
    struct Case
    {
        QHash<QString, QString> variables;
        QStringList expected;
    };
    const QString language = u"LANGUAGE"_s, all = u"LC_ALL"_s, messages = u"LC_MESSAGES"_s,
                  lang = u"LANG"_s;
    const Case cases[] = {
        {{}, {}},
        {{{lang, u"de_DE"_s}, {messages, u"fr_FR"_s}}, {u"fr"_s}},
        {{{lang, u"de_DE"_s}, {messages, u"fr_FR"_s}, {all, u"it_IT"_s}}, {u"it"_s}},
        {{{lang, u"de_DE"_s}, {all, u""_s}}, {u"de"_s}},
        {{{language, u"de_AT:de::en_GB:C:de_DE"_s}, {lang, u"en_US.UTF-8"_s}},
         {u"de-AT"_s, u"de"_s, u"en-GB"_s, u"en"_s}},
        {{{language, u"de"_s}, {lang, u"de_DE"_s}}, {u"de"_s}},
        {{{language, u"de"_s}, {lang, u"C"_s}}, {}},
        {{{language, u"de"_s}, {lang, u"de_DE"_s}, {all, u"C.UTF-8"_s}}, {}},
        {{{language, u"de"_s}}, {}},
    };
    for (const Case &c : cases)
        EXPECT_EQ(fromEnvironment(c.variables), c.expected);
}

TEST(PreferredLanguages, WhatIsSetCountsAsItIs)
{
    const auto german = [](const char *) { return u"de_DE"_s; };
    EXPECT_EQ(preferredLanguages({u"zh-Hant-HK"_s, u""_s, u"pt"_s, u"pt"_s}, german),
              QStringList({u"zh-Hant-HK"_s, u"pt"_s}));
    EXPECT_EQ(preferredLanguages({u""_s}, german), QStringList(u"de"_s));
}
