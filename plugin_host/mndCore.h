#pragma once

#include "platform/foundation/Selector.h"
#include "platform/ui/Drawer.h"
#include "plugin_host/mndTheme.h"

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QString>
#include <QStringList>
#include <QtPlugin>

#include <memory>

class QAbstractButton;
class QWidget;

/// The host as plugins see it.
///
/// Nothing here throws or reports an error: unknown names answer null, false, 0 or an empty value,
/// or do nothing. Methods marked [any] may be called from any thread, those marked [wait] too, and
/// return when the work is done on the main thread; all others belong to the main thread.
class mndCore
{
public:
    virtual ~mndCore() = default;

    virtual double mndVersion() = 0;              ///< [any] host API version: 6.0
    virtual quint64 mndEdition() = 0;             ///< [any] 1: store edition, 2: web edition
    virtual QString slvBundleVersionString() = 0; ///< [any] "v" and the build number

    /// [any] A new object of the named class, the caller's; null for an unknown name. A view is
    /// made on the main thread, any other object on the caller's; a thread waits for its view.
    virtual std::unique_ptr<QObject> newFactoryInstance(const QString &className) = 0;
    /// [wait] Shares an object under a name, replacing an earlier one; null removes the name. The
    /// object stays the caller's; the name is dropped with it. Who has asked for it before goes on
    /// using it: let it live for as long as another thread may.
    virtual void sharedObjectRegister(const QString &name, QObject *object) = 0;
    virtual QObject *sharedObject(const QString &name) = 0; ///< [any]
    /// Sends a message without arguments to every plugin that is an mndPluginDelegate and has it.
    virtual void signalAllPlugins(const Selector &selector) = 0;

    virtual void showMainWindow() = 0;
    /// [wait] False for an unknown id and while a sheet shows.
    virtual bool showPlugin(const QString &id) = 0;
    virtual void pluginSetBadge(const QString &id, quint64 value) = 0; ///< quint64(-1): no badge
    /// [wait] Busy spinner, in the place of the badge. Before the sidebar shows it waits for that.
    virtual void pluginSetProcessing(const QString &id, bool value) = 0;
    virtual void pluginSetIcon(const QString &id, const QImage &icon) = 0;
    virtual void pluginSetIconHighlighted(const QString &id, const QImage &icon) = 0;

    /// [any] Dropped while a sheet shows; of two that come at once, the second follows the first.
    /// The window stays the caller's.
    virtual void beginModalSheet(QWidget *window) = 0;
    /// [any] The sheet ends with the next turn of the main loop, and the main window's Touch Bar
    /// with it: a bar that is asked for in the same turn is gone again.
    virtual void endModalSheet(QWidget *window) = 0;
    /// [wait] A drawer on the right-hand edge, or on an edge: 0 left, 1 bottom, 2 right, 3 top.
    /// Never null. The caller owns it, and the content; its size is the content's. It is opened,
    /// closed and deleted on the main thread.
    virtual std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content) = 0;
    virtual std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content, quint64 edge) = 0;
    virtual bool uiModalShowing() = 0; ///< [any]
    virtual void uiButtonSetTextColor(QAbstractButton *button, const QColor &color) = 0;
    virtual void uiMaximize() = 0;             ///< [wait]
    virtual void uiRestore() = 0;              ///< [wait]
    virtual QWidget *uiSystemStatusView() = 0; ///< [any] to be touched on the main thread only
    /// [any] Shows the busy page in a view made as "WebView", or an empty one in its place, a
    /// moment later; any other view is left alone.
    virtual void uiCreateIndeterminateSpinner(QWidget *webView) = 0;
    virtual void uiFreeIndeterminateSpinner(QWidget *webView) = 0; ///< [any]

    /// [any] Changes nothing: there is no bar without the button of the status plugin.
    virtual void uiMakeSLVTouchbarWithButtons(const QStringList &titles, QObject *target,
                                              const Selector &selector, QWidget *window) = 0;
    /// Where the program shows a Touch Bar, puts a bar with these buttons on it until the next
    /// navigation or end of a sheet. The target, which is not owned, gets the tapped title as the
    /// selector's one argument, 0.2 s after the tap.
    /// @param window whose bar it is: a sheet's, or null for the main window.
    virtual void uiMakeSLVSystemTouchbarWithButtons(const QStringList &titles, QObject *target,
                                                    const Selector &selector, QWidget *window) = 0;
    virtual void uiRevertToSystemTouchbar() = 0; ///< [wait]
    virtual void uiSendFeedback() = 0;

    /// [wait] The store edition asks the user when it has to; null when the program ends meanwhile.
    virtual QString getHomeDirectory() = 0;
    virtual bool isHomeDirectory(const QString &path) = 0;   ///< [any]
    virtual void saveHomeDirectory(const QString &path) = 0; ///< [wait]
    /// [wait] The folder as a file URL.
    virtual void saveHomeDirectoryBookmark(const QByteArray &bookmark) = 0;
    /// [wait] Every "~", as getHomeDirectory() answers.
    virtual QString stringByExpandingTildeInPath(const QString &path) = 0;

    /// [any] The text of a key in the user's language, else the fallback. A null key gives "!aId".
    virtual QString stringResource(const QString &key, const QString &fallback) = 0;
    virtual QString localizeLink(const QString &link) = 0; ///< [any]

    virtual bool extendedLoggingValue() = 0;              ///< [any]
    virtual void setExtendedLoggingValue(bool value) = 0; ///< [wait]
    virtual void log(const QString &message) = 0; ///< [any] a line, while extended logging is on

    virtual mndTheme *uiTheme() = 0; ///< [any] the host's
};

#define mndCore_iid "com.solvane.mndCore/6"
Q_DECLARE_INTERFACE(mndCore, mndCore_iid)
