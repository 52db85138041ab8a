#include "platform/foundation/Perform.h"

struct Receiver : QObject
{
    Q_OBJECT
public:
    QStringList calls;

public Q_SLOTS:
    void onViewShow() { calls << u"onViewShow"_s; }
    void tbPressed(const QString &title) { calls << u"tbPressed "_s + title; }
    void setDelay(int seconds) { calls << u"setDelay %1"_s.arg(seconds); }
    void takesAny(const QVariant &value) { calls << u"any "_s + value.toString(); }
    bool sourceListItemHasIcon(QObject *list, QObject *item)
    {
        calls << (list == this && !item ? u"hasIcon"_s : u"wrong"_s);
        return true;
    }
    void _loaded2() { calls << u"loaded2"_s; }
    void fails() { throw std::runtime_error("from the slot"); }

Q_SIGNALS:
    void aSignal();
};

TEST(Perform, FindsMethodsByWrittenName)
{
    Receiver receiver;
    const QVariant self = QVariant::fromValue<QObject *>(&receiver);
    const QVariant nobody = QVariant::fromValue<QObject *>(nullptr);
    const std::tuple<const char *, QVariantList, const char *> cases[] = {
        {"onViewShow", {}, "onViewShow"},
        {"tbPressed:", {u"OK"_s}, "tbPressed OK"},
        {"setDelay:", {u"7"_s}, "setDelay 7"},
        {"takesAny:", {1.5}, "any 1.5"},
        {"sourceList:itemHasIcon:", {self, nobody}, "hasIcon"},
        {"__loaded2", {}, "loaded2"},
    };
    for (const auto &[name, arguments, call] : cases) {
        SCOPED_TRACE(name);
        receiver.calls.clear();
        const Selector selector(QString::fromLatin1(name));
        EXPECT_TRUE(perform::responds(&receiver, selector));
        EXPECT_TRUE(perform::send(&receiver, selector, arguments));
        EXPECT_EQ(receiver.calls, QStringList{QString::fromLatin1(call)});
    }
}

TEST(Perform, RefusesWhatTheReceiverDoesNotAnswerAndDropsExceptionsOnlyWhenAskedTo)
{
    Receiver receiver;
    for (const char *name : {"", ":", "onViewShow:", "tbPressed", "unknown", "aSignal",
                             "sourceList:", "a:b:c:d:e:f:g:h:i:j:k:l:"}) {
        SCOPED_TRACE(name);
        const Selector selector(QString::fromLatin1(name));
        EXPECT_FALSE(perform::responds(&receiver, selector));
        EXPECT_FALSE(perform::send(&receiver, selector, {1, 2}));
    }
    EXPECT_FALSE(perform::responds(nullptr, Selector(u"onViewShow"_s)));
    EXPECT_FALSE(
        perform::send(&receiver, Selector(u"setDelay:"_s), {QVariant::fromValue(QStringList())}));
    EXPECT_TRUE(receiver.calls.isEmpty());
    const Selector fails(u"fails"_s);
    EXPECT_THROW(perform::send(&receiver, fails), std::runtime_error);
    EXPECT_TRUE(perform::sendQuietly(&receiver, fails));
}

#include "PerformTest.moc"
