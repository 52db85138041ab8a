#include "platform/foundation/PropertyList.h"

#include "platform/foundation/PropertyListLimits.h"
#include "tests/support/BinaryPropertyList.h"

#include <QStringEncoder>

#include <bit>

static QByteArray xml(const QByteArray &content)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist PUBLIC \"-//x\" \"y\">\n"
           "<plist version=\"1.0\">"
        + content + "</plist>\n";
}

const QByteArray everything =
    xml("<dict><key>text</key><string>a &amp; \xc3\xa9</string><key>yes</key><true/>"
        "<key>no</key><false/><key>minus</key><integer>-5</integer><key>least</key><integer>"
        "-9223372036854775808</integer><key>most</key><integer>18446744073709551615</integer>"
        "<key>real</key><real>0.5</real><key>date</key><date>2020-01-02T03:04:05Z</date>"
        "<key>data</key><data>\nD71\n3</data><key>list</key><array><string/><dict/><array/></array>"
        "</dict>");

static QByteArray real(double value)
{
    return bigEndian(std::bit_cast<quint64>(value), 8);
}

const QByteArray everythingInBinary = binary({"\xda" + references(1, 20),
                                              "\x54text",
                                              "\x53yes",
                                              "\x52no",
                                              "\x55minus",
                                              "\x55least",
                                              "\x54most",
                                              "\x54real",
                                              "\x54"
                                              "date",
                                              "\x54"
                                              "data",
                                              "\x54list",
                                              QByteArray("\x65\0a\0 \0&\0 \0\xe9", 11),
                                              "\x09",
                                              "\x08",
                                              "\x13" + bigEndian(~4ULL, 8),
                                              "\x13" + bigEndian(1ULL << 63, 8),
                                              "\x14" + bigEndian(0, 8) + bigEndian(~0ULL, 8),
                                              "\x23" + real(0.5),
                                              "\x33" + real(599'627'045),
                                              "\x43\x0f\xbd\x77",
                                              "\xa3" + references(21, 3),
                                              "\x50",
                                              "\xd0",
                                              "\xa0"});

const QVariantMap everythingRead{{u"text"_s, u"a & é"_s},
                                 {u"yes"_s, true},
                                 {u"no"_s, false},
                                 {u"minus"_s, -5LL},
                                 {u"least"_s, std::numeric_limits<qlonglong>::min()},
                                 {u"most"_s, std::numeric_limits<qulonglong>::max()},
                                 {u"real"_s, 0.5},
                                 {u"date"_s, QDateTime(QDate(2020, 1, 2), QTime(3, 4, 5), Qt::UTC)},
                                 {u"data"_s, QByteArray("\x0f\xbd\x77")},
                                 {u"list"_s, QVariantList{u""_s, QVariantMap(), QVariantList()}}};

TEST(PropertyList, ReadsEveryKindOfValueInXmlAndBinary)
{
    for (const QByteArray &data : {everything, everythingInBinary}) {
        const Result<QVariant> read = PropertyList::parse(data);
        ASSERT_TRUE(read.ok()) << read.error().toStdString();
        const QVariantMap map = read.value().toMap();
        EXPECT_EQ(map, everythingRead);
        for (auto entry = everythingRead.cbegin(); entry != everythingRead.cend(); ++entry)
            EXPECT_EQ(map[entry.key()].typeId(), entry->typeId()) << entry.key().toStdString();
        EXPECT_EQ(map.value(u"date"_s).toDateTime().timeSpec(), Qt::UTC);
    }
    const QDateTime date(QDate(2020, 1, 2), QTime(3, 4, 5, 678), Qt::UTC);
    const std::pair<QByteArray, QVariant> cases[] = {
        {binary({"\x81\x01\x02"}), 258ULL},
        {binary({"\xa2" + references(1, 1).repeated(2), "\x09"}), QVariantList{true, true}},
        {binary(
             {"\xd2" + references(1, 1).repeated(2) + references(2, 2), "\x51k", "\x09", "\x08"}),
         QVariantMap{{u"k"_s, false}}},
        {binary({QByteArray("\x53"
                            "a\0b",
                            4)}),
         u"a\0b"_s},
        {binary({"\x60"}), u""_s},
        {binary({QByteArray("\x62\xd8\x3d\xde\0", 5)}), u"😀"_s},
        {binary({"\x61\xd8\x3d"}), QString(QChar(0xd83d))},
        {binary({"\x33" + real(-0.5)}),
         QDateTime(QDate(2000, 12, 31), QTime(23, 59, 59, 500), Qt::UTC)},
        {binary({QByteArray("\x22\x3f\xc0\0\0", 5)}), 1.5},
        {xml("<string> a<!--c-->b<![CDATA[<x>]]>d<?p i?>\r\n&#x1F600;&quot;</string>"),
         u" ab<x>d\n😀\""_s},
        {xml("<dict><key/><true/><key>k<!--c--></key><false/></dict>"),
         QVariantMap{{u""_s, true}, {u"k"_s, false}}},
        {xml("<date>2020-01-02T03:04:05.678Z</date>"), date},
        {xml("<date>2020-01-02T05:04:05.678+02:00</date>"), date},
        {xml("<date>2020-01-02T03:04:05.678</date>"), date},
        {xml("<integer> -0x1F\n</integer>"), -31LL},
        {"<!DOCTYPE plist [<!ELEMENT plist ANY> <!-- ]> -->]><plist><data>D71=</data></plist>",
         QByteArray("\x0f\xbd")},
    };
    for (const auto &[data, expected] : cases) {
        const Result<QVariant> read = PropertyList::parse(data);
        EXPECT_EQ(read.valueOr({}), expected) << data.constData() << read.error().toStdString();
    }
    for (const int year : {1, 1066, 4001}) {
        const QByteArray date = QByteArray::number(year).rightJustified(4, '0');
        EXPECT_EQ(PropertyList::parse(xml("<date>" + date + "-02-03T04:05:06Z</date>")).value(),
                  QVariant(QDateTime(QDate(year, 2, 3), QTime(4, 5, 6), Qt::UTC)));
    }
}

TEST(PropertyList, ReadsTheTextForm)
{
    const auto pairs = [](const QString &key, const QVariant &value) {
        return QVariantMap{{key, value}};
    };
    const std::pair<const char *, QVariant> cases[] = {
        {"{ key = value; }", pairs(u"key"_s, u"value"_s)},
        {"\"a key\" = \"a text\";", pairs(u"a key"_s, u"a text"_s)},
        {"// c\n/* c = d; */ a = /**/ b // x\n ;", pairs(u"a"_s, u"b"_s)},
        {"key;", pairs(u"key"_s, u"key"_s)},
        {"a = 1; a = 2;", pairs(u"a"_s, u"2"_s)},
        {"a = \"\";", pairs(u"a"_s, u""_s)},
        {"http://x.y/$z_-9 = 'it is \"so\"';", pairs(u"http://x.y/$z_-9"_s, u"it is \"so\""_s)},
        {"a = \"\\n\\t\\r\\\\\\\"\\'\\q\\\n\";", pairs(u"a"_s, u"\n\t\r\\\"'q\n"_s)},
        {"a = \"\\U00e9\\Ud83d\\Ude00\\351\\U41\\Ux\\0\";",
         pairs(u"a"_s, u"é😀éAUx"_s + QChar(u'\0'))},
        {"a = (b, (c, ), {d = e;}, <0fbd 77>);",
         pairs(u"a"_s,
               QVariantList{u"b"_s, QVariantList{u"c"_s}, pairs(u"d"_s, u"e"_s),
                            QByteArray("\x0f\xbd\x77")})},
        {"{}", QVariantMap()},
        {" \n // nothing\n", QVariantMap()},
        {"()", QVariantList()},
        {"<deadbeef>", QByteArray("\xde\xad\xbe\xef")},
        {"just-a-text", u"just-a-text"_s},
        {"\"a\n//text\"", u"a\n//text"_s},
    };
    for (const auto &[text, expected] : cases) {
        const Result<QVariant> read = PropertyList::parse(text);
        ASSERT_TRUE(read.ok()) << text << ": " << read.error().toStdString();
        EXPECT_EQ(read.value(), expected) << text;
    }
}

TEST(PropertyList, ReadsEveryUnicodeEncoding)
{
    const QVariant expected = QVariantMap{{u"k"_s, u"é😀"_s}};
    for (const QString &text : {u"k = \"é😀\";"_s,
                                u"<?xml version=\"1.0\" encoding=\"UTF-16\"?>"
                                "<plist><dict><key>k</key><string>é😀</string></dict></plist>"_s}) {
        for (const auto encoding :
             {QStringConverter::Utf8, QStringConverter::Utf16LE, QStringConverter::Utf16BE}) {
            for (const auto mark :
                 {QStringConverter::Flag::WriteBom, QStringConverter::Flag::Default}) {
                QStringEncoder encoder(encoding, mark);
                EXPECT_EQ(PropertyList::parse(encoder(text)).valueOr({}), expected) << encoding;
            }
        }
    }
    EXPECT_EQ(PropertyList::parse("<?xml version=\"1.0\" encoding='ISO-8859-1'?>"
                                  "<plist><string>\xe9</string></plist>")
                  .valueOr({}),
              QVariant(u"é"_s));
}

TEST(PropertyList, SaysInWhichLineWhatIsWrong)
{
    const std::pair<QByteArray, const char *> cases[] = {
        {"a = b;\nc = d\n\ne = f;", "line 2: expected ; after the value of \"c\""},
        {"a = b;\r\nc\r\nd", "line 2: expected = or ; after the key \"c\""},
        {"a = b;\n\n\"c = d;\n", "line 3: expected a closing \""},
        {"\n{ a = b;", "line 2: expected a key or }"},
        {"{ a = b }", "line 1: expected ;"},
        {"a = (b c);", "line 1: expected , or )"},
        {"a = (b,", "line 1: expected a key or a value"},
        {"a = ;", "line 1: expected a key or a value"},
        {"a = <0f b>;", "line 1: expected an even number"},
        {"a = <0g>;", "line 1: expected hexadecimal digits or >"},
        {"a = b; /* c", "line 1: expected */"},
        {"{} x", "line 1: expected the end"},
        {"a = b; ! = c;", "line 1: expected a key"},
        {"k = \"\xff\";", "not valid UTF-8"},
        {"\xff\xfe" + QByteArray("k\0 ", 3), "not valid UTF-16"},
        {"", "empty"},
        {"bplist00", "trailer"},
        {xml("<dict>\n<key>a</key></dict>"), "line 4: expected a value for the last key"},
        {xml("<dict><string>a</string></dict>"), "line 3: expected <key>, found <string>"},
        {xml("<dict><key>a</key>\n<key>b</key></dict>"), "line 4: expected a value, found <key>"},
        {xml("<array><key>a</key></array>"), "expected a value, found <key>"},
        {xml("<true/><true/>"), "expected </plist>, found <true>"},
        {xml("<array>text</array>"), "expected an element, found text"},
        {xml("<wrong/>"), "found <wrong>"},
        {xml("<string><b/></string>"), "line 3"},
        {xml("<array>"), "line 3"},
        {xml("<string>&unknown;</string>"), "line 3: undefined entity unknown"},
        {"<plist><string>&unknown;</string></plist>", "line 1: undefined entity"},
        {xml("<string>&#1;</string>"), "line 3"},
        {binary({"\x09"}).replace("00\x09", "01\x09"), "unknown version"},
        {xml("<integer>12x</integer>"), "expected integer, found \"12x\""},
        {xml("<date>yesterday</date>"), "expected date"},
        {xml("<real></real>"), "expected real"},
        {xml(""), "expected a value, found </plist>"},
    };
    for (const auto &[data, expected] : cases) {
        const Result<QVariant> read = PropertyList::parse(data);
        EXPECT_FALSE(read.ok()) << data.constData();
        EXPECT_TRUE(read.error().contains(QLatin1StringView(expected)))
            << data.constData() << ": " << read.error().toStdString();
    }
}

TEST(PropertyList, RefusesWhatWouldExhaustTheMachine)
{
    const auto nested = [](const QByteArray &open, const QByteArray &close, int levels) {
        return open.repeated(levels) + close.repeated(levels);
    };
    QList<QByteArray> laughs;
    for (int i = 1; i < 40; ++i)
        laughs << "\xa2" + bigEndian(quint64(i), 2) + bigEndian(quint64(i), 2);
    QList<QByteArray> bulky{"\xaf\x11\x08\x01" + bigEndian(1, 2).repeated(0x801),
                            "\x4f\x12" + bigEndian(65536, 4) + QByteArray(65536, 'x')};
    QList<QByteArray> chain;
    for (int i = 1; i < 60000; ++i)
        chain << "\xa1" + bigEndian(quint64(i), 2);
    const std::pair<QByteArray, const char *> cases[] = {
        {nested("(", ")", 100'000), "no more than 512 levels"},
        {nested("{a=", ";}", 1000), "no more than 512 levels"},
        {xml(nested("<array>", "</array>", 100'000)), "no more than 512 levels"},
        {"a = (" + QByteArray("b,").repeated(300'000) + ");", "no more than 200000 values"},
        {xml("<array>" + QByteArray("<true/>").repeated(300'000)), "no more than 200000 values"},
        {QByteArray("a;").repeated(300'000), "no more than 200000 values"},
        {QByteArray(PropertyListLimits::bytes + 1, ' '), "larger than"},
        {xml("<dict" + QByteArray(" a=\"\"").repeated(200'000) + "/>"), "no more than 65536 bytes"},
        {xml(QByteArray("<array>") + "<true" + QByteArray(66'000, ' ') + "/></array>"),
         "no more than 65536 bytes"},
        {"<!DOCTYPE p [" + QByteArray("<!ELEMENT p ANY>").repeated(5'000)
             + "]><plist><true/></plist>",
         "no more than 65536 bytes"},
        {"<!DOCTYPE p [<!ENTITY a 'b'>]><plist><true/></plist>", "no declaration of an entity"},
        {"<!DOCTYPE p [<!ENTITY % a '%b;'>]><plist><true/></plist>", "no declaration of an entity"},
        {"<!DOCTYPE p [<!ATTLIST true a CDATA ''>]><plist><true/></plist>",
         "no declaration of an attribute"},
        {binary({QByteArray("\xa1\0\0", 3)}), "object 0 contains itself"},
        {binary({"\xa1" + bigEndian(1, 2), QByteArray("\xa1\0\0", 3)}), "object 0 contains itself"},
        {binary(laughs << QByteArray("\x09")), "more than 200000 values"},
        {binary(chain << QByteArray("\x09")), "deeper than 512 levels"},
        {binary(bulky), "33554432 bytes"},
        {binary({QByteArray("\xd1\0\1\0\1", 5), "\x09"}), "a key of object 0"},
        {binary({"\xa1\xff\xff"}), "object 0 is damaged"},
        {binary({"\x14" + bigEndian(1, 8) + bigEndian(0, 8)}), "object 0 is damaged"},
        {binary({"\x84" + bigEndian(1, 1) + bigEndian(0, 4)}), "object 0 is damaged"},
        {binary({QByteArray(1, '\0')}), "object 0 is damaged"},
        {binary({"\x5f\x13\xff\xff\xff\xff\xff\xff\xff\xff"}), "object 0 is damaged"},
        {binary({"\xcf\x12\xff\xff\xff\xff"}), "object 0 is damaged"},
    };
    for (const auto &[data, expected] : cases) {
        const Result<QVariant> read = PropertyList::parse(data);
        EXPECT_TRUE(read.error().contains(QLatin1StringView(expected)))
            << expected << ": " << read.error().toStdString();
    }
    EXPECT_TRUE(PropertyList::parse(nested("(", ")", PropertyListLimits::depth)).ok());
    EXPECT_TRUE(
        PropertyList::parse(xml(nested("<array>", "</array>", PropertyListLimits::depth))).ok());
}

TEST(PropertyList, ReadsRegularFilesOnly)
{
    const QTemporaryDir folder;
    const QString path = makeFile(folder.filePath(u"list"_s), "a = b;\nc");
    EXPECT_EQ(PropertyList::read(path).error(),
              path + u": line 2: expected = or ; after the key \"c\""_s);
    ASSERT_TRUE(QFile::resize(path, 6) && QFile::link(path, path + u".link"_s));
    EXPECT_EQ(PropertyList::read(path + u".link"_s).valueOr({}),
              QVariant(QVariantMap{{u"a"_s, u"b"_s}}));

    const QString pipe = folder.filePath(u"pipe"_s);
    makePipe(pipe);
    for (const QString &other : {folder.path(), pipe, u"/dev/zero"_s, u""_s,
                                 folder.filePath(u"missing"_s), path + QChar(u'\0') + u"x"_s}) {
        const Result<QVariant> read = PropertyList::read(other);
        EXPECT_FALSE(read.ok()) << other.toStdString();
        EXPECT_GT(read.error().size(), other.size() + 2);
    }
}
