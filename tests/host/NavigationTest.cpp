#include "host/HostFixture.h"
#include "platform/ui/ProgressIndicator.h"
#include "support/OutlineRows.h"

#include <QAbstractEventDispatcher>

/// Headings and rows below them, in load order: rows 0 Cleaning, 1 FirstOne, 2 Good, 3 to 5 the
/// empty headings up to System, 6 the status plugin, 7 Online.
struct Navigation : Host
{
    void SetUp() override
    {
        start({"FirstOne", "Good", "Hidden", "StatusFixture"});
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        ASSERT_EQ(list()->numberOfRows(), 8);
    }

    void click(int row) { ::click(*list(), row); }

    SourceListItem *row(int index) const
    {
        return qobject_cast<SourceListItem *>(list()->itemAtRow(index));
    }

    /// Of every object in the window.
    qsizetype runningTimers() const
    {
        QCoreApplication::processEvents();
        qsizetype count = 0;
        for (QObject *object : window->findChildren<QObject *>())
            count += QAbstractEventDispatcher::instance()->registeredTimers(object).size();
        return count;
    }

    QList<ProgressIndicator *> spinners() const
    {
        return list()->viewport()->findChildren<ProgressIndicator *>();
    }
};

const QString good = u"plugin.fixture.Good"_s;
const QString hidden = u"plugin.fixture.Hidden"_s;
const QString status = u"plugin.status"_s;

TEST_F(Navigation, ShowsThePluginOfTheClickedRow)
{
    EXPECT_EQ(shownView(), status);
    auto *view =
        mndPlugins::info(delegate->plugins()->pluginWithID(good)).value<QWidget *>(u"view"_s);
    view->setGeometry(3, 4, 50, 60);
    const std::function<void()> seesNoView = [&] {
        EXPECT_EQ(shownView(), QString()) << qPrintable(services.recorder.events.last());
        services.recorder.onNext = seesNoView;
    };
    services.recorder.onNext = seesNoView;
    click(2);
    services.recorder.onNext = {};
    EXPECT_EQ(shownView(), good);
    EXPECT_EQ(view->geometry(), QRect(3, 4, 50, 60));
    EXPECT_EQ(services.recorder.take().join(u'|').remove(u"plugin."_s).remove(u"fixture."_s),
              u"FirstOne onViewHide|Good onViewHide|Hidden onViewHide|status onViewHide|"
              "Good onViewShow"_s);
    click(0);
    EXPECT_EQ(shownView(), good) << "a heading is no plugin";
    EXPECT_EQ(list()->selectedRowIndexes(), RowIndexes{2});
    QTest::mouseDClick(list()->viewport(), Qt::LeftButton, {}, middleOfRow(*list(), 2));
    EXPECT_EQ(list()->editedRow(), -1) << "titles are never edited";
}

TEST_F(Navigation, ShowsPluginsByIdAndGivesTheViewsBackAtTheEnd)
{
    EXPECT_TRUE(delegate->showPlugin(good));
    EXPECT_EQ(list()->selectedRowIndexes(), RowIndexes{2});
    EXPECT_EQ(shownView(), good);
    EXPECT_FALSE(delegate->showPlugin(u"plugin.nobody"_s));
    EXPECT_EQ(shownView(), good);
    // After the start there are no rows for new ones.
    services.addFixture(u"OddHeading"_s, services.root.path());
    delegate->plugins()->loadPluginFromPath(services.root.filePath(u"OddHeading.bundle"_s));
    services.recorder.take();
    EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.OddHeading"_s));
    EXPECT_EQ(list()->selectedRowIndexes(), RowIndexes{2});
    EXPECT_EQ(shownView(), good);
    EXPECT_TRUE(services.recorder.take().isEmpty());
    EXPECT_TRUE(delegate->showPlugin(hidden));
    EXPECT_EQ(shownView(), hidden);
    EXPECT_TRUE(list()->selectedRowIndexes().empty());
    EXPECT_TRUE(delegate->showPlugin(good));
    EXPECT_EQ(shownView(), good);
    delegate.reset();
    const auto *area = window->findChild<QWidget *>(u"pluginViewHost"_s);
    EXPECT_TRUE(area->findChildren<QWidget *>().isEmpty());
}

TEST_F(Navigation, ShowsAPluginAgainWithAllItsMessages)
{
    services.recorder.take();
    delegate->plugins()->doDisplayMainViewForPluginById(status, content());
    EXPECT_EQ(shownView(), status);
    EXPECT_EQ(services.recorder.take().mid(3),
              (QStringList{status + u" onViewHide"_s, status + u" onViewShow"_s}));
    delegate->plugins()->doDisplayMainViewForPluginById(u"plugin.nobody"_s, content());
    delegate->plugins()->doDisplayMainViewForPluginAtIndex(99, content());
    EXPECT_TRUE(services.recorder.take().isEmpty());
    EXPECT_EQ(shownView(), status);
}

TEST_F(Host, ShowsOnlyTheLastOneWhenAPluginShowsAnother)
{
    start({"Good", "Redirects", "RedirectsFromHiding", "StatusFixture"});
    for (const QString &id :
         {u"plugin.fixture.Redirects"_s, u"plugin.fixture.RedirectsFromHiding"_s}) {
        EXPECT_TRUE(delegate->showPlugin(good));
        EXPECT_TRUE(delegate->showPlugin(id));
        EXPECT_EQ(shownView(), status) << qPrintable(id);
        EXPECT_EQ(content()->findChildren<QWidget *>().size(), 1);
        EXPECT_EQ(list()->numberOfSelectedRows(), 1) << qPrintable(id);
    }
}

TEST_F(Host, ComesToAnEndWhenAPluginShowsAHiddenOneWheneverItIsHidden)
{
    start({"Hidden", "RedirectsOnHide", "StatusFixture"});
    EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.RedirectsOnHide"_s));
    EXPECT_EQ(shownView(), hidden);
    EXPECT_EQ(content()->findChildren<QWidget *>().size(), 1);
}

TEST_F(Host, DoesWithoutViewsAndPluginsThatAreDeleted)
{
    start({"Good", "StatusFixture"});
    delegate->signalAllPlugins(Selector(u"replaceView"_s));
    EXPECT_TRUE(shownView().isEmpty());
    EXPECT_TRUE(delegate->showPlugin(good));
    EXPECT_EQ(shownView(), good) << "what took the place of the view that has gone";
    EXPECT_TRUE(delegate->showPlugin(status));
    delegate->signalAllPlugins(Selector(u"dropView"_s));
    EXPECT_TRUE(shownView().isEmpty());
    services.recorder.take();
    EXPECT_TRUE(delegate->showPlugin(good));
    EXPECT_TRUE(shownView().isEmpty());
    EXPECT_TRUE(services.recorder.take().isEmpty()) << "without a view nothing is hidden or shown";
    delegate->signalAllPlugins(Selector(u"goAway"_s));
    services.recorder.take();
    delegate->signalAllPlugins(Selector(u"ping"_s));
    EXPECT_TRUE(services.recorder.take().isEmpty());
}

TEST_F(Host, ShowsAPluginThatIsNoDelegateWithoutAWord)
{
    start({"NotADelegate", "StatusFixture"});
    EXPECT_TRUE(delegate->showPlugin(u"plugin.fixture.NotADelegate"_s));
    EXPECT_EQ(services.recorder.take(), QStringList{status + u" onViewHide"_s});
}

TEST_F(Navigation, FindsTheRowOfAPluginByItsTitlesAlone)
{
    const QString first = u"plugin.fixture.FirstOne"_s;
    Dictionary info = mndPlugins::info(delegate->plugins()->pluginWithID(first));
    for (const auto &[name, found] : {std::pair{u"Good"_s, 2}, {u"Nobody"_s, -1}}) {
        info.setValue(u"name"_s, name);
        delegate->pluginSetBadge(first, 5);
        EXPECT_TRUE(delegate->showPlugin(first));
        EXPECT_EQ(row(2)->badgeValue, found == 2 ? 5 : -1);
        EXPECT_EQ(list()->selectedRow(), found == 2 ? 2 : 6);
        EXPECT_EQ(row(1)->badgeValue, -1);
        row(2)->badgeValue = -1;
        list()->selectRowIndexes({6}, false);
    }
}

TEST_F(Navigation, ShowsNewBadgesAndIconsAtOnce)
{
    struct Paintings : QObject
    {
        int count = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            return count += event->type() == QEvent::Paint, false;
        }
    } paintings;
    list()->viewport()->installEventFilter(&paintings);
    const std::pair<const char *, std::function<void()>> changes[] = {
        {"a badge", [&] { delegate->pluginSetBadge(good, 1); }},
        {"an icon", [&] { delegate->pluginSetIcon(good, filled(16, 16, Qt::red)); }},
        {"a badge from a thread", [&] { onThread([&] { delegate->pluginSetBadge(good, 2); }); }},
    };
    for (const auto &[what, change] : changes) {
        QCoreApplication::processEvents();
        paintings.count = 0;
        change();
        EXPECT_SOON(paintings.count > 0) << what;
    }
}

TEST_F(Navigation, TakesTheNumberThatAnIdentifierBeginsWith)
{
    row(2)->identifier = u"item.2"_s;
    click(2);
    EXPECT_EQ(shownView(), u"plugin.fixture.FirstOne"_s) << "no number displays plugin 0";
    row(6)->identifier = u"1abc"_s;
    click(6);
    EXPECT_EQ(shownView(), good);
}

TEST_F(Navigation, SetsBadgesAndIconsOnRows)
{
    for (const qint64 value : {7LL, 0LL, -2LL, -1LL}) {
        delegate->pluginSetBadge(good, static_cast<quint64>(value));
        EXPECT_EQ(row(2)->badgeValue, value);
        EXPECT_EQ(row(2)->hasBadge(), value != -1);
    }
    // The longest number leaves the title its room, for as long as it is there.
    const int usual = list()->width();
    for (const quint64 value : {quint64(1) << 63, ~quint64(0)}) {
        delegate->pluginSetBadge(good, value);
        QCoreApplication::processEvents();
        EXPECT_EQ(
            list()->preparedCellAtRow(2).elidedText(list()->frameOfCellAtColumn(0, 2).width()),
            u"Good"_s);
        EXPECT_EQ(list()->width() == usual, value == ~quint64(0));
    }
    const QImage icon = filled(16, 16, Qt::red);
    delegate->pluginSetIcon(good, icon);
    EXPECT_EQ(row(2)->icon, icon);
    delegate->pluginSetIcon(good, {});
    EXPECT_EQ(row(2)->icon, icon) << "no image changes nothing";
    delegate->pluginSetIconHighlighted(good, icon);
    EXPECT_TRUE(row(2)->iconSelected.isNull()) << "only the info dictionary takes it";
    EXPECT_EQ(
        mndPlugins::info(delegate->plugins()->pluginWithID(good)).value<QImage>(u"icon-selected"_s),
        icon);
    delegate->pluginSetBadge(u"plugin.nobody"_s, 1);
    delegate->pluginSetIconHighlighted(u"plugin.nobody"_s, icon);
}

TEST_F(Navigation, SpinsOneSpinnerForARowAndFrame)
{
    delegate->pluginSetProcessing(good, true);
    ASSERT_EQ(spinners().size(), 1);
    const QRectF cell = list()->frameOfCellAtColumn(0, 2);
    EXPECT_EQ(spinners()[0]->geometry(),
              QRectF(cell.right() - 20, cell.y(), cell.height(), cell.height()).toRect());
    EXPECT_TRUE(spinners()[0]->isVisible());
    delegate->pluginSetProcessing(good, false);
    EXPECT_FALSE(spinners()[0]->isVisible());
    delegate->pluginSetProcessing(good, true);
    EXPECT_EQ(spinners().size(), 1) << "found again by its frame";
    delegate->pluginSetProcessing(hidden, true);
    EXPECT_EQ(spinners().size(), 1) << "a plugin without a row has none";

    for (const quint64 number : {quint64(1) << 63, ~quint64(0)}) {
        delegate->pluginSetBadge(status, number);
        QCoreApplication::processEvents();
        delegate->pluginSetProcessing(good, number != ~quint64(0));
        ASSERT_EQ(spinners().size(), 1) << "another one's number moved its place";
    }
    delegate->pluginSetProcessing(good, true);

    const int before = list()->viewport()->width();
    list()->parentWidget()->setFixedWidth(300);
    ASSERT_SOON(list()->viewport()->width() != before);
    QCoreApplication::processEvents();
    delegate->pluginSetProcessing(good, false);
    ASSERT_EQ(spinners().size(), 2) << "a new one for the new frame";
    EXPECT_TRUE(spinners()[0]->isVisible()) << "the old one keeps its last state";
    EXPECT_FALSE(spinners()[1]->isVisible());

    delegate->setAllPluginsProcessing(true);
    EXPECT_EQ(spinners().size(), 4) << "one for each row";
}

TEST_F(Navigation, SpinsForTheRecordThatHasHeadingAndName)
{
    Dictionary first = mndPlugins::info(delegate->plugins()->pluginAtIndex(0));
    first.setValue(u"id"_s, good);
    for (const QString &key : {u"parent"_s, u"name"_s}) {
        const QString had = first.string(key);
        first.setValue(key, {});
        delegate->pluginSetProcessing(good, true);
        ASSERT_EQ(spinners().size(), 1) << qPrintable(key);
        EXPECT_TRUE(spinners()[0]->isVisible()) << qPrintable(key);
        delegate->pluginSetProcessing(good, false);
        first.setValue(key, had);
    }
}

TEST_F(Navigation, RunsATimerOnlyWhileASpinnerIsSeenTurning)
{
    EXPECT_EQ(runningTimers(), 0);
    delegate->pluginSetProcessing(good, true);
    EXPECT_EQ(runningTimers(), 1);
    window->hide();
    EXPECT_EQ(runningTimers(), 0);
    window->show();
    EXPECT_EQ(runningTimers(), 1);
    delegate->pluginSetProcessing(good, false);
    EXPECT_EQ(runningTimers(), 0);
}
