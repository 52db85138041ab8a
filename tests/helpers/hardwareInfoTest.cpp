#include "helpers/hardwareInfo.h"

#include "platform/foundation/FilePath.h"
#include "support/TestServices.h"

#include <QStorageInfo>

TEST(HardwareInfo, AnswersWhatTheMachineTellsOrItsFallback)
{
    TestServices services;
    hardwareInfo info;
    services.preferredLanguages.clear();
    EXPECT_TRUE(info.modelName().isNull());
    EXPECT_TRUE(info.osLanguage().isNull());
    EXPECT_EQ(info.cpuCount(), 1);
    EXPECT_EQ(info.cpuSpeed(), 0);
    EXPECT_EQ(info.ramSize(), 0);
    services.preferredLanguages = QStringList{u"pt-BR"_s, u"en"_s};
    services.cpuCount = 8;
    services.cpuSpeed = 2400;
    services.ramSize = 16000;
    services.osVersion = u"Debian 12"_s;
    services.modelName = u"Maker Model"_s;
    EXPECT_EQ(info.osLanguage(), u"pt-BR"_s);
    EXPECT_EQ(info.cpuCount(), 8);
    EXPECT_EQ(info.cpuSpeed(), 2400);
    EXPECT_EQ(info.ramSize(), 16000);
    EXPECT_EQ(info.osVersion(), u"Debian 12"_s);
    EXPECT_EQ(info.modelName(), u"Maker Model"_s);
}

TEST(HardwareInfo, MeasuresVolumes)
{
    hardwareInfo info;
    const QTemporaryDir root;
    const QString strange = root.path() + u'/' + FilePath::decode("\xff");
    ASSERT_EQ(::mkdir(FilePath::encode(strange).constData(), 0700), 0);
    for (const QString &path : {root.path(), strange}) {
        // Others write meanwhile: sooner or later two answers in a row are of the same moment.
        bool agrees = false;
        for (int attempt = 0; attempt < 10'000 && !agrees; ++attempt) {
            const QStorageInfo proof(root.path());
            agrees = info.hdFree(path) == quint64(proof.bytesAvailable())
                && info.hdSize(path) == quint64(proof.bytesTotal());
        }
        EXPECT_TRUE(agrees) << qPrintable(path);
    }
    ::rmdir(FilePath::encode(strange).constData());
    for (const QString &path : {u"/no/such/path"_s, u""_s, QString(), u"/tmp\0x"_s}) {
        EXPECT_EQ(info.hdSize(path), 0u);
        EXPECT_EQ(info.hdFree(path), 0u);
    }
}
