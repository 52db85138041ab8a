#include "SolvanePlugin.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <cstdio>
#include <memory>
#include <thread>

using namespace Qt::StringLiterals;

/// Scans the folder that SOLVANE_SCAN_FOLDER names on a thread of its own until it has found a
/// million files, and meanwhile asks the main loop to answer as often as it can. Prints the number
/// of files and the longest wait for an answer, in milliseconds, and ends the program.
class ScanPlugin : public QObject, public mndPlugin, public mndPluginDelegate
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
    Q_INTERFACES(mndPlugin mndPluginDelegate)

public:
    ~ScanPlugin() override
    {
        if (m_scan.joinable())
            m_scan.join();
    }

    Dictionary pluginInitialize(const Dictionary &parameters) override
    {
        m_core = qobject_cast<mndCore *>(parameters.value<QObject *>(u"core"_s));
        m_view = std::make_unique<QWidget>();
        Dictionary info = Dictionary::make();
        info.setValue(u"id"_s, u"plugin.benchmark.scan"_s);
        info.setValue(u"name"_s, u"Scan"_s);
        info.setValue(u"parent"_s, u"Cleaning"_s);
        info.setValue(u"view"_s, QVariant::fromValue<QWidget *>(m_view.get()));
        return info;
    }

    void onViewShow() override { }
    void onViewHide() override { }
    // Once the start is over.
    void onAllPluginsLoaded() override
    {
        QTimer::singleShot(2000, this, [this] { begin(); });
    }

private:
    void begin()
    {
        auto *helpers = qobject_cast<mndHelpers *>(m_core->sharedObject(u"SHARED.HELPERS"_s));
        m_scan = std::thread([this, helpers] {
            std::size_t found = 0;
            while (found < 1'000'000) {
                FileRecords records;
                helpers->enumerateFilesAtPath(qEnvironmentVariable("SOLVANE_SCAN_FOLDER"),
                                              &records);
                if (records.empty())
                    break;
                found += records.size();
                m_core->pluginSetBadge(u"plugin.benchmark.scan"_s, found);
            }
            QMetaObject::invokeMethod(this, [this, found] { end(found); });
        });
        m_sinceAnswer.start();
        connect(&m_ask, &QTimer::timeout, this, [this] {
            m_longest = qMax(m_longest, m_sinceAnswer.nsecsElapsed());
            m_sinceAnswer.start();
        });
        m_ask.start(1);
    }

    void end(std::size_t found)
    {
        std::printf("%zu %.1f\n", found, static_cast<double>(m_longest) / 1e6);
        std::fflush(stdout);
        QCoreApplication::quit();
    }

    mndCore *m_core = nullptr;
    std::unique_ptr<QWidget> m_view;
    std::thread m_scan;
    QTimer m_ask;
    QElapsedTimer m_sinceAnswer;
    qint64 m_longest = 0;
};

#include "ScanPlugin.moc"
