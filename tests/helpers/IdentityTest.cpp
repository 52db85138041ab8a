#include "helpers/AnonymousIdentifier.h"
#include "helpers/Hash.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/RealMachine.h"
#include "support/TestServices.h"

TEST(Identity, DigestOfTheBytesBeforeTheFirstZero)
{
    EXPECT_EQ(stringByHashMD5(u""_s), u"D41D8CD98F00B204E9800998ECF8427E"_s);
    EXPECT_EQ(stringByHashMD5(u"abc"_s), u"900150983CD24FB0D6963F7D28E17F72"_s);
    EXPECT_EQ(stringByHashMD5(u"abc\0def"_s), u"900150983CD24FB0D6963F7D28E17F72"_s);
    EXPECT_TRUE(stringByHashMD5({}).isNull());
}

TEST(Identity, ChecksumIsTheCommonOneExceptAtEntry12)
{
    sharedHelpers helpers;
    EXPECT_EQ(helpers._crc32({}), 0U);
    EXPECT_EQ(helpers._crc32(u"a"_s), 0xE8B7BE43U);
    EXPECT_EQ(helpers._crc32(u"123456789"_s), 0xCBF43926U);
    // F3 B3 of F3 B3 80 80: as many bytes as units. The first index is 12; standard is 2C2042B7.
    EXPECT_EQ(helpers._crc32(u"\U000F3000"_s), 0xB720EBAFU);
    EXPECT_EQ(AnonymousIdentifier::checksumDigits(0x0000000A), u"0A"_s);
    EXPECT_EQ(AnonymousIdentifier::checksumDigits(0x00ABCDEF), u"ABCDEF"_s);
    EXPECT_EQ(AnonymousIdentifier::checksumDigits(0xFEDCBA98), u"FEDCBA98"_s);
}

TEST(Identity, SerialNumberAndIdentifier)
{
    const std::tuple<std::optional<QByteArray>, QString, QString> cases[] = {
        {QByteArray("XYZ\0\0\0ABC", 9), u"ABCXYZ"_s,
         u"anon-672A3ABBDA6AC899601EBB5E721F2597191B5A99"_s},
        {QByteArray("XYZ\0\0\0ABC\0D", 11), u"ABCXYZ"_s, {}},
        {QByteArray("XYZ\0\0", 5), u"XYZ"_s, {}},
        {QByteArray("\0ABC", 4), u"ABC"_s, {}},
        {QByteArray("\xFF!"), u"\uFFFD!"_s, {}},
        {QByteArray(70, 'a') + QByteArray(1, '\0') + QByteArray(64, 'b'),
         QString(63, u'b') + QString(63, u'a'),
         {}},
        {QByteArray(), u""_s, u"anon-FB7E9A59804F84A4FBCC15C32B7B1CA21C4025E8"_s},
        {std::nullopt, u"null"_s, u"anon-88AA09104C8BA54B6166622CC83F5A48ED91B43F"_s},
    };
    TestServices test;
    sharedHelpers helpers;
    for (const auto &[property, serial, identifier] : cases) {
        test.serialNumber = [&given = property] { return given; };
        EXPECT_EQ(helpers.serialNumber(), serial);
        EXPECT_FALSE(helpers.serialNumber().isNull());
        if (!identifier.isNull()) {
            EXPECT_EQ(helpers.anonymousUUID(), identifier);
        }
    }
    test.recorder.take();
    test.serialNumber = []() -> std::optional<QByteArray> { throw std::runtime_error("bus"); };
    EXPECT_EQ(helpers.anonymousUUID(), u"anon-869201161204B35E13EBEE36367A1BB48890FAD8"_s);
    EXPECT_EQ(test.recorder.take(), QStringList{u"syslog error"_s});
}

TEST(Identity, SerialNumberOfTheMachineIsWhatEveryUserMayRead)
{
    QTemporaryDir folder;
    const QString root = folder.path() + u'/';
    const auto write = [&](const QString &path, const QByteArray &content, bool forAll = true) {
        makeFile(root + path, content);
        ::chmod(QFile::encodeName(root + path).constData(), forAll ? 0604 : 0600);
    };
    const RealDeviceTree tree(root);
    const QByteArray id("0123456789abcdef0123456789abcdef");
    EXPECT_EQ(tree.serialNumber(), std::nullopt);
    write(u"etc/machine-id"_s, "uninitialized\n");
    EXPECT_EQ(tree.serialNumber(), std::nullopt);
    write(u"var/lib/dbus/machine-id"_s, id + '\n');
    EXPECT_EQ(tree.serialNumber(), id);
    write(u"proc/device-tree/serial-number"_s, "secret", false);
    EXPECT_EQ(tree.serialNumber(), id);
    write(u"sys/firmware/devicetree/base/serial-number"_s, QByteArray("XYZ\0", 4));
    EXPECT_EQ(tree.serialNumber(), QByteArray("XYZ\0", 4));
}
