#include "FakeCore.h"
#include "plugins/status/SystemFacts.h"

#include <gtest/gtest.h>

TEST(SystemFacts, ReadsWhatTheMachineTells)
{
    struct Case
    {
        const char *machine, *hostName, *kernel, *processor;
        int cores, threads;
    };
    const Case cases[] = {
        {"laptop", "anna-laptop", "Linux 6.1.0-18-amd64",
         "11th Gen Intel(R) Core(TM) i5-1135G7 @ 2.40GHz", 2, 4},
        {"board", "", "", "", 2, 2},
        {"missing", "", "", "", 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.machine);
        const SystemFacts facts =
            readSystemFacts(QStringLiteral(FIXTURES "/") + QString::fromUtf8(c.machine), {});
        EXPECT_EQ(facts.hostName.toStdString(), c.hostName);
        EXPECT_EQ(facts.kernel.toStdString(), c.kernel);
        EXPECT_EQ(facts.processor.toStdString(), c.processor);
        EXPECT_EQ(facts.cores, c.cores);
        EXPECT_EQ(facts.threads, c.threads);
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
