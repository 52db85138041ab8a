#pragma once

#include "platform/foundation/FileSystem.h"

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

class Bundle;
class QObject;

/// The time of day. Any thread.
class Clock
{
public:
    virtual ~Clock() = default;
    virtual QDateTime now() const = 0;
};

/// Deferred work on the main loop. Main thread.
class Scheduler
{
public:
    virtual ~Scheduler() = default;
    /// Runs the work once, after the delay, unless the context is gone by then.
    virtual void after(double seconds, QObject *context, std::function<void()> work) = 0;
    /// Queues the work on the main loop.
    virtual void later(QObject *context, std::function<void()> work) = 0;
};

/// What the user reads and how dates and numbers are written. Any thread.
class Languages
{
public:
    virtual ~Languages() = default;
    /// Language tags (BCP 47, as short as their meaning allows), most wanted first; may be empty.
    virtual QStringList preferred() const = 0;
    virtual QLocale locale() const = 0;
};

/// The user who runs the program. Any thread.
class Account
{
public:
    virtual ~Account() = default;
    virtual QString loginName() const = 0;
    /// What "~" stands for: follows HOME.
    virtual QString home() const = 0;
    /// The home folder of the real user in the password database; null without an entry.
    virtual QString actualHome() const = 0;
};

/// Settings that outlive the process, of the host and of every plugin. Any thread; what changes
/// them waits for the main thread.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;
    /// Invalid when absent. Waits for nobody.
    virtual QVariant value(const QString &key) const = 0;
    virtual void setValue(const QString &key, const QVariant &value) = 0;
    virtual void removeValue(const QString &key) = 0;
    /// Every value goes, those too that other processes have stored since this one has read them.
    virtual void removeAll() = 0;
    virtual QStringList keys() const = 0;
    /// Waits until all changes are on the disk, for one who must not go on before. Whole or not at
    /// all: false when that failed; they are kept for the next time.
    virtual bool synchronize() = 0;
    /// Has all changes written at once, but waits for no disk: reading sees them already.
    /// @param done is told later, on the main thread, what synchronize() would have answered; not
    ///        when the process ends before. May be empty.
    virtual void synchronizeLater(std::function<void(bool written)> done) = 0;
};

/// The system's own log. Any thread.
class SystemLog
{
public:
    virtual ~SystemLog() = default;
    virtual void write(const QString &message) = 0;
};

/// The end of the process without the normal termination sequence.
class ProcessEnd
{
public:
    virtual ~ProcessEnd() = default;
    /// The real one does not return.
    virtual void exit(int status) = 0;
};

/// What the machine is. Any thread.
class MachineFacts
{
public:
    virtual ~MachineFacts() = default;
    /// Null when unknown.
    virtual QString modelName() const = 0;
    /// The operating system and its version, for a person.
    virtual QString osVersion() const = 0;
    virtual std::optional<int> cpuCount() const = 0;
    virtual std::optional<int> cpuSpeed() const = 0; ///< MHz
    virtual std::optional<int> ramSize() const = 0;  ///< megabytes
};

/// What the firmware says about the machine. Any thread.
class DeviceTree
{
public:
    virtual ~DeviceTree() = default;
    /// The bytes of the property "serial-number"; nothing when there is no such property.
    virtual std::optional<QByteArray> serialNumber() const = 0;
};

/// Everything without a window that leaves the process. The running program sets the real ones
/// once, a test its own; none is ever null while the delegate lives. Not owned.
struct SystemServices
{
    Clock *clock = nullptr;
    Scheduler *scheduler = nullptr;
    Languages *languages = nullptr;
    Account *account = nullptr;
    UserDefaults *defaults = nullptr;
    SystemLog *systemLog = nullptr;
    ProcessEnd *processEnd = nullptr;
    Bundle *mainBundle = nullptr;
    MachineFacts *machineFacts = nullptr;
    DeviceTree *deviceTree = nullptr;
    FileSystem *fileSystem = nullptr;
    /// 1: store edition, confined to folders the user has chosen; 2: web edition.
    quint64 edition = 2;
};

SystemServices &systemServices();

/// Sets a value and has it written at once, without waiting for the disk; of what could not be
/// written, the system log tells. Any thread, which waits for the main one.
void storeSetting(const QString &key, const QVariant &value);
