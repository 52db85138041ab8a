#include "helpers/hardwareInfo.h"

#include "platform/foundation/FilePath.h"
#include "support/TestServices.h"

#include <QStorageInfo>

#include <algorithm>

TEST(HardwareInfo, AnswersWhatTheMachineTellsOrItsFallback)
{
    TestServices services;
    hardwareInfo info;
    const auto answers = [&info] {
        return u"%1|%2|%3|%4|%5|%6"_s.arg(info.modelName(), info.osVersion(), info.osLanguage())
            .arg(info.cpuCount())
            .arg(info.cpuSpeed())
            .arg(info.ramSize());
    };
    services.preferredLanguages.clear();
    EXPECT_TRUE(info.modelName().isNull());
    EXPECT_TRUE(info.osLanguage().isNull());
    EXPECT_EQ(answers(), u"|||1|0|0"_s);
    services.preferredLanguages = QStringList{u"pt-BR"_s, u"en"_s};
    services.cpuCount = 8;
    services.cpuSpeed = 2400;
    services.ramSize = 16000;
    services.osVersion = u"Debian 12"_s;
    services.modelName = u"Maker Model"_s;
    EXPECT_EQ(answers(), u"Maker Model|Debian 12|pt-BR|8|2400|16000"_s);
}

TEST(HardwareInfo, MeasuresVolumes)
{
    hardwareInfo info;
    const QTemporaryDir root;
    const QString strange = root.path() + u'/' + FilePath::decode("\xff");
    ASSERT_EQ(::mkdir(FilePath::encode(strange).constData(), 0700), 0);
    for (const QString &path : {root.path(), strange}) {
        // Others write meanwhile: sooner or later the answer lies between those before and after
        // it.
        bool agrees = false;
        for (int attempt = 0; attempt < 10'000 && !agrees; ++attempt) {
            const QStorageInfo before(root.path());
            const quint64 size = info.hdSize(path), free = info.hdFree(path);
            const QStorageInfo after(root.path());
            const auto [least, most] =
                std::minmax({before.bytesAvailable(), after.bytesAvailable()});
            agrees = size == quint64(after.bytesTotal()) && quint64(least) <= free
                && free <= quint64(most);
        }
        EXPECT_TRUE(agrees) << qPrintable(path);
    }
    ::rmdir(FilePath::encode(strange).constData());
    for (const QString &path : {u"/no/such/path"_s, u""_s, QString(), u"/tmp\0x"_s}) {
        EXPECT_EQ(info.hdSize(path), 0u);
        EXPECT_EQ(info.hdFree(path), 0u);
    }
}
