#include "helpers/Json.h"

#include "helpers/sharedHelpers.h"
#include "platform/foundation/Dictionary.h"
#include "platform/foundation/StringArray.h"

#include <QThread>

TEST(Json, DecodedAndEncodedAgain)
{
    const QString texts[] = {
        u"[]"_s,
        u"{}"_s,
        uR"({"":[{}],"a":{"b":[true,false,null]}})"_s,
        u"[9223372036854775807,-9223372036854775808,9223372036854775808,18446744073709551615]"_s,
        uR"([0,-1,1.5,-0.001,1e-07,1e+300,-0.0,5e-324])"_s,
        u"[\"\ufeffa\"]"_s,
        uR"(["\"\\/é\u0000\n\t\u001f😀","18446744073709551615"])"_s,
    };
    for (const QString &text : texts)
        EXPECT_EQ(sharedHelpers().jsonEncode(sharedHelpers().jsonDecode(text)), text);

    const QVariantList list =
        Json::decoded(u" [true, null, 1, 2.5, 18446744073709551615, 18446744073709551616, \"\","
                      " -9223372036854775809]"_s)
            .toList();
    const int types[] = {QMetaType::Bool,    QMetaType::Nullptr,   QMetaType::LongLong,
                         QMetaType::Double,  QMetaType::ULongLong, QMetaType::Double,
                         QMetaType::QString, QMetaType::Double};
    ASSERT_EQ(list.size(), qsizetype(std::size(types)));
    for (qsizetype index = 0; index < list.size(); ++index)
        EXPECT_EQ(list[index].typeId(), types[index]) << index;
    EXPECT_EQ(Json::decoded(u"[1e-400]"_s), QVariant(QVariantList{0.0}));
}

TEST(Json, RefusesWhatIsNoJson)
{
    QStringList texts =
        uR"(| |1|"a"|null|[1,]|{"a"}|{1:2}|[1] x|[01]|[1.]|[.5]|[+1]|[-]|[1e]|[1e999]|[NaN]|[tru])"
        uR"(|['a']|["a]|["\x"]|["\u12g4"]|["\|["\ud800"]|["\ud800\u0041"]|["\udc00"])"
        uR"(|[18446744073709551615|[18446744073709551615 1]|{18446744073709551615:1})"_s.split(
            u'|');
    texts << QString() << u"[1]\0"_s << u"[\"\n\"]"_s << u"[\""_s + QChar(0xD800) + u"\"]"_s;
    for (const QString &text : texts)
        EXPECT_FALSE(Json::decoded(text).isValid()) << text.toStdString();
    for (const QString &text : {uR"(["\ud83d\uDE00"])"_s, u"\ufeff[1]"_s})
        EXPECT_TRUE(Json::decoded(text).isValid()) << text.toStdString();
}

TEST(Json, EncodesValuesOfTheSystem)
{
    Dictionary dictionary = Dictionary::make();
    StringArray strings;
    strings.strings() << u"b"_s << u"a"_s;
    dictionary.setValue(u"list"_s, QVariant::fromValue(strings));
    dictionary.setValue(u"absent"_s, QVariant::fromValue(Dictionary()));
    const std::pair<QVariant, QString> cases[] = {
        {QVariant::fromValue(dictionary), uR"({"absent":null,"list":["b","a"]})"_s},
        {QVariantHash{{u"b"_s, 1U}, {u"a"_s, ~0ULL}}, uR"({"a":18446744073709551615,"b":1})"_s},
        {QStringList{u"a/b"_s, QString()}, uR"(["a/b",""])"_s},
        {QVariantList{QVariant(), true, -1, 0.1}, u"[null,true,-1,0.1]"_s},
        {QVariantList{QByteArray("a")}, {}},
        {QVariantList{QDateTime::currentDateTime()}, {}},
        {QVariantMap{{u"a"_s, std::nan("")}}, {}},
        {QVariantMap{{u"a"_s, std::numeric_limits<double>::infinity()}}, {}},
        {QVariantList{QString(QChar(0xD800))}, {}},
        {QVariantMap{{QString(QChar(0xDC00)), 1}}, {}},
        {QVariant::fromValue(QMap<int, QString>{{1, u"a"_s}}), {}},
        {QVariant::fromValue(Dictionary()), {}},
        {u"text"_s, {}},
        {QVariant(), {}},
    };
    for (const auto &[value, text] : cases)
        EXPECT_EQ(Json::encoded(value), text) << value.typeName();
    dictionary.setValue(u"self"_s, QVariant::fromValue(dictionary));
    EXPECT_TRUE(Json::encoded(QVariant::fromValue(dictionary)).isNull());
    dictionary.setValue(u"self"_s, {});
}

TEST(Json, DepthIsLimitedAlsoOnSmallStacks)
{
    const auto nested = [](int depth) {
        return u"[{\"\":"_s.repeated(depth / 2) + u"[]"_s + u"}]"_s.repeated(depth / 2);
    };
    QString encoded;
    bool deepRefused = false;
    const auto thread = std::unique_ptr<QThread>(QThread::create([&] {
        encoded = Json::encoded(Json::decoded(nested(510)));
        deepRefused = !Json::decoded(nested(512)).isValid()
            && !Json::decoded(nested(10'000)).isValid()
            && !Json::decoded(u"["_s.repeated(1'000'000)).isValid();
    }));
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    thread->setStackSize(1024 * 1024); // their frames are larger
#else
    thread->setStackSize(256 * 1024);
#endif
    thread->start();
    thread->wait();
    EXPECT_EQ(encoded, nested(510));
    EXPECT_TRUE(deepRefused);
    QVariant deep = QVariantList();
    for (int level = 0; level < 600; ++level)
        deep = QVariantList{deep};
    EXPECT_TRUE(Json::encoded(deep).isNull());
}
