#include "platform/foundation/NotificationCenter.h"

class Observer : public QObject
{
    Q_OBJECT

public:
    explicit Observer(QStringList *log, const QString &id = u"a"_s)
        : m_log(log)
        , m_id(id)
    { }
    std::function<void()> onNotification;

public Q_SLOTS:
    void heard(const Notification &notification)
    {
        *m_log << m_id + u" "_s + notification.name + u" "_s
                + notification.userInfo.string(u"text"_s);
        if (onNotification)
            onNotification();
    }
    void heardNothing() { *m_log << m_id + u" bare"_s; }

private:
    QStringList *m_log;
    QString m_id;
};

namespace {
const Selector heard(u"heard:"_s);
}

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
        Observer observer(&log);
        Observer bystander(&log, u"b"_s);
        NotificationCenter center;
        for (QObject *from : {&poster, &other}) {
            for (const QString &name : {u"N"_s, u"M"_s})
                center.addObserver(&observer, heard, name, from);
        }
        center.addObserver(&bystander, Selector(u"heardNothing"_s), u"N"_s, &poster);
        center.removeObserver(&observer, name, object);
        for (QObject *from : {&poster, &other}) {
            for (const QString &name : {u"N"_s, u"M"_s})
                center.post(name, from);
        }
        EXPECT_EQ(log.removeAll(u"b bare"_s), 1);
        EXPECT_EQ(log.size(), left);
    }
}

TEST(NotificationCenter, SurvivesWhatObserversDoMeanwhile)
{
    QStringList log;
    NotificationCenter center;
    Observer late(&log, u"late"_s);
    Observer removed(&log, u"removed"_s);
    auto *suicidal = new Observer(&log, u"suicidal"_s);
    auto deleted = std::make_unique<Observer>(&log, u"deleted"_s);
    Observer thrower(&log, u"thrower"_s);
    suicidal->onNotification = [&] {
        center.addObserver(&late, heard, {}, nullptr);
        center.removeObserver(&removed);
        deleted.reset();
        delete suicidal;
    };
    thrower.onNotification = [] { throw std::runtime_error("observer's fault"); };
    Observer last(&log, u"last"_s);
    for (QObject *each : {static_cast<QObject *>(suicidal), static_cast<QObject *>(&removed),
                          static_cast<QObject *>(deleted.get()), static_cast<QObject *>(&thrower),
                          static_cast<QObject *>(&last)}) {
        center.addObserver(each, heard, u"N"_s, nullptr);
    }
    center.post(u"N"_s, nullptr);
    EXPECT_EQ(log, (QStringList{u"suicidal N "_s, u"thrower N "_s, u"last N "_s}));
    log.clear();
    center.post(u"N"_s, nullptr);
    EXPECT_EQ(log, (QStringList{u"thrower N "_s, u"last N "_s, u"late N "_s}));
}

TEST(NotificationCenter, ForgetsGonePosters)
{
    QStringList log;
    Observer observer(&log);
    NotificationCenter center;
    auto poster = std::make_unique<QObject>();
    center.addObserver(&observer, heard, u"N"_s, poster.get());
    poster.reset();
    // A registration for a gone poster must not turn into one for every poster.
    center.post(u"N"_s, nullptr);
    EXPECT_TRUE(log.isEmpty());
}

#include "NotificationCenterTest.moc"
