#pragma once

#include "host/LanguageFile.h"
#include "host/MainMenuOutlets.h"
#include "host/SharedObjects.h"
#include "host/Welcome.h"
#include "platform/ui/ApplicationDelegate.h"
#include "platform/ui/TouchBar.h"
#include "platform/ui/WebView.h"
#include "plugin_host/mndCore.h"
#include "plugin_host/SidebarTree.h"

#include <QPointer>
#include <QUrl>

#include <atomic>
#include <functional>

class mndAbout;
class mndPlugins;
class mndPrefs;
class LoadReports;
class PluginLoadObserver;
class PluginQuarantine;
class sharedHelpers;
class slvFeedback;

/// The application's delegate: the host shell, and the host object that plugins talk to.
///
/// Wires the parts of the program together and fixes their order. One object, on the main thread;
/// mndCore says which of its methods may be called from elsewhere.
class mndAppDelegate : public MainMenuOutlets,
                       public ApplicationDelegate,
                       public PXSourceListDataSource,
                       public PXSourceListDelegate,
                       public mndCore,
                       public TouchBarDelegate,
                       public WebViewDelegate,
                       public WindowDelegate
{
    Q_OBJECT
    Q_INTERFACES(ApplicationDelegate PXSourceListDataSource PXSourceListDelegate mndCore
                     TouchBarDelegate WebViewDelegate WindowDelegate)

public:
    mndAppDelegate();
    ~mndAppDelegate() override;

    /// Told of every bundle that start-up handles, and of calls that are wrong; null for nobody.
    /// Not owned.
    void setPluginLoadObserver(PluginLoadObserver *observer) { m_observer = observer; }
    /// What keeps plugins out, and knows which one took the last run down; null for nothing. Not
    /// owned.
    void setPluginQuarantine(PluginQuarantine *quarantine) { m_quarantine = quarantine; }
    /// For a run that nobody looks at: the user is not asked for the home folder.
    void setAsksNobody() { m_asksNobody = true; }
    /// Null before start-up has made it.
    mndPlugins *plugins() const { return m_Plugins.get(); }
    const SidebarTree::Headings &headings() const { return sourceListItems; }

    // ApplicationDelegate, WindowDelegate
    void applicationDidFinishLaunching() override;
    bool applicationShouldHandleReopen(QObject *application, bool hasVisibleWindows) override;
    bool applicationOpenFile(QObject *application, const QString &path) override;
    void applicationWillTerminate() override;
    bool windowShouldClose(QObject *window) override;
    void windowDidResize(QObject *window) override;

    // mndCore
    double mndVersion() override;
    quint64 mndEdition() override;
    QString slvBundleVersionString() override;
    std::unique_ptr<QObject> newFactoryInstance(const QString &className) override;
    void sharedObjectRegister(const QString &name, QObject *object) override;
    QObject *sharedObject(const QString &name) override;
    void signalAllPlugins(const Selector &selector) override;
    void showMainWindow() override;
    bool showPlugin(const QString &id) override;
    void pluginSetBadge(const QString &id, quint64 value) override;
    void pluginSetProcessing(const QString &id, bool value) override;
    void pluginSetIcon(const QString &id, const QImage &icon) override;
    void pluginSetIconHighlighted(const QString &id, const QImage &icon) override;
    void beginModalSheet(QWidget *window) override;
    void endModalSheet(QWidget *window) override;
    std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content) override;
    std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content, quint64 edge) override;
    bool uiModalShowing() override;
    void uiButtonSetTextColor(QAbstractButton *button, const QColor &color) override;
    void uiMaximize() override;
    void uiRestore() override;
    QWidget *uiSystemStatusView() override;
    void uiCreateIndeterminateSpinner(QWidget *webView) override;
    void uiFreeIndeterminateSpinner(QWidget *webView) override;
    void uiMakeSLVTouchbarWithButtons(const QStringList &titles, QObject *target,
                                      const Selector &selector, QWidget *window) override;
    void uiMakeSLVSystemTouchbarWithButtons(const QStringList &titles, QObject *target,
                                            const Selector &selector, QWidget *window) override;
    void uiRevertToSystemTouchbar() override;
    void uiSendFeedback() override;
    QString getHomeDirectory() override;
    bool isHomeDirectory(const QString &path) override;
    void saveHomeDirectory(const QString &path) override;
    void saveHomeDirectoryBookmark(const QByteArray &bookmark) override;
    QString stringByExpandingTildeInPath(const QString &path) override;
    QString stringResource(const QString &key, const QString &fallback) override;
    QString localizeLink(const QString &link) override;
    bool extendedLoggingValue() override;
    void setExtendedLoggingValue(bool value) override;
    void log(const QString &message) override;
    mndTheme *uiTheme() override;

    // WebViewDelegate: fixed answers, for pages of the host's own
    void webViewAddMessageToConsole(WebView *view, const QVariantMap &message) override;
    quint64 webViewDragDestinationActionMask(WebView *view) override;
    quint64 webViewDragSourceActionMask(WebView *view) override;
    QStringList webViewContextMenuItems(WebView *view, const QStringList &items) override;
    bool webViewShouldChangeSelectedDOMRange(WebView *view, const WebRange &proposed) override;

    // TouchBarDelegate, and what the Touch Bar is made of
    std::unique_ptr<TouchBarItem> touchBarMakeItemForIdentifier(TouchBar *bar,
                                                                const QString &identifier) override;
    void loadSystemTouchBar();
    std::unique_ptr<TouchBar> makeTouchBar();
    QImage getPluginTBImageForID(const QString &id);
    QList<QImage> getAllpluginTBImages();
    static QImage tintForTB(const QImage &image, float alpha);
    static QImage imageResize(const QImage &image, const QSizeF &newSize);
    static QImage imageToGreyImage(const QImage &image);
    static QImage imageFromCGImageRef(const QImage &bitmap);
    static QImage nsImageToCGImageRef(const QImage &image);

    // The sidebar's tree
    int sourceListNumberOfChildrenOfItem(PXSourceList *list, OutlineItem item) override;
    OutlineItem sourceListChild(PXSourceList *list, int index, OutlineItem item) override;
    QVariant sourceListObjectValueForItem(PXSourceList *list, OutlineItem item) override;
    void sourceListSetObjectValue(PXSourceList *list, const QVariant &value,
                                  OutlineItem item) override;
    bool sourceListIsItemExpandable(PXSourceList *list, OutlineItem item) override;
    bool sourceListItemHasBadge(PXSourceList *list, OutlineItem item) override;
    qint64 sourceListBadgeValueForItem(PXSourceList *list, OutlineItem item) override;
    bool sourceListItemHasIcon(PXSourceList *list, OutlineItem item) override;
    QImage sourceListIconForItem(PXSourceList *list, OutlineItem item) override;
    QImage sourceListIconForItemSelected(PXSourceList *list, OutlineItem item) override;
    QMenu *sourceListMenuForEvent(PXSourceList *list, QContextMenuEvent *event,
                                  OutlineItem item) override;
    bool sourceListIsGroupAlwaysExpanded(PXSourceList *list, OutlineItem group) override;
    bool sourceListShouldEditItem(PXSourceList *list, OutlineItem item) override;

public Q_SLOTS:
    void sourceListSelectionDidChange(const Notification &notification);
    void sourceListDeleteKeyPressedOnRows(const Notification &notification);

    // Menu commands and other actions of the interface file
    void onShowMainWindowClicked(QObject *sender);
    void onHelpClicked(QObject *sender);
    void onPreferencesClicked(QObject *sender);
    void onCheckForUpdateClicked(QObject *sender);
    void onAboutClicked(QObject *sender);
    void onFeedbackClicked(QObject *sender);
    void lblHomepageClicked();
    void onResetMyPreferences(QObject *sender);
    void onExtendedLoggingEnable(QObject *sender);
    void onExtendedLoggingSend(QObject *sender);

    // Taps on the Touch Bar; the sender is a SegmentedControl
    void tbPressed(QObject *sender);
    void tbPluginPressed(QObject *sender);

    /// The folder of the stored bookmark, for as long as it exists; an empty URL without one.
    QUrl loadHomeDirectoryBookmark() const;
    /// The account's home folder, whatever HOME says. The program ends without an account.
    QString actualHomeDirectory() const;

    // Without the counter, for windows that run in a loop of their own: they come in front of any
    // sheet that shows.
    void _beginModalSheet(QWidget *window, MainWindow::SheetOrder order = MainWindow::InFront);
    void _endModalSheet(QWidget *window);

    void setAllPluginsProcessing(bool value);
    void beginAccessingBookmark();
    void endAccessingBookmark();

private:
    // Start-up, in parts
    bool loadLanguageFile();
    void localizeMenus();
    void addTitlebarAccessory();
    void askAfterCrash();
    bool askAboutCulprit();
    void offerSafeMode();
    void makeLeftOutMenu();
    void buildSidebarTree();
    void _loaded();
    void _loaded2();
    void noteFirstPlace();

    void logPlace(const char *selector, int place, const std::optional<QString> &text = {});
    void localize(QAction *item, const char *key, const QString &fallback = {});
    Dictionary infoOfPlugin(const QString &id) const;
    /// The same, telling of one that there is none of.
    Dictionary infoForCall(const char *selector, const QString &id) const;
    void tellOfUnknownPlugin(const char *selector, const QString &id) const;
    void tellOfWrongCall(const char *selector, const QString &what) const;
    void expectMainThread(const char *selector) const;
    void setSidebarNeedsDisplay();
    void fitSidebar();
    void displayPage(const std::function<void()> &display);
    bool _showPlugin(const QString &id, bool &isKnown);
    void _highlightItem(const QString &heading, const QString &title);
    void _setBadge(const QString &heading, const QString &title, quint64 value);
    void _pluginSetIcon(const QString &heading, const QString &title, const QImage &icon);
    void _pluginSetIconHighlighted(const QString &heading, const QString &title,
                                   const QImage &icon);
    bool findAndSetProcessing(const QString &id, bool value);
    void pluginSetProcessingEx(const QVariantList &packed);
    void placeEarlySpinners();
    void _pluginSetProcessing(const QString &heading, const QString &title, bool value);
    void _uiCreateIndeterminateSpinner(QWidget *webView);
    void _uiFreeIndeterminateSpinner(QWidget *webView);
    void _uiMaximize();
    void _uiRestore();
    void _uiRevertToSystemTouchbar();
    std::unique_ptr<TouchBar> _coreMakeSystemTouchBarWith(const QStringList &titles);
    std::unique_ptr<TouchBar> _coreMakeTouchBarWith(const QStringList &titles);
    bool askForHomeDirectory();
    QString logFilePath() const;
    QString versionText();

    SidebarTree::Headings sourceListItems;
    std::unique_ptr<mndPlugins> m_Plugins;
    SharedObjects m_Factory;
    std::unique_ptr<mndAbout> _about;
    std::unique_ptr<mndPrefs> _prefs;
    std::atomic<qint32> _isModalShowing = 0;
    QRectF _oldFrame;
    bool m_frameIsUnplaced = false; ///< _oldFrame is from before the window had its place
    /// What was asked of spinners before the sidebar had its place; nothing once it has.
    std::optional<QList<QVariantList>> m_earlySpinners = QList<QVariantList>();
    int m_sidebarWidth = 0; ///< as the interface file has it; 0 before it was read
    std::atomic<bool> m_isSidebarToBeFitted = false;
    QPointer<QWidget> _title;
    std::unique_ptr<Welcome> _welcome;
    std::optional<LanguageFile> _languageFile;
    std::unique_ptr<slvFeedback> _feedback;
    QPointer<QObject> _systbTarget;
    Selector _systbSEL;
    QStringList _systbTitles;
    bool _sysTB = false;
    std::unique_ptr<mndTheme> _theme;
    mndCore *_core = nullptr;

    SidebarTree m_tree; ///< owns the items that sourceListItems and the plugins refer to
    std::unique_ptr<LoadReports> m_reports;   ///< what m_Factory knows as SHARED.LOADREPORTS
    std::unique_ptr<QObject> m_workspace;     ///< and as SHARED.WORKSPACE
    std::unique_ptr<sharedHelpers> m_helpers; ///< owns what m_Factory knows as SHARED.HELPERS
    PluginLoadObserver *m_observer = nullptr;
    bool m_asksNobody = false;
    PluginQuarantine *m_quarantine = nullptr;
};
