#include "platform/foundation/NotificationCenter.h"

namespace {

const Selector heard(u"heard:"_s);

struct Observer : QObject
{
    Q_OBJECT
public:
    explicit Observer(QStringList *log, const QString &id = u"a"_s)
        : m_log(log)
        , m_id(id)
    { }
    Q_INVOKABLE void heard(const Notification &n)
    {
        *m_log << u"%1 %2 %3"_s.arg(m_id, n.name, n.userInfo.string(u"text"_s));
        if (onNotification)
            onNotification();
    }
    Q_INVOKABLE void heardNothing() { *m_log << m_id + u" bare"_s; }

    std::function<void()> onNotification;
    QStringList *m_log;
    QString m_id;
};

} // namespace

TEST(NotificationCenter, ServesByNameAndPoster)
{
    QObject poster;
    QObject stranger;
    const std::tuple<const char *, QString, QObject *, QStringList> cases[] = {
        {"both", u"N"_s, &poster, {u"a N hello"_s}},
        {"any name", {}, &poster, {u"a N hello"_s, u"a M "_s}},
        {"any poster", u"N"_s, nullptr, {u"a N hello"_s, u"a N "_s, u"a N "_s}},
        {"other poster", u"N"_s, &stranger, {u"a N "_s}},
        {"other name", u"X"_s, &poster, {}},
    };
    for (const auto &[title, name, object, calls] : cases) {
        SCOPED_TRACE(title);
        QStringList log;
        Observer observer(&log);
        NotificationCenter center;
        center.addObserver(&observer, heard, name, object);
        Dictionary userInfo = Dictionary::make();
        userInfo.setValue(u"text"_s, u"hello"_s);
        center.post(u"N"_s, &poster, userInfo);
        center.post(u"M"_s, &poster);
        center.post(u"N"_s, &stranger);
        center.post(u"N"_s, nullptr);
        // What was posted without a poster reaches only those who asked for every poster.
        EXPECT_EQ(log, calls);
    }
    QStringList log;
    Observer observer(&log);
    NotificationCenter center;
    center.addObserver(&observer, heard, u"N"_s, std::make_unique<QObject>().get());
    // A registration for a gone poster must not turn into one for every poster.
    center.post(u"N"_s, nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST(NotificationCenter, RemovesWhatIsAskedFor)
{
    QObject poster;
    QObject other;
    const std::tuple<QString, QObject *, qsizetype> cases[] = {{{}, nullptr, 0},
                                                               {{}, &poster, 2},
                                                               {u"N"_s, nullptr, 2},
                                                               {u"N"_s, &poster, 3},
                                                               {u"X"_s, nullptr, 4}};
    for (const auto &[name, object, left] : cases) {
        QStringList log;
        Observer observer(&log), bystander(&log, u"b"_s);
        NotificationCenter center;
        const std::pair<QString, QObject *> posts[] = {
            {u"N"_s, &poster}, {u"M"_s, &poster}, {u"N"_s, &other}, {u"M"_s, &other}};
        for (const auto &[name, from] : posts)
            center.addObserver(&observer, heard, name, from);
        center.addObserver(&bystander, Selector(u"heardNothing"_s), u"N"_s, &poster);
        center.removeObserver(&observer, name, object);
        for (const auto &[name, from] : posts)
            center.post(name, from);
        EXPECT_EQ(log.removeAll(u"b bare"_s), 1);
        EXPECT_EQ(log.size(), left);
    }
}

TEST(NotificationCenter, SurvivesWhatObserversDoMeanwhile)
{
    QStringList log;
    NotificationCenter center;
    Observer late(&log, u"late"_s), removed(&log, u"removed"_s), thrower(&log, u"thrower"_s),
        last(&log, u"last"_s);
    auto *suicidal = new Observer(&log, u"suicidal"_s);
    auto deleted = std::make_unique<Observer>(&log, u"deleted"_s);
    suicidal->onNotification = [&] {
        center.addObserver(&late, heard, {}, nullptr);
        center.removeObserver(&removed);
        deleted.reset();
        delete suicidal;
    };
    thrower.onNotification = [] { throw std::runtime_error("observer's fault"); };
    for (Observer *each : {suicidal, &removed, deleted.get(), &thrower, &last})
        center.addObserver(each, heard, u"N"_s, nullptr);
    center.post(u"N"_s, nullptr);
    EXPECT_EQ(std::exchange(log, {}).join(u'|'), u"suicidal N |thrower N |last N "_s);
    center.post(u"N"_s, nullptr);
    EXPECT_EQ(log.join(u'|'), u"thrower N |last N |late N "_s);
}

#include "NotificationCenterTest.moc"
