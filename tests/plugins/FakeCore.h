#pragma once

#include "SolvanePlugin.h"

#include "helpers/appBundle.h"

#include <QMap>

/// A machine with four processors.
struct FakeHardware : QObject, hardwareInfoProtocol
{
    Q_OBJECT
    Q_INTERFACES(hardwareInfoProtocol)
public:
    QString modelName() override { return u"Maker Model"_s; }
    QString osVersion() override { return version; }
    QString osLanguage() override { return u"en"_s; }
    int cpuCount() override { return 4; }
    int cpuSpeed() override { return 0; }
    int ramSize() override { return 0; }
    quint64 hdSize(const QString &) override { return 0; }
    quint64 hdFree(const QString &) override { return 0; }

    QString version;
};

/// A host that answers what plugins ask and remembers what they did. Texts come out marked, so that
/// a text that was never asked for shows.
class FakeCore : public QObject, public mndCore
{
    Q_OBJECT
    Q_INTERFACES(mndCore)

public:
    QMap<QString, QString> texts; ///< every fallback by its key
    int feedbacks = 0;
    bool logging = false;
    QObject *helpers = nullptr;
    QObject *reports = nullptr;
    QObject *workspace = nullptr;
    QString home;
    QMap<QString, quint64> badges;
    QString osVersion;

    double mndVersion() override { return 6.0; }
    quint64 mndEdition() override { return 2; }
    QString slvBundleVersionString() override { return u"v612"_s; }
    void uiSendFeedback() override { ++feedbacks; }
    void pluginSetBadge(const QString &id, quint64 value) override { badges[id] = value; }
    QString stringByExpandingTildeInPath(const QString &path) override
    {
        return QString(path).replace(u'~', home);
    }
    QString stringResource(const QString &key, const QString &fallback) override
    {
        texts[key] = fallback;
        return u'[' + fallback + u']';
    }
    QString localizeLink(const QString &link) override { return link + u"?de"_s; }

    std::unique_ptr<QObject> newFactoryInstance(const QString &className) override
    {
        if (className == u"appBundle"_s)
            return std::make_unique<appBundle>();
        auto hardware = std::make_unique<FakeHardware>();
        hardware->version = osVersion;
        return className == u"hardwareInfo"_s ? std::move(hardware) : nullptr;
    }
    void sharedObjectRegister(const QString &, QObject *) override { }
    QObject *sharedObject(const QString &name) override
    {
        return name == u"SHARED.HELPERS"_s    ? helpers
            : name == u"SHARED.LOADREPORTS"_s ? reports
            : name == u"SHARED.WORKSPACE"_s   ? workspace
                                              : nullptr;
    }
    void signalAllPlugins(const Selector &) override { }
    void showMainWindow() override { }
    bool showPlugin(const QString &) override { return false; }
    void pluginSetProcessing(const QString &, bool) override { }
    void pluginSetIcon(const QString &, const QImage &) override { }
    void pluginSetIconHighlighted(const QString &, const QImage &) override { }
    void beginModalSheet(QWidget *) override { }
    void endModalSheet(QWidget *) override { }
    std::unique_ptr<Drawer> newDrawerWithContent(QWidget *) override { return nullptr; }
    std::unique_ptr<Drawer> newDrawerWithContent(QWidget *, quint64) override { return nullptr; }
    bool uiModalShowing() override { return false; }
    void uiButtonSetTextColor(QAbstractButton *, const QColor &) override { }
    void uiMaximize() override { }
    void uiRestore() override { }
    QWidget *uiSystemStatusView() override { return nullptr; }
    void uiCreateIndeterminateSpinner(QWidget *) override { }
    void uiFreeIndeterminateSpinner(QWidget *) override { }
    void uiMakeSLVTouchbarWithButtons(const QStringList &, QObject *, const Selector &,
                                      QWidget *) override
    { }
    void uiMakeSLVSystemTouchbarWithButtons(const QStringList &, QObject *, const Selector &,
                                            QWidget *) override
    { }
    void uiRevertToSystemTouchbar() override { }
    QString getHomeDirectory() override { return home; }
    bool isHomeDirectory(const QString &) override { return false; }
    void saveHomeDirectory(const QString &) override { }
    void saveHomeDirectoryBookmark(const QByteArray &) override { }
    bool extendedLoggingValue() override { return logging; }
    void setExtendedLoggingValue(bool value) override { logging = value; }
    void log(const QString &) override { }
    mndTheme *uiTheme() override { return nullptr; }
};
