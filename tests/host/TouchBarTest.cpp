#include "host/HostFixture.h"
#include "platform/ui/ProgressIndicator.h"
#include "platform/ui/SegmentedControl.h"
#include "platform/ui/TouchBarApplication.h"
#include "platform/ui/TouchBarStrip.h"
#include "plugin_host/HostTouchBar.h"
#include "tests/support/TestMain.h"

/// A host with a Touch Bar, and with three of the seven plugins that the icon row leads to.
struct WithTouchBar : Host
{
    void SetUp() override
    {
        for (const char *name : {"logo_main_tb.svg", "PLUGIN_STATUS_TB.svg"})
            services.addResource(QString::fromLatin1(name),
                                 "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'>"
                                 "<path d='M0 0h9v4H0z'/></svg>");
        start({"FirstOne", "Good", "Hidden", "StatusFixture"});
        become(u"plugin.fixture.FirstOne"_s, u"plugin.cleaners"_s);
        become(u"plugin.fixture.Good"_s, u"plugin.memboost"_s);
        become(u"plugin.fixture.Hidden"_s, u"plugin.tweaks"_s);
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        delegate->uiRevertToSystemTouchbar();
    }

    void become(const QString &id, const QString &other)
    {
        Dictionary info = mndPlugins::info(delegate->plugins()->pluginWithID(id));
        info.setValue(u"id"_s, other);
        QImage icon = filled(48, 48, Qt::red);
        icon.setDevicePixelRatio(3);
        info.setValue(u"icon"_s, icon);
    }

    TouchBarStrip *strip() const { return delegate->window()->touchBarStrip(); }
    QStringList items() const
    {
        return TouchBar::installed(window.get())->defaultItemIdentifiers();
    }
    SegmentedControl *control(int item) const
    {
        return qobject_cast<SegmentedControl *>(strip()->itemViews().value(item));
    }
    void tap(int item, int segment) const
    {
        QTest::mouseClick(control(item)->segment(segment), Qt::LeftButton);
    }
    void request(QObject *target, QWidget *sheet = nullptr)
    {
        delegate->uiMakeSLVSystemTouchbarWithButtons({u"One"_s, u"Two & Co"_s}, target,
                                                     Selector(u"note:"_s), sheet);
    }
    bool showsSystemBar() const { return items() == HostTouchBar::systemItems(); }
};

TEST_F(WithTouchBar, TapsLeadToPluginsByTheirPlaceInTheWholeList)
{
    EXPECT_EQ(items().join(u' '),
              u"com.solvane.system.touchbar.icon com.solvane.system.touchbar.segmented "_s
                  + TouchBar::otherItemsProxy());
    ASSERT_EQ(strip()->itemViews().size(), 2);
    ASSERT_EQ(control(1)->segmentCount(), 4);
    QStringList led; // the network plugin is missing, so that the third button leads to its place
    for (const int segment : {1, 0, 2, 3}) {
        tap(1, segment);
        led << control(1)->segment(segment)->accessibleName() + u':' + shownView();
    }
    EXPECT_EQ(led.join(u' '),
              u"FirstOne:plugin.fixture.FirstOne Status:plugin.status Good:plugin.status "
              "Hidden:plugin.fixture.Good"_s);
    delegate->tbPressed(nullptr);
    EXPECT_EQ(shownView(), u"plugin.fixture.Good"_s);
}

TEST_F(WithTouchBar, PluginButtonsReachTheirTargetALittleLater)
{
    auto target = std::make_unique<Recorder>();
    request(target.get());
    EXPECT_EQ(items().join(u' '),
              u"com.solvane.system.touchbar.icon com.solvane.plugin.touchbar.system "
              "com.solvane.plugin.touchbar.segmented "_s
                  + TouchBar::otherItemsProxy());
    EXPECT_EQ(control(1)->segmentCount(), 1);
    EXPECT_EQ(control(2)->segmentStyle(), SegmentedControl::Separated);
    tap(2, 1);
    EXPECT_EQ(services.recorder.take().filter(u"after"_s), QStringList{u"after 0.2"_s});
    delegate->uiRevertToSystemTouchbar(); // the tap counts all the same
    EXPECT_TRUE(target->events.isEmpty());
    services.runScheduled();
    EXPECT_EQ(target->events, QStringList{u"Two & Co"_s});

    delegate->uiMakeSLVTouchbarWithButtons({u"Three"_s}, nullptr, Selector(u"other:"_s), nullptr);
    EXPECT_TRUE(showsSystemBar());
    SegmentedControl kept({u"One"_s}, delegate.get(), Selector(u"tbPluginPressed:"_s));
    QTest::mouseClick(kept.segment(0), Qt::LeftButton);
    services.runScheduled();
    EXPECT_EQ(target->events.size(), 2) << "target, selector and titles outlast the bar";
    QTest::mouseClick(kept.segment(0), Qt::LeftButton);
    target.reset();
    services.runScheduled();
    services.recorder.take();
    QTest::mouseClick(kept.segment(0), Qt::LeftButton);
    EXPECT_TRUE(services.recorder.take().filter(u"after"_s).isEmpty())
        << "nobody is there to hear of it";
}

TEST_F(WithTouchBar, EveryNavigationAndSheetEndRevertsToTheSystemBar)
{
    Recorder target;
    const std::function<void()> ways[] = {
        [&] { tap(1, 0); },
        [&] { delegate->showPlugin(u"plugin.nobody"_s); },
        [&] { list()->selectRowIndexes({2}, false); },
        [&] { delegate->endModalSheet(nullptr); },
    };
    for (const auto &way : ways) {
        request(&target);
        EXPECT_FALSE(showsSystemBar());
        way();
        QCoreApplication::processEvents();
        EXPECT_TRUE(showsSystemBar());
    }
    QWidget sheet;
    request(&target);
    delegate->beginModalSheet(&sheet);
    services.defaults[u"slvCore.elog"_s] = true;
    EXPECT_FALSE(delegate->showPlugin(u"plugin.status"_s));
    EXPECT_FALSE(showsSystemBar()) << "what is refused changes nothing";
    EXPECT_TRUE(logLines().isEmpty());
    delegate->endModalSheet(&sheet);
    request(&target);
    EXPECT_FALSE(showsSystemBar());
    QCoreApplication::processEvents();
    EXPECT_TRUE(showsSystemBar()) << "the sheet ends a turn later, and takes the new bar along";
}

TEST_F(WithTouchBar, KeepsTheKeyboardOffTheBarWhenItsPageGoes)
{
    ASSERT_TRUE(activate(*window));
    for (const QString &next : {u"plugin.memboost"_s, u"plugin.tweaks"_s}) {
        EXPECT_TRUE(delegate->showPlugin(u"plugin.status"_s));
        auto *field = content()->findChild<QLabel *>();
        field->setFocusPolicy(Qt::StrongFocus);
        field->setFocus();
        EXPECT_EQ(window->focusWidget(), field);
        EXPECT_TRUE(delegate->showPlugin(next));
        EXPECT_EQ(window->focusWidget(), list()) << qPrintable(next);
    }
}

TEST_F(WithTouchBar, ThreadsFindDoneWhatTheyAskedFor)
{
    Recorder target;
    request(&target);
    const QRect before = window->frameGeometry();
    const std::tuple<const char *, std::function<void()>, std::function<bool()>> calls[] = {
        {"pluginSetProcessing", [&] { delegate->pluginSetProcessing(u"plugin.status"_s, true); },
         [&] { return list()->findChild<ProgressIndicator *>() != nullptr; }},
        {"uiMaximize", [&] { delegate->uiMaximize(); },
         [&] { return window->frameGeometry() == services.visibleFrame; }},
        {"uiRestore", [&] { delegate->uiRestore(); },
         [&] { return window->frameGeometry() == before; }},
        {"uiRevertToSystemTouchbar", [&] { delegate->uiRevertToSystemTouchbar(); },
         [&] { return showsSystemBar(); }},
    };
    for (const auto &[name, call, isDone] : calls) {
        EXPECT_FALSE(isDone()) << name;
        std::atomic<bool> hasReturned = false;
        std::atomic<pid_t> caller = 0;
        bool wasDone = false;
        std::thread worker([&, call = call, isDone = isDone] {
            caller = ::gettid();
            call();
            wasDone = isDone();
            hasReturned = true;
        });
        while (!hasReturned && !(caller && isAsleep(caller))) // a call that does not wait returns
            std::this_thread::yield();
        EXPECT_SOON(hasReturned.load()) << name;
        worker.join();
        EXPECT_TRUE(wasDone) << name;
    }
}

TEST_F(WithTouchBar, BuildsItemsOfHighPriority)
{
    for (const QString &identifier :
         HostTouchBar::pluginItems(true) + HostTouchBar::systemItems()) {
        const auto item = delegate->touchBarMakeItemForIdentifier(nullptr, identifier);
        ASSERT_EQ(item != nullptr, identifier != TouchBar::otherItemsProxy());
        if (item) {
            EXPECT_EQ(item->identifier, identifier);
            EXPECT_EQ(item->visibilityPriority, 1000);
        }
    }
    EXPECT_EQ(HostTouchBar::pluginItems(false).size(), 3);
    QWidget sheet;
    request(&services.recorder, &sheet);
    EXPECT_TRUE(showsSystemBar()) << "a sheet has one of its own";
    ASSERT_TRUE(TouchBar::installed(&sheet));
    EXPECT_EQ(TouchBar::installed(&sheet)->defaultItemIdentifiers(),
              HostTouchBar::pluginItems(true));
    const QImage logo = strip()->itemViews().value(0)->grab().toImage();
    EXPECT_NE(
        logo,
        filled(logo.width(), logo.height(), logo.pixelColor(0, 0)).convertToFormat(logo.format()));
    services.addFixture(u"NoView"_s, services.root.path());
    delegate->plugins()->loadPluginFromPath(services.root.filePath(u"NoView.bundle"_s));
    become(u"plugin.fixture.NoView"_s, u"plugin.updater"_s);
    const auto images = delegate->getAllpluginTBImages();
    ASSERT_EQ(images.size(), 3) << "the status plugin has no icon, another one no view";
    for (const QImage &image : images)
        EXPECT_EQ(image.deviceIndependentSize(), QSizeF(24, 24));
    const QImage icon = delegate->getPluginTBImageForID(u"plugin.memboost"_s);
    EXPECT_EQ(icon.deviceIndependentSize(), QSizeF(18, 18));
    EXPECT_NEAR(icon.pixelColor(20, 20).green(), 230, 1) << "white at nine tenths";
    const QImage own = delegate->getPluginTBImageForID(u"plugin.status"_s);
    EXPECT_EQ(own.pixelColor(4, 2), QColor(Qt::white));
    EXPECT_EQ(own.pixelColor(4, 30).alpha(), 0);
    EXPECT_TRUE(delegate->getPluginTBImageForID(u"plugin.network"_s).isNull());
    become(u"plugin.status"_s, u"plugin.other"_s);
    EXPECT_TRUE(delegate->getPluginTBImageForID(u"plugin.status"_s).isNull()) << "not loaded";
}

int main(int argc, char **argv)
{
    return testMain<TouchBarApplication>(argc, argv);
}
