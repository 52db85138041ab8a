#pragma once

#include "platform/foundation/SettingsFile.h"
#include "platform/foundation/Snapshots.h"
#include "platform/foundation/SystemServices.h"

#include <QHash>
#include <QMap>
#include <QObject>
#include <QSemaphore>

#include <atomic>
#include <functional>
#include <map>
#include <thread>

/// User defaults in one INI file, in which every value keeps its type.
///
/// Reading takes no lock and touches no disk: readers see an immutable snapshot that a change
/// replaces. Changes are made on the main thread, the one that makes this object, and wait for it
/// when they come from another. A thread of their own takes them to the disk, in their order, as
/// soon as synchronize() or synchronizeLater() is called; while it waits for the disk, later ones
/// gather and go together. What is not written by then is written when this object is destroyed,
/// which waits. A process that is killed has lost what had not reached the disk, and nothing else.
/// An empty key holds nothing.
///
/// Several processes may write the same file: each changes what it changed, one after the other.
class RealUserDefaults : public UserDefaults
{
public:
    /// The user's own file: solvane.conf in the folder Solvane of the XDG configuration folder
    /// (XDG Base Directory).
    static QString defaultFilePath();

    /// Reads the file; one that is missing is made at the first writing.
    /// @param log is told why the file could not be read or written; outlives this. May be null.
    explicit RealUserDefaults(const QString &filePath = defaultFilePath(),
                              SystemLog *log = nullptr);
    ~RealUserDefaults() override;

    QVariant value(const QString &key) const override;
    void setValue(const QString &key, const QVariant &value) override;
    void removeValue(const QString &key) override;
    void removeAll() override;
    QStringList keys() const override;
    bool synchronize() override;
    void synchronizeLater(std::function<void(bool)> done) override;

private:
    using Values = QHash<QString, QVariant>;
    /// What is on its way to the disk.
    struct Errand
    {
        SettingsChanges changes;
        quint32 number = 0;
    };
    /// How the attempt with an errand, and all before it, came out.
    struct Outcome
    {
        quint32 number;
        quint32 isWritten;
    };

    void change(const QString &key, const std::optional<QVariant> &value);
    void tell(const QString &message) const;
    bool writeNow();
    /// Has the thread write what is not on the disk, if there is anything.
    void handOver();
    void startThread();
    void run();
    /// On the thread that writes, or on the main one where there is none.
    void attempt();
    void answer();

    SettingsFile m_file;
    SystemLog *const m_log;
    Snapshots<Values> m_values;
    SettingsChanges m_pending;                                   ///< not handed over yet
    quint32 m_handedOver = 0;                                    ///< the last errand
    std::multimap<quint32, std::function<void(bool)>> m_waiting; ///< for an errand's outcome
    QObject m_receiver; ///< of the outcomes, on the main thread

    std::thread m_thread;                     ///< from the first errand on
    QSemaphore m_work;                        ///< one for each errand, and one for the end
    std::atomic<Errand *> m_errand = nullptr; ///< owned; whoever takes it out has it
    std::atomic<bool> m_isEnding = false;
    SettingsChanges m_unwritten; ///< of the thread: what has failed so far
    std::atomic<Outcome> m_outcome = Outcome{0, 1};
};
