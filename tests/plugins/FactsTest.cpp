#include "FakeCore.h"
#include "plugins/status/SystemFacts.h"

TEST(SystemFacts, ReadsWhatTheMachineTells)
{
    const std::tuple<const char *, const char *, int, int> cases[] = {
        {"laptop",
         "anna-laptop|Linux 6.1.0-18-amd64|11th Gen Intel(R) Core(TM) i5-1135G7 @ 2.40GHz", 2, 4},
        {"board", "||", 2, 2},
        {"missing", "||", 0, 0},
    };
    for (const auto &[machine, texts, cores, threads] : cases) {
        const SystemFacts facts =
            readSystemFacts(QStringLiteral(FIXTURES "/") + QString::fromUtf8(machine), {});
        EXPECT_EQ(facts.hostName + u'|' + facts.kernel + u'|' + facts.processor,
                  QString::fromUtf8(texts))
            << machine;
        EXPECT_EQ(facts.cores, cores) << machine;
        EXPECT_EQ(facts.threads, threads) << machine;
    }
}

TEST(SystemFacts, TakesTheHostsWord)
{
    FakeCore core;
    core.osVersion = QStringLiteral("Debian 12, Linux 6.1.0-18-amd64");
    const SystemFacts told = hostFacts(&core);
    const SystemFacts facts = readSystemFacts(QStringLiteral(FIXTURES "/laptop"), told);
    EXPECT_EQ(facts.model, QStringLiteral("Maker Model"));
    EXPECT_EQ(facts.system, QStringLiteral("Debian 12")) << "the kernel has a place of its own";
    EXPECT_EQ(readSystemFacts(QStringLiteral(FIXTURES "/missing"), told).system, core.osVersion);
    EXPECT_EQ(facts.threads, 4);
    EXPECT_TRUE(hostFacts(nullptr).model.isEmpty());
}
