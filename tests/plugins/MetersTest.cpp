#include "plugins/common/Texts.h"
#include "plugins/status/LoadMeter.h"
#include "plugins/status/MemoryMeter.h"
#include "plugins/status/ReadFile.h"
#include "plugins/status/Sizes.h"
#include "plugins/status/Uptime.h"

TEST(LoadMeter, CountsNeitherIdleNorWaitingNorGuestTimeTwice)
{
    const std::tuple<const char *, const char *, double> cases[] = {
        {"cpu 0 0 0 0 0 0 0 0 0 0", "cpu 10 10 10 50 10 5 3 2 10 10\ncpu0 9", 0.4},
        {"cpu 5 0 0 5", "cpu 6 0 0 5", 1.0},
        {"cpu 5 0 0 5", "cpu 5 0 0 6", 0.0},
        {"cpu 5 0 0 5 9", "cpu 4 0 0 9 9", 0.0}, // the busy share seems to shrink
        {"cpu 5 0 0 5", "cpu 5 0 0 5", -1},      // no time has passed
        {"cpu 5 0 0 5", "cpu 1 0 0 1", -1},      // the clock starts anew
        {"cpu 5 0 0 5", "", -1},                 // nothing to read
        {"cpu 5 0 0 5", "cpu 9 x 0 9", -1},      // nonsense
        {"cpu 5 0 0 5", "cpu0 9 0 0 9", -1},     // no line for all processors
        {"cpu 5 0 0 5", "cpu 9 0 0", -1},        // cut off
    };
    for (const auto &[before, after, expected] : cases) {
        const auto earlier = parseProcessorTimes(before);
        const auto later = parseProcessorTimes(after);
        const auto load = earlier && later ? loadBetween(*earlier, *later) : std::nullopt;
        EXPECT_DOUBLE_EQ(load.value_or(-1), expected) << after; // -1: none
    }
}

TEST(MemoryMeter, CountsAsFreeDoes)
{
    const std::tuple<const char *, quint64, quint64> cases[] = {
        {"MemTotal: 1000 kB\nMemFree: 100 kB\nMemAvailable:   600 kB\n", 1000, 400},
        {"MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 50 kB\n", 1000, 900},
        {"MemTotal: 1000 kB\nMemFree: 100 kB\nMemAvailable: 5000 kB\n", 1000, 900},
        {"MemTotal: 1000 kB\nMemFree: 9000 kB\nMemAvailable: 5000 kB\n", 1000, 0},
        {"MemFree: 100 kB\nMemAvailable: 600 kB\n", 0, 0},
        {"MemTotal: 0 kB\n", 0, 0},
        {"", 0, 0},
    };
    for (const auto &[meminfo, total, used] : cases) {
        SCOPED_TRACE(meminfo);
        const auto memory = parseMemory(meminfo).value_or(MemoryReading{});
        EXPECT_EQ(memory.total, total * 1024);
        EXPECT_EQ(memory.used, used * 1024);
    }
}

TEST(MemoryMeter, AgreesWithFreeOnThisMachine)
{
    QProcess free;
    free.start(u"free"_s, {u"-k"_s});
    if (!free.waitForFinished() || free.exitCode() != 0)
        GTEST_SKIP() << "free is not installed";
    const auto memory = parseMemory(readFile(u"/proc/meminfo"_s));
    ASSERT_TRUE(memory);
    const auto fields = free.readAllStandardOutput().split('\n').value(1).simplified().split(' ');
    ASSERT_GE(fields.size(), 7);
    EXPECT_EQ(memory->total, fields[1].toULongLong() * 1024);
    // Other programs go on between the two readings.
    const double tolerance = double(memory->total) * 0.05;
    EXPECT_NEAR(double(memory->used), fields[2].toDouble() * 1024, tolerance);
    EXPECT_NEAR(double(memory->available), fields[6].toDouble() * 1024, tolerance);
}

TEST(Uptime, TakesWholeSeconds)
{
    EXPECT_EQ(parseUptime("273725.91 1000.00\n"), 273725);
    EXPECT_EQ(parseUptime("7.5"), 7);
    for (const char *nonsense : {"", "soon", "-1 2", "nan 1", "1e300 1"})
        EXPECT_FALSE(parseUptime(nonsense)) << nonsense;
}

TEST(Sizes, ReadLikePeopleWriteThem)
{
    const Texts texts(nullptr);
    constexpr quint64 megabyte = 1 << 20;
    const std::pair<quint64, const char *> sizes[] = {
        {0, "0.0 MB"},
        {megabyte / 2, "0.5 MB"},
        {megabyte * 1024 - 1, "1.0 GB"}, // never "1024.0 MB"
        {megabyte * 1536, "1.5 GB"},
        {megabyte * 1024 * 1024 - 1, "1.0 TB"},
        {megabyte * 1024 * 1024 * 2048, "2,048.0 TB"},
    };
    for (const auto &[bytes, text] : sizes)
        EXPECT_EQ(sizeText(bytes, texts).toStdString(), text) << bytes;
    const std::pair<quint64, const char *> durations[] = {
        {59, "0 min"},          {3599, "59 min"},    {3600, "1 h 0 min"},
        {86399, "23 h 59 min"}, {273725, "3 d 4 h"},
    };
    for (const auto &[seconds, text] : durations)
        EXPECT_EQ(durationText(seconds, texts).toStdString(), text) << seconds;
}

TEST(Texts, FillOncePlaceByPlace)
{
    const std::tuple<const char *, const char *> cases[] = {
        {"%1 of %2", "%2 of b"},      {"%2, %1", "b, %2"}, {"%1%", "%2%"},
        {"%3 %9 %0 %", "%3 %9 %0 %"}, {"100%", "100%"},    {"", ""},
        {"%x%%1", "%x%%2"},
    };
    for (const auto &[text, filled] : cases)
        EXPECT_EQ(Texts::fill(QString::fromUtf8(text), {u"%2"_s, u"b"_s}).toStdString(), filled);
}
