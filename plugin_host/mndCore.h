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

    /// [any] A new object of the named class, the caller's; null for an unknown name.
    virtual std::unique_ptr<QObject> newFactoryInstance(const QString &className) = 0;
    /// Shares an object under a name, replacing an earlier one; null removes the name. The object
    /// stays the caller's; the name is dropped with it.
    virtual void sharedObjectRegister(const QString &name, QObject *object) = 0;
    virtual QObject *sharedObject(const QString &name) = 0;
    /// Sends a message without arguments to every plugin that is an mndPluginDelegate and has it.
    virtual void signalAllPlugins(const Selector &selector) = 0;

    virtual void showMainWindow() = 0;
    /// False for an unknown id and while a sheet shows.
    virtual bool showPlugin(const QString &id) = 0;
    virtual void pluginSetBadge(const QString &id, quint64 value) = 0; ///< quint64(-1): no badge
    virtual void
    pluginSetProcessing(const QString &id,
                        bool value) = 0; ///< [wait] busy spinner, in the place of the badge
    virtual void pluginSetIcon(const QString &id, const QImage &icon) = 0;
    virtual void pluginSetIconHighlighted(const QString &id, const QImage &icon) = 0;

    virtual void beginModalSheet(QWidget *window) = 0; ///< [any] dropped while a sheet shows
    virtual void endModalSheet(QWidget *window) = 0;   ///< [any]
    /// A drawer on the right-hand edge, or on an edge: 0 left, 1 bottom, 2 right, 3 top. The caller
    /// owns it; its size is the content's.
    virtual std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content) = 0;
    virtual std::unique_ptr<Drawer> newDrawerWithContent(QWidget *content, quint64 edge) = 0;
    virtual bool uiModalShowing() = 0; ///< [any]
    virtual void uiButtonSetTextColor(QAbstractButton *button, const QColor &color) = 0;
    virtual void uiMaximize() = 0; ///< [wait]
    virtual void uiRestore() = 0;  ///< [wait]
    virtual QWidget *uiSystemStatusView() = 0;
    virtual void uiCreateIndeterminateSpinner(QWidget *webView) = 0; ///< [any]
    virtual void uiFreeIndeterminateSpinner(QWidget *webView) = 0;   ///< [any]

    /// Answers nothing in this version: the bar stays as it is.
    virtual void uiMakeSLVTouchbarWithButtons(const QStringList &titles, QObject *target,
                                              const Selector &selector, QWidget *window) = 0;
    /// The target gets the tapped title 0.2 s after the tap.
    virtual void uiMakeSLVSystemTouchbarWithButtons(const QStringList &titles, QObject *target,
                                                    const Selector &selector, QWidget *window) = 0;
    virtual void uiRevertToSystemTouchbar() = 0; ///< [wait]
    virtual void uiSendFeedback() = 0;

    virtual QString getHomeDirectory() = 0;
    virtual bool isHomeDirectory(const QString &path) = 0;
    virtual void saveHomeDirectory(const QString &path) = 0;
    virtual void saveHomeDirectoryBookmark(const QByteArray &bookmark) = 0;
    virtual QString stringByExpandingTildeInPath(const QString &path) = 0; ///< every "~"

    /// [any] The text of a key in the user's language, else the fallback. A null key gives "!aId".
    virtual QString stringResource(const QString &key, const QString &fallback) = 0;
    virtual QString localizeLink(const QString &link) = 0; ///< [any]

    virtual bool extendedLoggingValue() = 0; ///< [any]
    virtual void setExtendedLoggingValue(bool value) = 0;
    virtual void log(const QString &message) = 0; ///< [any] a line, while extended logging is on

    virtual mndTheme *uiTheme() = 0; ///< [any] the host's
};

#define mndCore_iid "com.solvane.mndCore/6"
Q_DECLARE_INTERFACE(mndCore, mndCore_iid)
