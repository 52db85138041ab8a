#include "platform/foundation/PreferredLanguages.h"

#include <QHash>

static QStringList fromEnvironment(const QHash<QString, QString> &variables)
{
    return preferredLanguages(
        {}, [&](const char *name) { return variables.value(QLatin1StringView(name)); });
}

TEST(PreferredLanguages, WritesLocalesAsShortTags)
{
    const QString cases = u"de_DE=de de_AT.UTF-8=de-AT de=de de_DE@euro=de DE_at=de-AT de_US=de-US "
                          "de_DE.ISO-8859-15@euro=de pt_PT=pt-PT pt_BR=pt-BR pt=pt-BR "
                          "zh_CN.GB18030=zh-Hans zh_SG=zh-Hans zh=zh-Hans zh_TW=zh-Hant "
                          "zh_HK=zh-Hant zh_Hant_CN=zh-Hant en_US=en en_GB=en-GB es_419=es-419 "
                          "fr_CA=fr-CA ja_JP.eucJP=ja sr_RS=sr sr_RS@latin=sr-Latn "
                          "sr-Latn-RS=sr-Latn uz_UZ@cyrillic=uz-Cyrl ca_ES@valencia=ca nb_NO=nb "
                          "nn_NO=nn no_NO=nb iw_IL=he C= C.UTF-8= POSIX= = garbage= de_= de_DE\n= "
                          "../../x= /usr/share/locale/de= de/../x="_s;
    for (const QString &line : cases.split(u' ')) {
        const QString locale = line.section(u'=', 0, 0), tag = line.section(u'=', 1);
        EXPECT_EQ(fromEnvironment({{u"LANG"_s, locale}}),
                  tag.isEmpty() ? QStringList() : QStringList(tag))
            << locale.toStdString();
    }
}

TEST(PreferredLanguages, TakesVariablesInTheirUsualOrder)
{
    const QString language = u"LANGUAGE"_s, all = u"LC_ALL"_s, messages = u"LC_MESSAGES"_s,
                  lang = u"LANG"_s;
    const std::tuple<QHash<QString, QString>, QStringList> cases[] = {
        {{}, {}},
        {{{lang, u"de_DE"_s}, {messages, u"fr_FR"_s}}, {u"fr"_s}},
        {{{lang, u"de_DE"_s}, {messages, u"fr_FR"_s}, {all, u"it_IT"_s}}, {u"it"_s}},
        {{{lang, u"de_DE"_s}, {all, u""_s}}, {u"de"_s}},
        {{{language, u"de_AT:de::en_GB:C:de_DE"_s}, {lang, u"en_US.UTF-8"_s}},
         {u"de-AT"_s, u"de"_s, u"en-GB"_s, u"en"_s}},
        {{{language, u"de"_s}, {lang, u"de_DE"_s}}, {u"de"_s}},
        {{{language, u"de"_s}, {lang, u"C"_s}}, {}},
        {{{language, u"de"_s}, {lang, u"de_DE"_s}, {all, u"POSIX"_s}}, {}},
        {{{language, u"de"_s}, {lang, u"de_DE"_s}, {all, u"C.UTF-8"_s}}, {u"de"_s}},
        {{{language, u"de"_s}}, {}},
    };
    for (const auto &[variables, expected] : cases)
        EXPECT_EQ(fromEnvironment(variables), expected);
}

TEST(PreferredLanguages, WhatIsSetCountsAsItIs)
{
    const auto german = [](const char *) { return u"de_DE"_s; };
    EXPECT_EQ(preferredLanguages({u"zh-Hant-HK"_s, u""_s, u"pt"_s, u"pt"_s}, german),
              QStringList({u"zh-Hant-HK"_s, u"pt"_s}));
    EXPECT_EQ(preferredLanguages({u""_s}, german), QStringList(u"de"_s));
}
