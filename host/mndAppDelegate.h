#pragma once

#include "host/LanguageFile.h"
#include "host/MainMenuOutlets.h"
#include "host/Welcome.h"
#include "platform/ui/ApplicationDelegate.h"
#include "plugin_host/mndCore.h"
#include "plugin_host/SidebarTree.h"

#include <QHash>
#include <QPointer>

#include <atomic>

class mndAbout;
class mndPlugins;
class mndPrefs;
class PluginLoadObserver;
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
                       public WindowDelegate
{
    Q_OBJECT
    Q_INTERFACES(
        ApplicationDelegate PXSourceListDataSource PXSourceListDelegate mndCore WindowDelegate)

public:
    mndAppDelegate();
    ~mndAppDelegate() override;

    /// Told of every bundle that start-up handles; null for nobody. Not owned.
    void setPluginLoadObserver(PluginLoadObserver *observer) { m_observer = observer; }
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

    void setAllPluginsProcessing(bool value);
    void beginAccessingBookmark();
    void endAccessingBookmark();

private:
    // Start-up, in parts
    bool loadLanguageFile();
    void localizeMenus();
    void addTitlebarAccessory();
    void buildSidebarTree();
    void _loaded();
    void _loaded2();

    void logPlace(const char *selector, int place, const QString &text = {});
    void localize(QAction *item, const char *key, const QString &fallback = {});
    Dictionary infoOfPlugin(const QString &id) const;
    void setSidebarNeedsDisplay();
    void _highlightItem(const QString &heading, const QString &title);
    void _setBadge(const QString &heading, const QString &title, quint64 value);
    void _pluginSetIcon(const QString &heading, const QString &title, const QImage &icon);
    void _pluginSetIconHighlighted(const QString &heading, const QString &title,
                                   const QImage &icon);
    void findAndSetProcessing(const QString &id, bool value);
    void pluginSetProcessingEx(const QVariantList &packed);
    void _pluginSetProcessing(const QString &heading, const QString &title, bool value);
    void _beginModalSheet(QWidget *window);
    void _endModalSheet(QWidget *window);
    void _uiMaximize();
    void _uiRestore();
    void _uiRevertToSystemTouchbar();
    void loadSystemTouchBar();
    QString actualHomeDirectory() const;
    QString logFilePath() const;

    SidebarTree::Headings sourceListItems;
    std::unique_ptr<mndPlugins> m_Plugins;
    QHash<QString, QPointer<QObject>> m_Factory;
    std::unique_ptr<mndAbout> _about;
    std::unique_ptr<mndPrefs> _prefs;
    std::atomic<qint32> _isModalShowing = 0;
    QRectF _oldFrame;
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
    std::unique_ptr<sharedHelpers> m_helpers; ///< owns what m_Factory knows as SHARED.HELPERS
    PluginLoadObserver *m_observer = nullptr;
};
