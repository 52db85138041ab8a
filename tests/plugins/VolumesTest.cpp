#include "plugins/status/Volumes.h"
#include "plugins/status/ReadFile.h"

static std::vector<Volume> volumesOf(const char *machine)
{
    const QString root = QStringLiteral(FIXTURES "/") + QString::fromUtf8(machine);
    return parseVolumes(readFile(root + u"/proc/self/mountinfo"_s));
}

TEST(Volumes, AreTheRealOnesOnceEach)
{
    const std::vector<Volume> laptop = {
        {u"/"_s, u"/dev/nvme0n1p2"_s, u"ext4"_s, false},
        {u"/boot/efi"_s, u"/dev/nvme0n1p1"_s, u"vfat"_s, false},
        {u"/home"_s, u"/dev/mapper/vg-home"_s, u"btrfs"_s, false},
        {u"/media/anna/My Stick\\\tx"_s, u"/dev/sdb1"_s, u"exfat"_s, false},
        {u"/media/cd"_s, u"/dev/sr0"_s, u"iso9660"_s, true},
        {u"/mnt/server"_s, u"server.example:/export"_s, u"nfs4"_s, true},
        {u"/mnt/twice"_s, u"/dev/sdd1"_s, u"xfs"_s, false},
    };
    EXPECT_EQ(volumesOf("laptop"), laptop);
    const std::vector<Volume> container = {{u"/"_s, u"overlay"_s, u"overlay"_s, false}};
    EXPECT_EQ(volumesOf("board"), container);
    EXPECT_TRUE(volumesOf("missing").empty());
}

TEST(Volumes, RoundTheirShareUp)
{
    constexpr quint64 huge = quint64(1) << 62;
    const std::tuple<VolumeUsage, int> cases[] = {
        {{100, 0, 100}, 0},   {{100, 1, 99}, 1}, {{1000, 1, 999}, 1},
        {{100, 50, 30}, 63}, // what is reserved counts as neither
        {{100, 100, 0}, 100}, {{100, 0, 0}, 0},  {{huge, huge / 2, huge / 2}, 50},
    };
    for (const auto &[usage, percent] : cases)
        EXPECT_EQ(usage.percent(), percent) << usage.used << '/' << usage.available;
}

TEST(Volumes, AgreeWithDfOnThisMachine)
{
    EXPECT_FALSE(readUsage(u"/no such place"_s));
    EXPECT_FALSE(readUsage(u"/proc"_s)); // holds no blocks

    const auto volumes = parseVolumes(readFile(u"/proc/self/mountinfo"_s));
    ASSERT_FALSE(volumes.empty());
    EXPECT_EQ(volumes.front().path, u"/"_s);
    for (const Volume &volume : volumes) {
        SCOPED_TRACE(volume.path.toStdString());
        QProcess df;
        df.start(u"df"_s, {u"-k"_s, u"--output=size,used,avail,pcent,target"_s, volume.path});
        if (!df.waitForFinished() || df.exitCode() != 0)
            continue;
        const auto usage = readUsage(volume.path);
        const auto fields = df.readAllStandardOutput().split('\n').value(1).simplified().split(' ');
        ASSERT_TRUE(usage);
        ASSERT_GE(fields.size(), 5);
        EXPECT_EQ(usage->size / 1024, fields[0].toULongLong());
        // Others write between the two readings.
        const double tolerance = 256.0 * 1024;
        EXPECT_NEAR(double(usage->used) / 1024, fields[1].toDouble(), tolerance);
        EXPECT_NEAR(double(usage->available) / 1024, fields[2].toDouble(), tolerance);
        EXPECT_NEAR(usage->percent(), fields[3].chopped(1).toInt(), 1);
    }
}
