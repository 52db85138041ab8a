#include "host/mndAppDelegate.h"

#include "aux_windows/mndAbout.h"
#include "aux_windows/mndPrefs.h"
#include "aux_windows/slvFeedback.h"
#include "helpers/HelperClasses.h"
#include "helpers/sharedHelpers.h"
#include "host/SharedWorkspace.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/ProductAddresses.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/Application.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/NamedImage.h"
#include "platform/ui/TouchBarStrip.h"
#include "plugin_host/LoadReports.h"
#include "plugin_host/mndPlugins.h"

#include <QApplication>
#include <QLabel>

using namespace Qt::StringLiterals;

namespace {

/// From the end of start-up until the plugins hear of it, and again until the sidebar is drawn
/// anew.
constexpr double endOfStartupDelay = 0.1;

/// Neither is 0, with which the Quit command ends: a launcher that asks can tell them apart.
constexpr int statusAfterReset = 1;
constexpr int statusAfterFailedReset = 2;

bool isTerminating()
{
    const auto *application = qobject_cast<Application *>(qApp);
    return application && application->isTerminating();
}

void paintGround(QWidget *view, const QColor &color)
{
    if (!view)
        return;
    QPalette ground = view->palette();
    ground.setColor(QPalette::Window, color);
    view->setPalette(ground);
    view->setAutoFillBackground(true);
}

} // namespace

mndAppDelegate::mndAppDelegate()
    : _core(this)
{
    WebView::registerClass();
}

mndAppDelegate::~mndAppDelegate()
{
    // The views go back to their plugins, and the sidebar lets go of the tree, before either ends.
    if (pluginViewHost)
        mndPlugins::removeSubviews(pluginViewHost);
    if (sourceList) {
        sourceList->setDelegate(nullptr);
        sourceList->setDataSource(nullptr);
    }
    if (_window)
        _window->setDelegate(nullptr);
    // While the host still answers: a plugin may call it on its way out.
    m_Plugins.reset();
}

void mndAppDelegate::applicationDidFinishLaunching()
{
    _systbTitles.clear();
    _theme = std::make_unique<mndTheme>();
    if (!loadLanguageFile())
        return;
    localizeMenus();
    _welcome = std::make_unique<Welcome>();
    _feedback = std::make_unique<slvFeedback>();
    if (miFeedback)
        miFeedback->setEnabled(_feedback->window());
    addTitlebarAccessory();
    if (_window) {
        _window->setDelegate(this);
        _window->setBackgroundColor(Qt::white);
        _window->setDelegate(this);
    }
    _oldFrame = _window ? QRectF(_window->frame()) : QRectF();
    m_frameIsUnplaced = true;
    _isModalShowing = 0;
    _prefs.reset();
    m_Factory.clear();
    registerHelperClasses();
    m_helpers = std::make_unique<sharedHelpers>();
    sharedObjectRegister(u"SHARED.HELPERS"_s, m_helpers.get());
    m_Plugins = std::make_unique<mndPlugins>(this);
    m_reports = std::make_unique<LoadReports>(m_observer);
    sharedObjectRegister(u"SHARED.LOADREPORTS"_s, m_reports.get());
    m_workspace = std::make_unique<SharedWorkspace>();
    sharedObjectRegister(u"SHARED.WORKSPACE"_s, m_workspace.get());
    m_Plugins->setObserver(m_reports.get());
    m_Plugins->setQuarantine(m_quarantine);
    askAfterCrash();
    // A start that is called off in the middle of a question takes nobody along.
    if (!isTerminating())
        m_Plugins->loadAllPlugins();
    buildSidebarTree();
    if (sourceList) {
        sourceList->setDelegate(this);
        sourceList->setDataSource(this);
        sourceList->reloadData();
    }
    showPlugin(u"plugin.status"_s);
    _about = std::make_unique<mndAbout>();
    if (miAbout)
        miAbout->setEnabled(_about->window());
    _prefs = std::make_unique<mndPrefs>();
    if (miPrefs)
        miPrefs->setEnabled(_prefs->window());
    if (_window)
        _window->setDelegate(this);
    if (sourceList) {
        sourceList->setBackgroundColor(_theme->sidebarColor());
        paintGround(sourceList->parentWidget(), _theme->sidebarColor());
        sourceList->hide();
    }
    systemServices().scheduler->after(endOfStartupDelay, this, [this] { _loaded(); });
    if (miExtendedLoggingEnable)
        miExtendedLoggingEnable->setChecked(extendedLoggingValue());
    logPlace("applicationDidFinishLaunching:", 847, versionText());
}

QString mndAppDelegate::versionText()
{
    return format(u"Loaded %@ (%d)"_s, {slvBundleVersionString(), mndEdition()});
}

void mndAppDelegate::addTitlebarAccessory()
{
    if (!_window || !_window->supportsTitlebarAccessories())
        return;
    const int width = _window->frameGeometry().width();
    _title = new QWidget;
    _title->setGeometry(0, 0, width, 50);
    auto *mark = new QLabel(_title);
    mark->setGeometry(width / 2 - 10, 1, 20, 20);
    mark->setPixmap(NamedImage::pixmap(u"v5-title-blu"_s, {20, 20}, _window->devicePixelRatioF()));
    _window->addTitlebarAccessory(_title);
    _window->setTitlebarAppearsTransparent(true);
}

void mndAppDelegate::_loaded()
{
    m_Plugins->performSelectorOnAllDelegates(Selector(u"onAllPluginsLoaded"_s));
    systemServices().scheduler->later(this, [this] { _loaded2(); });
}

void mndAppDelegate::_loaded2()
{
    systemServices().scheduler->after(endOfStartupDelay, this, [this] {
        noteFirstPlace();
        if (sourceList)
            sourceList->reloadData();
        placeEarlySpinners();
    });
    if (_window && _window->centralWidget())
        _window->centralWidget()->update();
    uiRevertToSystemTouchbar();
    if (TouchBarStrip *strip = _window ? _window->touchBarStrip() : nullptr)
        strip->setAccessibleName(stringResource(u"SZ_NAME_TOUCH_BAR"_s, u"Touch Bar"_s));
    if (!getHomeDirectory().isNull())
        beginAccessingBookmark();
    if (sourceList) {
        sourceList->show();
        // Rows that were laid out while hidden may have the wrong width.
        sourceList->doItemsLayout();
        setSidebarNeedsDisplay();
        sourceList->reloadData();
        // Hiding it has passed the keyboard on.
        sourceList->setFocus();
    }
    if (_window && _window->centralWidget())
        _window->centralWidget()->update();
}

/// Only now has the window manager put the window where it belongs, and drawn its borders.
void mndAppDelegate::noteFirstPlace()
{
    if (!m_frameIsUnplaced || !_window || !_window->isVisible() || _window->isMinimized()
        || _window->isMaximized() || _window->isFullScreen()) {
        return;
    }
    _oldFrame = _window->frame();
    m_frameIsUnplaced = false;
}

bool mndAppDelegate::applicationShouldHandleReopen(QObject *, bool)
{
    if (_window) {
        _window->comeForward();
        // What was started without its window has its first place now.
        if (m_frameIsUnplaced)
            systemServices().scheduler->after(endOfStartupDelay, this,
                                              [this] { noteFirstPlace(); });
    }
    if (miShowMainWindow)
        miShowMainWindow->setVisible(false);
    if (miShowMainWindowSeperator)
        miShowMainWindowSeperator->setVisible(false);
    return true;
}

bool mndAppDelegate::applicationOpenFile(QObject *, const QString &)
{
    return true;
}

void mndAppDelegate::applicationWillTerminate()
{
    logPlace("applicationWillTerminate:", 1330);
    endAccessingBookmark();
}

bool mndAppDelegate::windowShouldClose(QObject *)
{
    if (miShowMainWindow)
        miShowMainWindow->setVisible(true);
    if (miShowMainWindowSeperator)
        miShowMainWindowSeperator->setVisible(true);
    return true;
}

void mndAppDelegate::windowDidResize(QObject *) { }

double mndAppDelegate::mndVersion()
{
    return 6.0;
}

quint64 mndAppDelegate::mndEdition()
{
    return systemServices().edition;
}

QString mndAppDelegate::slvBundleVersionString()
{
    return format(u"v%@"_s, {systemServices().mainBundle->infoValue(u"CFBundleVersion"_s)});
}

void mndAppDelegate::onShowMainWindowClicked(QObject *)
{
    applicationShouldHandleReopen(qApp, false);
}

void mndAppDelegate::showMainWindow()
{
    expectMainThread("showMainWindow");
    onShowMainWindowClicked(nullptr);
}

void mndAppDelegate::onHelpClicked(QObject *)
{
    showPlugin(u"plugin.support"_s);
}

void mndAppDelegate::onPreferencesClicked(QObject *)
{
    if (_prefs)
        _prefs->show();
}

void mndAppDelegate::onCheckForUpdateClicked(QObject *)
{
    perform::sendQuietly(sharedObject(u"shared.updater"_s), Selector(u"checkForUpdates"_s));
}

void mndAppDelegate::onAboutClicked(QObject *)
{
    // Nobody could end the sheet of a window that is missing.
    if (!_about || !_about->window())
        return;
    beginModalSheet(_about->window());
    uiMakeSLVTouchbarWithButtons({u"OK"_s}, _about.get(), Selector(u"onOKClicked:"_s),
                                 _about->window());
}

void mndAppDelegate::onFeedbackClicked(QObject *)
{
    if (_feedback)
        _feedback->refresh();
}

void mndAppDelegate::uiSendFeedback()
{
    expectMainThread("uiSendFeedback");
    onFeedbackClicked(nullptr);
}

void mndAppDelegate::lblHomepageClicked()
{
    desktopServices().workspace->openUrl(ProductAddresses::homePage());
}

void mndAppDelegate::onResetMyPreferences(QObject *)
{
    const QString prompt =
        stringResource(u"SZ_RESET_PREFS_PROMPT"_s,
                       u"This option will reset your preferences and should be used if you have "
                       u"been advised to do "
                       "so by Solvane support, or you are having trouble with Quick Clean not "
                       "detecting many items "
                       "to remove.\n\n"
                       "After your preferences have been reset Solvane will automatically exit.\n\n"
                       "Would you like to proceed?"_s);
    const auto answer = desktopServices().alertPanel->run(
        stringResource(u"SZ_TITLE"_s, u"Solvane"_s), prompt,
        stringResource(u"SZ_CANCEL"_s, u"Cancel"_s), stringResource(u"SZ_RESET"_s, u"Reset"_s));
    if (answer == AlertPanel::Default)
        return;
    UserDefaults &defaults = *systemServices().defaults;
    defaults.removeAll();
    const bool isReset = defaults.synchronize();
    if (!isReset)
        desktopServices().alertPanel->run(
            stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
            stringResource(u"SZ_RESET_FAILED"_s,
                           u"Your preferences could not be reset, because the file that holds them "
                           "could not be written.\n\nSolvane will now exit. Please try again "
                           "later."_s),
            u"OK"_s, {});
    systemServices().processEnd->exit(isReset ? statusAfterReset : statusAfterFailedReset);
}
