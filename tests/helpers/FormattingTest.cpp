#include "helpers/sharedHelpers.h"
#include "helpers/TimeZoneScope.h"
#include "platform/ui/ApplicationDelegate.h"
#include "plugins/FakeCore.h"
#include "support/TestServices.h"

TEST(Formatting, NumbersAsTheLocaleWritesThem)
{
    const std::tuple<QString, QVariant, QString> cases[] = {
        {u"en_US"_s, std::numeric_limits<qint64>::min(), u"-9,223,372,036,854,775,808"_s},
        {u"en_US"_s, std::numeric_limits<quint64>::max(), u"18,446,744,073,709,551,615"_s},
        {u"en_US"_s, 1234.5, u"1,234.5"_s},
        {u"en_US"_s, 2.0005, u"2"_s},
        {u"en_US"_s, 2.0015, u"2.002"_s},
        {u"en_US"_s, true, u"1"_s},
        {u"en_US"_s, u"18446744073709551615"_s, u"18,446,744,073,709,551,615"_s},
        {u"en_US"_s, u"1234.25"_s, u"1,234.25"_s},
        {u"en_US"_s, u"many"_s, {}},
        {u"en_US"_s, u""_s, {}},
        {u"en_US"_s, QVariant(), {}},
        {u"en_US"_s, QStringList{u"1"_s}, {}},
        {u"en_IN"_s, 1234567, u"12,34,567"_s},
        {u"de_DE"_s, -1234567.125F, u"-1.234.567,125"_s},
        {u"de_CH"_s, 1234567, u"1’234’567"_s},
        {u"es_ES"_s, 1234, u"1234"_s},
        {u"ar_EG"_s, 1234567.5, u"١٬٢٣٤٬٥٦٧٫٥"_s},
        {u"C"_s, 1234567, u"1,234,567"_s},
    };
    TestServices test;
    for (const auto &[locale, number, text] : cases) {
        test.locale = QLocale(locale);
        EXPECT_EQ(sharedHelpers().stringForNumber(number), text) << locale.toStdString();
    }
}

TEST(Formatting, SizesChangeTheUnitAt1023InSinglePrecision)
{
    const std::tuple<quint64, QString> cases[] = {
        {0, u"0 bytes"_s},
        {1022, u"1022 bytes"_s},
        {1023, u"1.0 KB"_s},
        {1024, u"1.0 KB"_s},
        {1536, u"1.5 KB"_s},
        {1047551, u"1023.0 KB"_s},
        {1047552, u"1.0 MB"_s},
        {1072693247, u"1.0 GB"_s}, // 1023 MB less a byte, which single precision cannot tell
        {5ULL << 40, u"5120.0 GB"_s},
        {~0ULL, u"17179869184.0 GB"_s},
    };
    for (const auto &[size, text] : cases)
        EXPECT_EQ(sharedHelpers().stringForFileSize(size), text) << size;
}

TEST(Formatting, DaysAndMinutesAgo)
{
    TestServices test;
    const double now = double(test.now.toSecsSinceEpoch()) - Date::referenceSinceEpoch;
    const int most = std::numeric_limits<int>::max();
    const std::tuple<Date, int, int> cases[] = {
        {Date(now - 59), 0, 0},
        {Date(now - 119), 0, 1},
        {Date(now - 86399), 0, 1439},
        {Date(now - 86400), 1, 1440},
        {Date(now + 3600), 0, 0},
        {Date(), int(now / 86400), int(now / 60)},
        {Date(-1e300), most / 86400, most / 60},
        {Date(1.8e19), 0, 0},
        {Date(std::nan("")), 0, 0},
    };
    for (const auto &[date, days, minutes] : cases) {
        EXPECT_EQ(sharedHelpers().daysAgo(date), days) << date.secondsSinceReference();
        EXPECT_EQ(sharedHelpers().minsAgo(date), minutes) << date.secondsSinceReference();
    }
}

TEST(Formatting, DaysAgoInWords)
{
    TimeZoneScope zone("Europe/Berlin");
    TestServices test;
    const std::tuple<QString, QString, QString> cases[] = {
        {u"2024-06-10T12:00"_s, {}, u"Never"_s},
        {u"2024-06-10T12:00"_s, u"2024-06-10T00:00"_s, u"Today"_s},
        {u"2024-06-10T12:00"_s, u"2024-06-10T23:00"_s, u"Today"_s},
        {u"2024-06-10T00:30"_s, u"2024-06-09T23:00"_s, u"Yesterday"_s},
        {u"2024-06-10T12:00"_s, u"2024-06-08T23:59"_s, u"1 day ago"_s},
        {u"2024-06-10T12:00"_s, u"2024-05-31T12:00"_s, u"10 days ago"_s},
        {u"2024-06-10T12:00"_s, u"2024-05-10T12:00"_s, u"31 days ago"_s},
        {u"2024-06-10T12:00"_s, u"2023-06-10T12:00"_s, u"366 days ago"_s},
        {u"2024-06-10T12:00"_s, u"2024-06-11T12:00"_s, u"0 days ago"_s},
        // Yesterday is 86400 seconds back: after a day of 23 hours that is the day before it.
        {u"2024-04-01T00:30"_s, u"2024-03-31T12:00"_s, u"0 days ago"_s},
    };
    for (const bool hosted : {false, true}) {
        FakeCore core;
        setApplicationDelegate(hosted ? &core : nullptr);
        for (const auto &[now, day, words] : cases) {
            test.now = QDateTime::fromString(now, Qt::ISODate);
            const QDateTime time = QDateTime::fromString(day, Qt::ISODate);
            const Date date(double(time.toSecsSinceEpoch()) - Date::referenceSinceEpoch);
            const QString text = sharedHelpers().stringForDaysAgo(day.isNull() ? Date() : date);
            EXPECT_EQ(text, hosted ? u'[' + words + u']' : words) << now.toStdString();
        }
        const QStringList keys{u"SZ_NEVER"_s, u"SZ_N_DAYS_AGO"_s, u"SZ_ONE_DAY_AGO"_s,
                               u"SZ_TODAY"_s, u"SZ_YESTERDAY"_s};
        EXPECT_EQ(core.texts.keys(), hosted ? keys : QStringList());
    }
    setApplicationDelegate(nullptr);
}
