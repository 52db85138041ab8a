#include "plugins/status/SystemFacts.h"

#include <gtest/gtest.h>

TEST(SystemFacts, ReadsWhatTheMachineTells)
{
    struct Case
    {
        const char *machine, *hostName, *model, *system, *kernel, *processor;
        int cores, threads;
    };
    const Case cases[] = {
        {"laptop", "anna-laptop", "Lenovo ThinkPad X1 Carbon Gen 9",
         "Debian \"Bookworm\" & <friends>", "Linux 6.1.0-18-amd64",
         "11th Gen Intel(R) Core(TM) i5-1135G7 @ 2.40GHz", 2, 4},
        {"board", "", "Raspberry Pi 4 Model B Rev 1.4", "Alpine", "", "", 2, 2},
        {"unfilled", "", "ASRock B450M Pro4", "", "", "", 0, 0},
        {"missing", "", "", "", "", "", 0, 0},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.machine);
        const SystemFacts facts =
            readSystemFacts(QStringLiteral(FIXTURES "/") + QString::fromUtf8(c.machine));
        EXPECT_EQ(facts.hostName.toStdString(), c.hostName);
        EXPECT_EQ(facts.model.toStdString(), c.model);
        EXPECT_EQ(facts.system.toStdString(), c.system);
        EXPECT_EQ(facts.kernel.toStdString(), c.kernel);
        EXPECT_EQ(facts.processor.toStdString(), c.processor);
        EXPECT_EQ(facts.cores, c.cores);
        EXPECT_EQ(facts.threads, c.threads);
    }
}
