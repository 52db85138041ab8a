#include "platform/foundation/Format.h"

TEST(Format, FillsByPositionAndReadsNothingThatIsNotThere)
{
    const std::tuple<QString, QVariantList, QString> cases[] = {
        {u"%@::%@:%d %@"_s, {u"A"_s, u"b:"_s, 7, u"%@"_s}, u"A::b::7 %@"_s},
        {u"%d %i %u"_s, {-1, 2147483648LL, -1}, u"-1 -2147483648 4294967295"_s},
        {u"%ld|%lu"_s,
         {-9000000000LL, 18446744073709551615ULL},
         u"-9000000000|18446744073709551615"_s},
        {u"%x %X %02x %02X"_s, {-1, 255, 10, 300}, u"ffffffff FF 0a 12C"_s},
        {u"%1.1f %1.1f %1.1f"_s, {0.25, 0.35, -12.96}, u"0.2 0.3 -13.0"_s},
        {u"%1.1f %1.1f"_s, {7, u"1.5"_s}, u"7.0 1.5"_s},
        {u"%1.1f %1.1f"_s, {1.25f, -HUGE_VAL}, u"1.2 -inf"_s},
        {u"%d %ld"_s, {2.9, 1e300}, u"2 0"_s},
        {u"%d %u %d"_s, {true, u"12"_s, u"twelve"_s}, u"1 12 twelve"_s},
        {u"100%% of %@%%"_s, {u"it"_s}, u"100% of it%"_s},
        {u"%@ and %@ %n"_s, {u"one"_s}, u"one and %@ %n"_s},
        {u"%s %5d %1.2f %lld %@ %"_s, {u"x"_s, u"y"_s}, u"%s %5d %1.2f %lld x %"_s},
        {u"none"_s, {1, 2}, u"none"_s},
        {u""_s, {1}, u""_s},
        {u"%d %@ %1.1f"_s, {QVariant(), QVariant(), QVariant()}, u"0 (null) 0.0"_s},
    };
    for (const auto &[pattern, arguments, expected] : cases)
        EXPECT_EQ(format(pattern, arguments), expected);
}

TEST(Format, DescribesValuesForAPerson)
{
    const QDateTime date(QDate(2020, 2, 3), QTime(4, 5, 6), Qt::OffsetFromUTC, 3600);
    const std::pair<QVariant, QString> cases[] = {
        {u"as it is"_s, u"as it is"_s},
        {QString(), u"(null)"_s},
        {u""_s, u""_s},
        {false, u"0"_s},
        {-5, u"-5"_s},
        {1000000.0, u"1000000"_s},
        {0.1, u"0.1"_s},
        {0.1f, u"0.1"_s},
        {date, u"2020-02-03 03:05:06 +0000"_s},
        {QByteArray("\x0f\xbd"), u"<0fbd>"_s},
        {QVariantList{1, QStringList{u"a"_s, u"b"_s}}, u"(1, (a, b))"_s},
        {QVariantMap{{u"k"_s, true}, {u"n"_s, QVariant()}}, u"{k = 1; n = (null); }"_s},
    };
    for (const auto &[value, expected] : cases)
        EXPECT_EQ(textualDescription(value), expected);
}
