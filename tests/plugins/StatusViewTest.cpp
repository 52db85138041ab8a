#include "plugins/status/StatusView.h"
#include "FakeCore.h"
#include "plugins/status/HistoryChart.h"
#include "plugins/status/VolumeList.h"

static QStringList accessibleNames(const QWidget &view)
{
    QStringList names;
    for (const QWidget *widget : view.findChildren<QWidget *>())
        names << widget->accessibleName();
    names.removeAll(QString());
    return names;
}

/// What assistive technology hears of the first widget whose name begins so: role and value.
static std::pair<QAccessible::Role, QVariant> spoken(const QWidget &view, const QString &name)
{
    for (QWidget *widget : view.findChildren<QWidget *>()) {
        QAccessibleInterface *one = QAccessible::queryAccessibleInterface(widget);
        if (widget->accessibleName().startsWith(name) && one->valueInterface()
            && one->state().readOnly)
            return {one->role(), one->valueInterface()->currentValue()};
    }
    return {};
}

TEST(StatusView, ReadsOnlyWhileItCanBeSeen)
{
    QWidget window;
    window.resize(640, 480);
    StatusView view(nullptr, QStringLiteral(FIXTURES "/laptop"));
    const StatusMonitor &monitor = view.monitor();
    QSignalSpy readings(&monitor, &StatusMonitor::liveRead);

    view.setShownByHost(true);
    EXPECT_FALSE(monitor.isRunning()) << "the window is not on the screen yet";
    view.setParent(&window);
    view.show();
    window.show();
    EXPECT_TRUE(monitor.isRunning());
    ASSERT_SOON(readings.count() >= 2);

    const std::tuple<const char *, std::function<void()>, std::function<void()>> changes[] = {
        {"another page", [&] { view.setShownByHost(false); }, [&] { view.setShownByHost(true); }},
        {"closed window", [&] { window.close(); }, [&] { window.show(); }},
        {"minimised window", [&] { window.showMinimized(); }, [&] { window.showNormal(); }},
    };
    for (const auto &[name, away, back] : changes) {
        SCOPED_TRACE(name);
        away();
        QCoreApplication::processEvents();
        EXPECT_FALSE(monitor.isRunning());
        for (const QTimer *timer :
             window.findChildren<QTimer *>() + monitor.findChildren<QTimer *>())
            EXPECT_FALSE(timer->isActive());
        readings.clear();
        QTest::qWait(600); // a started monitor reads twice in that time
        EXPECT_EQ(readings.count(), 0);
        back();
        EXPECT_SOON(readings.count() >= 1);
    }
    view.setParent(nullptr);
    EXPECT_FALSE(monitor.isRunning()) << "taken out of the window";
}

TEST(StatusView, TellsWhatItShows)
{
    FakeCore core;
    StatusView view(&core, QStringLiteral(FIXTURES "/laptop"));
    core.osVersion = u"Debian 12, Linux 6.1.0-18-amd64"_s;
    view.setShownByHost(true);
    view.show();
    ASSERT_SOON(accessibleNames(view).filter(u"Memory, "_s).size() == 1);
    const QStringList names = accessibleNames(view);
    EXPECT_TRUE(names.contains(u"[Memory, [6.0 GB] of [15.3 GB] used]"_s))
        << qPrintable(names.join(u'\n'));
    EXPECT_TRUE(names.contains(u"[Running for]: [3 d 4 h]"_s));
    EXPECT_EQ(spoken(view, u"[Memory, "_s), std::pair(QAccessible::Chart, QVariant(39)));
    EXPECT_SOON(accessibleNames(view).filter(QRegularExpression(u": Debian 12$"_s)).size() == 1);
    EXPECT_SOON(accessibleNames(view).filter(u"[System volume], /, "_s).size() == 1);
    for (auto text = core.texts.cbegin(); text != core.texts.cend(); ++text)
        EXPECT_TRUE(text.key().startsWith(u"SZ_STATUS_"_s)) << qPrintable(text.key());
}

TEST(StatusView, HasAWordForEverythingAMachineDoesNotTell)
{
    StatusView view(nullptr, QStringLiteral(FIXTURES "/missing"));
    view.setShownByHost(true);
    view.show();
    const auto texts = [&view] {
        QStringList all;
        for (const QLabel *label : view.findChildren<QLabel *>())
            all << (label->isVisible() ? label->text() : QString());
        return all;
    };
    ASSERT_SOON(texts().filter(u"Not reported"_s).size() == 4);
    ASSERT_SOON(texts().filter(u"Model not reported"_s).size() == 2);
    EXPECT_TRUE(texts().contains(u"This computer"_s));
    EXPECT_TRUE(texts().contains(u"No volumes are reported"_s));
}

TEST(VolumeList, SaysHowAVolumeIs)
{
    VolumeList list(Texts(nullptr));
    const Volume disk{u"/mnt/disk"_s, u"/dev/sdb1"_s, u"ext4"_s, false};
    const Volume disc{u"/media/cd"_s, u"/dev/sr0"_s, u"iso9660"_s, true};
    list.setVolumes({disk, disc});
    const auto said = [&list](const QString &path) {
        return accessibleNames(list).filter(u", "_s + path + u", "_s).value(0).section(u", "_s, 2);
    };
    EXPECT_EQ(said(disk.path), u"Measuring\u2026"_s);
    constexpr quint64 giga = 1 << 30;
    list.setUsage(disk.path, VolumeUsage{100 * giga, 50 * giga, 45 * giga});
    EXPECT_EQ(said(disk.path), u"50.0 GB of 100.0 GB used, 45.0 GB free 53%"_s);
    list.setUsage(disk.path, VolumeUsage{100 * giga, 91 * giga, 9 * giga});
    EXPECT_TRUE(said(disk.path).startsWith(u"Almost full: 91.0 GB"_s));
    EXPECT_EQ(spoken(list, u"disk, "_s), std::pair(QAccessible::ProgressBar, QVariant(91)));
    list.setUsage(disc.path, VolumeUsage{giga, giga, 0});
    EXPECT_TRUE(said(disc.path).startsWith(u"1.0 GB of 1.0 GB used"_s)) << "full by nature";
    list.setSilent(disc.path);
    EXPECT_EQ(said(disc.path), u"Does not answer"_s);

    list.setVolumes({disk}); // the disc was taken out, the disk keeps its figures
    EXPECT_EQ(said(disc.path), QString());
    EXPECT_TRUE(said(disk.path).startsWith(u"Almost full"_s));
    list.setUsage(disc.path, std::nullopt); // a late answer
    list.setUsage(disk.path, std::nullopt);
    EXPECT_EQ(said(disk.path), u"Cannot be measured"_s);
}

TEST(HistoryChart, KeepsItsLastSamples)
{
    HistoryChart chart(Qt::blue);
    for (int i = 0; i < HistoryChart::capacity + 5; ++i)
        chart.addSample(i < 5 ? 0.0 : 7.0);
    EXPECT_EQ(chart.count(), HistoryChart::capacity);
    chart.resize(120, 60);
    const QImage picture = chart.grab().toImage();
    EXPECT_LT(picture.pixelColor(60, 2).red(), 150) << "what is too large is drawn at the edge";
    EXPECT_LT(picture.pixelColor(2, 40).red(), 250) << "filled from the first sample on";
    chart.clear();
    EXPECT_EQ(chart.count(), 0);
}
