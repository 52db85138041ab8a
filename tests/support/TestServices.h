#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/DesktopServices.h"

#include <QMap>
#include <QObject>
#include <QPointer>
#include <QTemporaryDir>

#include <deque>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

/// What happened, in order. Plugins of the fixtures tell it as the shared object "test.recorder".
class Recorder : public QObject
{
    Q_OBJECT

public:
    Q_INVOKABLE void note(const QString &what)
    {
        events << what;
        if (auto act = std::exchange(onNext, nullptr))
            act();
    }
    /// Takes what was noted so far.
    QStringList take() { return std::exchange(events, {}); }

    QStringList events;
    std::function<void()> onNext; ///< called with the next one
};

/// Services under a test's control. Every call that matters is noted in the recorder. Installed for
/// the lifetime of the object. The file system is the real one, until a test sets another in
/// systemServices().
class TestServices
{
public:
    TestServices();
    ~TestServices();
    Q_DISABLE_COPY_MOVE(TestServices)

    QString resources() const { return root.filePath(u"Solvane.app/Contents/Resources"_s); }
    QString supportFolder() const
    {
        return home.path() + u"/Library/Application Support/Solvane"_s;
    }
    /// Makes a file of this content, and the folders above it.
    static QString write(const QString &path, const QByteArray &content);
    /// Puts a text file into the application's resources.
    void addResource(const QString &name, const QByteArray &content)
    {
        write(resources() + u'/' + name, content);
    }
    /// Puts a compiled fixture bundle into a folder, under its own name unless another is given.
    static void addFixture(const QString &fixture, const QString &folder, const QString &name = {});

    /// Runs everything that is scheduled, in the order of its time, until nothing is left.
    void runScheduled();

    Recorder recorder;
    QTemporaryDir root;
    QTemporaryDir home;
    QString homePath = home.path();   ///< as the program is told
    QString actualHome = home.path(); ///< as the account has it, whatever the program is told

    /// Called when the application's own plugins are looked for.
    std::function<void()> onPluginsSought;
    QDateTime now;
    QStringList preferredLanguages{u"en"_s};
    QLocale locale{QLocale::English, QLocale::UnitedKingdom};
    QMap<QString, QVariant> defaults;
    bool defaultsAreWritten = true;
    AlertPanel::Answer alertAnswer = AlertPanel::Default;
    bool workspaceOpens = true;
    bool openerFails = false;          ///< soon after it was started
    std::function<void()> onUrlOpened; ///< called when the desktop is asked to open one
    QStringList chosenFolders;         ///< by the user, one after the other; then the user cancels
    QImage icon;                       ///< of every file and type
    QRect visibleFrame{0, 0, 1600, 900};
    QString modelName, osVersion;
    std::optional<int> cpuCount, cpuSpeed, ramSize;
    std::function<std::optional<QByteArray>()> serialNumber; ///< may throw

private:
    struct Scheduled
    {
        double due;
        QPointer<QObject> context;
        std::function<void()> work;
    };
    struct Seams;

    double m_elapsed = 0;
    std::vector<Scheduled> m_scheduled;
    std::unique_ptr<Seams> m_seams;
};
