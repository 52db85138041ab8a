#include "platform/ui/Sheet.h"
#include "platform/ui/EdgeDrawer.h"
#include "platform/ui/MainWindow.h"
#include "platform/ui/ModalLoop.h"
#include "tests/support/MotionStyle.h"

#include <QDialog>
#include <QPointer>
#include <QShortcut>
#include <QVBoxLayout>

#include <map>

namespace {

/// A view whose owner has made its virtual methods throw.
struct Thrower : QWidget
{
    QSize minimumSizeHint() const override
    {
        return inSize ? throw std::runtime_error("size") : QWidget::minimumSizeHint();
    }
    void setVisible(bool visible) override
    {
        QWidget::setVisible(visible);
        if (inVisible)
            throw std::runtime_error("visible");
    }
    bool inSize = false;
    bool inVisible = false;
};

/// A shown window with a button in its content, and a view with two controls that nobody owns yet.
struct Panels : testing::Test
{
    Panels()
    {
        window.setCentralWidget(new QWidget);
        window.centralWidget()->setStyle(&style);
        below = new QPushButton(u"Below"_s, window.centralWidget());
        below->setGeometry(0, 0, 600, 400);
        window.resize(600, 400);
        window.show();
        below->setFocus();
        auto *layout = new QVBoxLayout(view.get());
        layout->addWidget(new QLabel(u"What it is about"_s));
        layout->addWidget(first = new QLineEdit);
        layout->addWidget(last = new QPushButton(u"Done"_s));
        view->resize(200, 120);
    }

    Sheet *sheet() const
    {
        for (auto *one : window.centralWidget()->findChildren<Sheet *>()) {
            if (one->view())
                return one;
        }
        return nullptr;
    }
    /// Object name of the view that shows; empty for none.
    QString shown() const { return sheet() ? sheet()->view()->objectName() : QString(); }
    QPoint inWindow(const QWidget *widget) const
    {
        return widget->mapTo(window.centralWidget(), QPoint());
    }
    bool isWithinTheWindow(const QWidget *widget) const
    {
        return window.centralWidget()->rect().contains(QRect(inWindow(widget), widget->size()));
    }

    MotionStyle style;
    MainWindow window;
    QPushButton *below;
    std::unique_ptr<QWidget> view = std::make_unique<QWidget>();
    QLineEdit *first;
    QPushButton *last;
};

} // namespace

TEST_F(Panels, ASheetKeepsMouseAndKeyboardToItself)
{
    const QSignalSpy clicks(below, &QPushButton::clicked), presses(last, &QPushButton::clicked);
    window.beginSheet(view.get());
    ASSERT_NE(sheet(), nullptr);
    EXPECT_EQ(QRect(inWindow(view.get()), view->size()), QRect(200, 0, 200, 120));
    QTest::mouseClick(window.childAt(20, 300), Qt::LeftButton);
    EXPECT_EQ(clicks.size(), 0);

    EXPECT_EQ(window.focusWidget(), first);
    QTest::keyClick(first, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), last);
    QTest::keyClick(last, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), first) << "it goes round inside";
    ASSERT_TRUE(activate(window));
    below->setFocus();
    EXPECT_EQ(window.focusWidget(), first) << "nobody takes it out";
    last->setDefault(true);
    QTest::keyClick(first, Qt::Key_Return);
    EXPECT_EQ(presses.size(), 1);

    QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(sheet());
    EXPECT_TRUE(spoken->role() == QAccessible::Dialog && spoken->state().modal);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"What it is about"_s);

    window.endSheet(view.get());
    EXPECT_EQ(sheet(), nullptr);
    EXPECT_TRUE(!view->parentWidget() && view->isHidden());
    EXPECT_EQ(window.focusWidget(), below);
    QTest::mouseClick(window.childAt(20, 300), Qt::LeftButton);
    EXPECT_EQ(clicks.size(), 1);
}

TEST_F(Panels, ASheetSlidesWhereTheDesktopAnimates)
{
    style.duration = 150;
    window.beginSheet(view.get());
    EXPECT_LT(inWindow(view.get()).y(), 0);
    EXPECT_SOON(inWindow(view.get()).y() == 0);
    window.endSheet(view.get());
    EXPECT_EQ(view->parentWidget(), nullptr) << "its owner may do what it wants with it at once";
    window.beginSheet(view.get());
    EXPECT_NE(sheet(), nullptr) << "while the picture of the last one slides away";
    window.endSheet(view.get());
    EXPECT_SOON(window.centralWidget()->findChildren<Sheet *>().isEmpty());
    window.hide();
    window.beginSheet(view.get());
    EXPECT_EQ(inWindow(view->parentWidget()->parentWidget()).y(), 0) << "nobody would see it slide";
}

TEST_F(Panels, ALargeSheetScrollsAndAVaryingOneFollows)
{
    view->resize(900, 700);
    window.beginSheet(view.get());
    EXPECT_EQ(view->size(), QSize(900, 700));
    EXPECT_TRUE(isWithinTheWindow(view->parentWidget()));
    last->setFocus();
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    view->resize(100, 100);
    window.resize(500, 300);
    EXPECT_EQ(inWindow(view.get()), QPoint((500 - view->width()) / 2, 0));
}

TEST_F(Panels, ASheetEndsWithItsView)
{
    const std::pair<const char *, std::function<void()>> ways[] = {
        {"hidden by itself", [&] { view->hide(); }},
        {"taken by another window", [&] { view->setParent(&window); }},
        {"deleted", [&] { view.reset(); }},
    };
    for (const auto &[way, lose] : ways) {
        SCOPED_TRACE(way);
        window.beginSheet(view.get());
        ASSERT_NE(sheet(), nullptr);
        lose();
        EXPECT_SOON(!sheet());
        EXPECT_EQ(window.focusWidget(), below);
    }
    QWidget done, next;
    window.beginSheet(&done);
    done.hide();
    window.beginSheet(&next);
    EXPECT_TRUE(next.isVisible()) << "at once after one that its owner has hidden";
    window.endSheet(&next);
    window.beginSheet(nullptr);
    window.beginSheet(&window);
    window.beginSheet(window.centralWidget());
    EXPECT_EQ(sheet(), nullptr);
}

TEST_F(Panels, ABorrowedViewGoesBackToItsOwner)
{
    QDialog owner;
    for (const bool firstGoesFirst : {true, false}) {
        for (const bool isSheet : {true, false}) { // borrowed twice
            view->setParent(&owner, Qt::Tool);
            auto first = std::make_unique<EdgeDrawer>(view.get(), &window, EdgeDrawer::Right);
            auto second = std::make_unique<EdgeDrawer>(isSheet ? nullptr : view.get(), &window, 0);
            if (isSheet)
                window.beginSheet(view.get());
            if (firstGoesFirst)
                first.reset();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            second.reset();
            window.endSheet(view.get());
            first.reset();
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            EXPECT_EQ(view->parentWidget(), &owner);
            EXPECT_EQ(view->windowType(), Qt::Tool);
        }
    }
    window.beginSheet(view.get());
    EXPECT_EQ(view->window(), &window);
    delete window.takeCentralWidget();
    EXPECT_EQ(view->parentWidget(), &owner) << "also when the window goes first";
    view->setParent(nullptr);
}

TEST_F(Panels, AViewThatThrowsIsNotShownAndNotLost)
{
    QPointer<Thrower> thrower = new Thrower;
    for (const bool inSize : {true, false}) {
        thrower->inSize = inSize;
        thrower->inVisible = !inSize;
        EXPECT_THROW(window.beginSheet(thrower), std::runtime_error);
        ASSERT_NE(thrower, nullptr);
        EXPECT_TRUE(!thrower->parentWidget() && thrower->isHidden());
    }
    thrower->inVisible = false;
    window.beginSheet(thrower);
    thrower->inVisible = true;
    window.endSheet(thrower);
    EXPECT_EQ(thrower->parentWidget(), nullptr);
    delete thrower;
    window.beginSheet(view.get());
    EXPECT_NE(sheet(), nullptr);
}

TEST_F(Panels, SheetsFollowOneAnotherAndComeBackFromBehind)
{
    std::map<QString, std::unique_ptr<QWidget>> views;
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) {
        views[name] = std::make_unique<QWidget>();
        views[name]->setObjectName(name);
    }
    // "+" asks for a sheet in its turn, "!" in front; "-" ends it, "x" deletes it.
    const std::tuple<QString, QString> cases[] = {
        {u"+a +b +c -a -b -c"_s, u"a a a b c "_s}, {u"+a +a +b +b -a -b"_s, u"a a a a b "_s},
        {u"+a +b -b -a"_s, u"a a a "_s},           {u"+a !b -b -a"_s, u"a b a "_s},
        {u"+a !b -a -b"_s, u"a b b "_s},           {u"+a !b +c -b -a -c"_s, u"a b b a c "_s},
        {u"+a +b !b -b -a"_s, u"a a b a "_s},      {u"+a !b !b -b -a"_s, u"a b b a "_s},
        {u"+a +b xb -a +c -c"_s, u"a a a  c "_s},  {u"+a +c xa -c"_s, u"a a c "_s},
    };
    for (const auto &[steps, seen] : cases) {
        SCOPED_TRACE(qPrintable(steps));
        QStringList after;
        for (const QString &step : steps.split(u' ')) {
            auto &one = views[step.last(1)];
            if (!one)
                (one = std::make_unique<QWidget>())->setObjectName(step.last(1));
            if (step[0] == u'x')
                one.reset();
            else if (step[0] == u'-')
                window.endSheet(one.get());
            else
                window.beginSheet(one.get(), nullptr,
                                  step[0] == u'!' ? MainWindow::InFront : MainWindow::InTurn);
            QCoreApplication::processEvents();
            after << shown();
        }
        EXPECT_EQ(after.join(u' '), seen);
        EXPECT_EQ(window.focusWidget(), below);
    }
    QWidget other;
    other.show();
    window.endSheet(&other);
    EXPECT_TRUE(other.isHidden()) << "ordered out, though it is no sheet";
    window.endSheet(&window);
    window.endSheet(below);
    EXPECT_TRUE(below->isVisible());
}

TEST_F(Panels, KeysOfWhatLiesBelowASheetDoNothing)
{
    ASSERT_TRUE(activate(window));
    QStringList heard;
    const auto hear = [&](auto *sender, auto signal, const QString &name) {
        QObject::connect(sender, signal, [&heard, name] { heard << name; });
    };
    below->setText(u"&Scan"_s);
    hear(below, &QPushButton::pressed, u"below"_s);
    last->setText(u"&Done"_s);
    hear(last, &QPushButton::pressed, u"inside"_s);
    hear(new QShortcut(Qt::CTRL | Qt::Key_K, below), &QShortcut::activated, u"shortcut"_s);
    auto *command = window.addAction(u"x"_s);
    command->setShortcut(Qt::CTRL | Qt::Key_J);
    hear(command, &QAction::triggered, u"command"_s);
    const auto press = [&] {
        QTest::keyClick(window.windowHandle(), Qt::Key_S, Qt::AltModifier);
        QTest::keyClick(window.windowHandle(), Qt::Key_K, Qt::ControlModifier);
        QTest::keyClick(window.windowHandle(), Qt::Key_J, Qt::ControlModifier);
        QTest::keyClick(window.windowHandle(), Qt::Key_D, Qt::AltModifier);
        return std::exchange(heard, {}).join(u' ');
    };
    EXPECT_EQ(press(), u"below shortcut command"_s);
    window.beginSheet(view.get());
    EXPECT_EQ(press(), u"command inside"_s);
    window.endSheet(view.get());
    EXPECT_TRUE(press().endsWith(u"shortcut command"_s)) << "the button may still be down";
}

TEST_F(Panels, DrawersOpenAtTheirEdgesAndStayWhereTheyCanBeSeen)
{
    const std::tuple<quint64, QPoint> cases[] = {
        {0, {0, 140}}, {1, {200, 280}}, {2, {400, 140}}, {3, {200, 0}}, {99, {400, 140}},
    };
    for (const auto &[edge, place] : cases) {
        SCOPED_TRACE(edge);
        EdgeDrawer drawer(view.get(), &window, edge);
        EXPECT_FALSE(drawer.isOpen() || view->isVisible());
        drawer.toggle();
        EXPECT_TRUE(drawer.isOpen() && view->isVisible());
        EXPECT_EQ(QRect(inWindow(view.get()), view->size()), QRect(place, QSize(200, 120)));
        drawer.toggle();
        EXPECT_FALSE(view->isVisible());
    }
    EXPECT_EQ(view->parentWidget(), nullptr) << "the content is the caller's";
    EdgeDrawer drawer(view.get(), &window, EdgeDrawer::Right);
    drawer.open();
    view->resize(300, 200);
    EXPECT_EQ(inWindow(view.get()), QPoint(400, 140)) << "a drawer keeps its size";
    window.resize(300, 100);
    EXPECT_TRUE(isWithinTheWindow(view->parentWidget()));
}

TEST_F(Panels, ADrawerSlidesAndStaysBehindASheet)
{
    style.duration = 150;
    EdgeDrawer drawer(view.get(), &window, EdgeDrawer::Left);
    QWidget other;
    window.beginSheet(&other);
    drawer.open();
    EXPECT_TRUE(drawer.isOpen());
    EXPECT_LT(inWindow(view.get()).x(), 0);
    EXPECT_SOON(inWindow(view.get()).x() == 0);
    EXPECT_EQ(window.centralWidget()->childAt(inWindow(last) + QPoint(5, 5)), sheet());
    window.endSheet(&other);
    drawer.close();
    EXPECT_FALSE(drawer.isOpen());
    EXPECT_SOON(!view->isVisible());
}

TEST_F(Panels, ADrawerIsDeletedAtAnyMoment)
{
    style.duration = 150;
    auto drawer = std::make_unique<EdgeDrawer>(view.get(), &window, EdgeDrawer::Top);
    QObject::connect(last, &QPushButton::clicked, [&] { drawer.reset(); });
    drawer->open();
    last->setFocus();
    QTest::mouseClick(last, Qt::LeftButton);
    EXPECT_EQ(drawer, nullptr);
    EXPECT_EQ(view->parentWidget(), nullptr);
    EXPECT_EQ(window.focusWidget(), below);

    EdgeDrawer widowed(view.get(), &window, EdgeDrawer::Top);
    widowed.open();
    view.reset();
    EXPECT_FALSE(widowed.isOpen());
    widowed.toggle();
    EXPECT_FALSE(widowed.isOpen()) << "there is nothing to show";
    QWidget content;
    EdgeDrawer orphan(&content, &window, EdgeDrawer::Top);
    delete window.takeCentralWidget();
    orphan.open();
    EXPECT_FALSE(orphan.isOpen());
    EXPECT_EQ(content.parentWidget(), nullptr);
    EdgeDrawer empty(nullptr, nullptr, 1);
    empty.toggle();
}

TEST_F(Panels, AModalLoopTakesInputForItsWindowOnly)
{
    QPushButton inside(u"Inside"_s);
    const QSignalSpy clicks(&inside, &QPushButton::clicked), others(below, &QPushButton::clicked);
    inside.show();
    QTimer::singleShot(0, [&] {
        EXPECT_TRUE(ModalLoop::isRunning());
        QTest::mouseClick(below, Qt::LeftButton);
        QTest::keyClick(below, Qt::Key_Space);
        QTest::mouseClick(&inside, Qt::LeftButton);
        EXPECT_TRUE(others.isEmpty() && clicks.size() == 1);
        ModalLoop::stopModal();
    });
    EXPECT_TRUE(ModalLoop::runModalForWindow(&inside));
    QTest::mouseClick(below, Qt::LeftButton);
    EXPECT_EQ(others.size(), 1);
    ModalLoop::stopModal();
    EXPECT_FALSE(ModalLoop::runModalForWindow(nullptr));
}

TEST_F(Panels, ModalLoopsNestAndEndWithTheirWindows)
{
    QWidget other;
    other.show();
    QStringList ends;
    const auto run = [&](const QString &name, QWidget *widget) {
        const bool stopped = ModalLoop::runModalForWindow(widget);
        ends << name + (stopped ? u" stopped"_s : u" ended"_s);
    };
    QTimer::singleShot(0, [&] {
        QTimer::singleShot(0, &ModalLoop::stopModal);
        run(u"inner"_s, &other);
        QTimer::singleShot(0, [&] { other.close(); });
        run(u"closed"_s, &other);
        QTimer::singleShot(0, &ModalLoop::stopModal);
        run(u"same"_s, view.get());
    });
    run(u"outer"_s, view.get());
    QTimer::singleShot(0, [&] { view.reset(); });
    run(u"deleted"_s, view.get());
    EXPECT_EQ(ends.join(u", "_s),
              u"inner stopped, closed ended, same stopped, outer stopped, deleted ended"_s);
    EXPECT_FALSE(ModalLoop::isRunning());
}
