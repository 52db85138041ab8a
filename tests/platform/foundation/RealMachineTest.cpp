#include "platform/foundation/RealMachine.h"

namespace {

using Told = std::pair<const char *, QByteArray>;

/// A machine made of these files.
class Machine
{
public:
    explicit Machine(const QList<Told> &files)
    {
        for (const auto &[path, content] : files)
            makeFile(m_root.filePath(QString::fromLatin1(path)), content);
    }
    QString root() const { return m_root.path(); }
    RealMachineFacts facts() const { return RealMachineFacts(m_root.path()); }

private:
    QTemporaryDir m_root;
};

constexpr auto vendor = "sys/class/dmi/id/sys_vendor";
constexpr auto product = "sys/class/dmi/id/product_name";
constexpr auto tree = "proc/device-tree/model";
constexpr auto release = "etc/os-release";
constexpr auto kernel = "proc/sys/kernel/osrelease";
constexpr auto highestClock = "sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq";

} // namespace

TEST(RealMachineFacts, AreReadFromWhatFilesThereAre)
{
    const QByteArray info = "processor : 0\ncpu MHz\t\t: 2399.876\nprocessor : 1\ncpu MHz : 800\n";
    const struct
    {
        QList<Told> files;
        QString model = {};
        QString version = u"Linux"_s;
        std::optional<int> speed = {};
        std::optional<int> memory = {};
    } cases[] = {
        {{}},
        {{{vendor, "Dell Inc.\n"}, {product, "XPS 13\n"}}, u"Dell Inc. XPS 13"_s},
        {{{vendor, "HP\n"}, {product, "HP ProBook 450\n"}}, u"HP ProBook 450"_s},
        {{{vendor, "LENOVO\n"},
          {product, "20XW\n"},
          {"sys/class/dmi/id/product_version", "ThinkPad X1\n"}},
         u"Lenovo ThinkPad X1"_s},
        {{{vendor, "To be filled by O.E.M.\n"},
          {product, "System Product Name\n"},
          {"sys/class/dmi/id/board_name", "B450M\n"},
          {"sys/class/dmi/id/board_vendor", "ASRock\n"}},
         u"ASRock B450M"_s},
        {{{product, "Default string"}, {tree, QByteArray("Raspberry Pi 4\0rest", 19)}},
         u"Raspberry Pi 4"_s},
        {{{product, "\xff\xfe\x80"}}},
        {{{product, QByteArray(1'000'000, 'x')}}},
        {{{product, "\xc3\xa4" + QByteArray(300, 'x')}}, u'ä' + QString(253, u'x')},
        {{{product, "x" + QByteArray("\xf0\x9f\x98\x80").repeated(80)}},
         u'x' + QString::fromUtf8("\xf0\x9f\x98\x80").repeated(63)},

        {{{release, "NAME=\"Arch Linux\"\nPRETTY_NAME=\"Arch Linux\"\n"}, {kernel, "6.6.1\n"}},
         {},
         u"Arch Linux, Linux 6.6.1"_s},
        {{{kernel, "6.6.1\n"}}, {}, u"Linux 6.6.1"_s},
        {{{"usr/lib/os-release", "# c\r\nNAME=Alpine\nVERSION='3.19 (x)'\n"}},
         {},
         u"Alpine 3.19 (x)"_s},
        {{{release, R"(PRETTY_NAME="A \"B\" \$C \`D \\ \n")"}}, {}, uR"(A "B" $C `D \ \n)"_s},
        {{{release, R"(PRETTY_NAME=One\ Two)"}, {"usr/lib/os-release", "PRETTY_NAME=No"}},
         {},
         u"One Two"_s},
        {{{release, R"(PRETTY_NAME='it'\''s \n')"}}, {}, uR"(it's \n)"_s},
        {{{release, "PRETTY_NAME=\"open"}}, {}, u"open"_s},
        {{{release, QByteArray(200'000, '\n') + "PRETTY_NAME=Far"}}},

        {{{highestClock, "4200000\n"}, {"proc/cpuinfo", info}}, {}, u"Linux"_s, 4200},
        {{{highestClock, "junk"}, {"proc/cpuinfo", info}}, {}, u"Linux"_s, 2400},
        {{{"proc/cpuinfo", "cpu MHz : nan\ncpu MHz : -5\n"}}},
        {{{"proc/meminfo", "MemFree: 1 kB\nMemTotal:       16384000 kB\n"}},
         {},
         u"Linux"_s,
         {},
         16000},
        {{{"proc/meminfo", "MemTotal: 1e300 kB\n"}}},
    };
    for (const auto &[files, model, version, speed, memory] : cases) {
        const Machine machine(files);
        EXPECT_EQ(machine.facts().modelName(), model);
        EXPECT_EQ(machine.facts().modelName().isNull(), model.isNull());
        EXPECT_EQ(machine.facts().osVersion(), version);
        EXPECT_EQ(machine.facts().cpuSpeed(), speed);
        EXPECT_EQ(machine.facts().ramSize(), memory);
    }
    const RealMachineFacts here;
    EXPECT_GE(here.cpuCount().value_or(0), 1);
    EXPECT_GE(here.ramSize().value_or(0), 64);
    const Machine piped(QList<Told>{{kernel, "6.6.1"}});
    QDir(piped.root()).mkdir(u"etc"_s);
    makePipe(piped.root() + u"/etc/os-release"_s);
    EXPECT_EQ(piped.facts().osVersion(), u"Linux 6.6.1"_s) << "it waits for no pipe";
}
