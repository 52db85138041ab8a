#include "FakeCore.h"
#include "plugins/status/SystemFacts.h"

TEST(SystemFacts, ReadsWhatTheMachineTells)
{
    const std::tuple<const char *, const char *, const char *, const char *, int, int> cases[] = {
        {"laptop", "anna-laptop", "Linux 6.1.0-18-amd64",
         "11th Gen Intel(R) Core(TM) i5-1135G7 @ 2.40GHz", 2, 4},
        {"board", "", "", "", 2, 2},
        {"missing", "", "", "", 0, 0},
    };
    for (const auto &[machine, hostName, kernel, processor, cores, threads] : cases) {
        SCOPED_TRACE(machine);
        const SystemFacts facts =
            readSystemFacts(QStringLiteral(FIXTURES "/") + QString::fromUtf8(machine), {});
        EXPECT_EQ(facts.hostName.toStdString(), hostName);
        EXPECT_EQ(facts.kernel.toStdString(), kernel);
        EXPECT_EQ(facts.processor.toStdString(), processor);
        EXPECT_EQ(facts.cores, cores);
        EXPECT_EQ(facts.threads, threads);
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
