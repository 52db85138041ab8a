#include "support/TestServices.h"

#include "platform/foundation/MainThread.h"
#include "platform/foundation/RealFileSystem.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// A bundle that notes what is looked up in it.
class RecordingBundle : public Bundle
{
public:
    RecordingBundle(const QString &path, TestServices &test)
        : Bundle(path)
        , t(test)
    { }

    QString pathForResource(const QString &name, const QString &type) const override
    {
        t.recorder.note(u"resource %1.%2"_s.arg(name, type));
        return Bundle::pathForResource(name, type);
    }

    QStringList pathsForResources(const QString &type) const override
    {
        if (t.onPluginsSought)
            t.onPluginsSought();
        t.recorder.note(u"resources *.%1"_s.arg(type));
        return Bundle::pathsForResources(type);
    }

private:
    TestServices &t;
};

} // namespace

/// The seams, each a thin view of the fields above.
struct TestServices::Seams : Clock,
                             Scheduler,
                             Languages,
                             Account,
                             UserDefaults,
                             SystemLog,
                             ProcessEnd,
                             AlertPanel,
                             Workspace,
                             Screen,
                             OpenPanel,
                             MachineFacts,
                             DeviceTree
{
    explicit Seams(TestServices &test)
        : t(test)
        , bundle(t.root.filePath(u"Solvane.app"_s), t)
    { }

    QDateTime now() const override { return t.now; }

    void after(double seconds, QObject *context, std::function<void()> work) override
    {
        t.recorder.note(u"after %1"_s.arg(seconds));
        t.m_scheduled.push_back({t.m_elapsed + seconds, context, std::move(work)});
    }
    void later(QObject *context, std::function<void()> work) override
    {
        t.recorder.note(u"later"_s);
        t.m_scheduled.push_back({t.m_elapsed, context, std::move(work)});
    }

    QStringList preferred() const override { return t.preferredLanguages; }
    QLocale locale() const override { return t.locale; }

    QString loginName() const override { return u"tester"_s; }
    QString home() const override { return t.homePath; }
    QString actualHome() const override { return t.actualHome; }

    QVariant value(const QString &key) const override { return t.defaults.value(key); }
    void setValue(const QString &key, const QVariant &value) override { t.defaults[key] = value; }
    void removeValue(const QString &key) override { t.defaults.remove(key); }
    void removeAll() override { t.defaults.clear(); }
    QStringList keys() const override { return t.defaults.keys(); }
    bool synchronize() override
    {
        t.recorder.note(u"synchronize"_s);
        return t.defaultsAreWritten;
    }
    void synchronizeLater(std::function<void(bool)> done) override
    {
        t.recorder.note(u"synchronize later"_s);
        if (done)
            MainThread::runLater([done, written = t.defaultsAreWritten] { done(written); });
    }

    void write(const QString &message) override { t.recorder.note(u"syslog "_s + message); }
    void exit(int status) override { t.recorder.note(u"exit %1"_s.arg(status)); }

    Answer run(const QString &title, const QString &message, const QString &defaultButton,
               const QString &alternate) override
    {
        t.recorder.note(u"alert %1|%2|%3|%4"_s.arg(title, message, defaultButton, alternate));
        return t.alertAnswer;
    }

    bool openUrl(const QString &url, const std::function<void()> &failed) override
    {
        t.recorder.note(u"open url "_s + url);
        if (t.onUrlOpened)
            t.onUrlOpened();
        if (t.openerFails && failed)
            MainThread::runLater(failed);
        return t.workspaceOpens;
    }
    bool openFile(const QString &path, const std::function<void()> &failed) override
    {
        t.recorder.note(u"open file "_s + path);
        if (t.openerFails && failed)
            MainThread::runLater(failed);
        return t.workspaceOpens;
    }

    QString chooseFolder(const QString &title, const QString &folder) override
    {
        t.recorder.note(u"choose %1|%2"_s.arg(title, folder));
        return t.chosenFolders.isEmpty() ? QString() : t.chosenFolders.takeFirst();
    }
    QImage iconForFile(const QString &path, int size) override
    {
        t.recorder.note(u"icon of file %1, %2"_s.arg(path).arg(size));
        return t.icon;
    }
    QImage iconForFileType(const QString &type, int size) override
    {
        t.recorder.note(u"icon of type %1, %2"_s.arg(type).arg(size));
        return t.icon;
    }

    QRect visibleFrame(const QWidget *) const override { return t.visibleFrame; }

    QString modelName() const override { return t.modelName; }
    QString osVersion() const override { return t.osVersion; }
    std::optional<int> cpuCount() const override { return t.cpuCount; }
    std::optional<int> cpuSpeed() const override { return t.cpuSpeed; }
    std::optional<int> ramSize() const override { return t.ramSize; }

    std::optional<QByteArray> serialNumber() const override
    {
        return t.serialNumber ? t.serialNumber() : std::nullopt;
    }

    TestServices &t;
    RecordingBundle bundle;
    RealFileSystem fileSystem;
};

TestServices::TestServices()
    : now(QDate(2026, 11, 16), QTime(0, 45))
{
    QDir().mkpath(resources());
    addResource(u"../Info.plist"_s,
                "{ CFBundleVersion = 512; CFBundleLocalizations = (en, de, fr); }");
    m_seams = std::make_unique<Seams>(*this);
    Seams *s = m_seams.get();
    systemServices() = {s, s, s, s, s, s, s, &s->bundle, s, s, &s->fileSystem};
    desktopServices() = {s, s, s, s};
}

TestServices::~TestServices()
{
    systemServices() = {};
    desktopServices() = {};
}

QString TestServices::write(const QString &path, const QByteArray &content)
{
    QDir().mkpath(QFileInfo(path).path());
    if (!RealFileSystem().writeFile(path, content))
        qFatal("the file of a test could not be written: %s", qUtf8Printable(path));
    return path;
}

void TestServices::addFixture(const QString &fixture, const QString &folder, const QString &name)
{
    const QString bundle = u"/%1.bundle"_s.arg(name.isNull() ? fixture : name);
    QDir().mkpath(folder);
    fs::copy((SOLVANE_FIXTURES_DIR u"/%1/%1.bundle"_s).arg(fixture).toStdString(),
             (folder + bundle).toStdString(),
             fs::copy_options::recursive | fs::copy_options::copy_symlinks);
}

void TestServices::runScheduled()
{
    while (!m_scheduled.empty()) {
        const auto next =
            std::min_element(m_scheduled.begin(), m_scheduled.end(),
                             [](const Scheduled &a, const Scheduled &b) { return a.due < b.due; });
        Scheduled scheduled = std::move(*next);
        m_scheduled.erase(next);
        m_elapsed = scheduled.due;
        if (scheduled.context)
            scheduled.work();
    }
}
