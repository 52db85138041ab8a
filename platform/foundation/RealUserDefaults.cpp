#include "platform/foundation/RealUserDefaults.h"

#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <memory>
#include <system_error>
#include <utility>

using namespace Qt::StringLiterals;

QString RealUserDefaults::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/Solvane/solvane.conf"_s;
}

RealUserDefaults::RealUserDefaults(const QString &filePath, SystemLog *log)
    : m_file(filePath)
    , m_log(log)
{
    QString problem;
    m_values.replace(m_file.read(problem));
    if (!problem.isNull())
        tell(u"The settings in %1 could not be read: %2"_s.arg(filePath, problem));
}

RealUserDefaults::~RealUserDefaults()
{
    handOver();
    m_isEnding = true;
    m_work.release();
    if (m_thread.joinable())
        m_thread.join();
}

QVariant RealUserDefaults::value(const QString &key) const
{
    return m_values.read([&](const Values &values) { return values.value(key); });
}

QStringList RealUserDefaults::keys() const
{
    QStringList keys =
        m_values.read([](const Values &values) { return QStringList(values.keys()); });
    keys.sort();
    return keys;
}

void RealUserDefaults::setValue(const QString &key, const QVariant &value)
{
    change(key, value.isValid() ? std::optional(value) : std::nullopt);
}

void RealUserDefaults::removeValue(const QString &key)
{
    change(key, std::nullopt);
}

void RealUserDefaults::removeAll()
{
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { removeAll(); });
    m_pending = {true, {}};
    m_values.replace({});
}

void RealUserDefaults::change(const QString &key, const std::optional<QVariant> &value)
{
    if (key.isEmpty())
        return;
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { change(key, value); });
    Values values = m_values.latest();
    if (value)
        values.insert(key, *value);
    else if (!values.remove(key))
        return;
    m_pending.values.insert(key, value);
    m_values.replace(std::move(values));
}

bool RealUserDefaults::synchronize()
{
    bool written = false;
    if (qApp && !MainThread::isCurrent())
        MainThread::runAndWait([&] { written = writeNow(); });
    else
        written = writeNow();
    return written;
}

void RealUserDefaults::synchronizeLater(std::function<void(bool)> done)
{
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { synchronizeLater(std::move(done)); });
    handOver();
    if (done)
        m_waiting.emplace(m_handedOver, std::move(done));
    // The thread calls for the answer, too; but it may be done by now, or have nothing to do.
    QMetaObject::invokeMethod(
        &m_receiver, [this] { answer(); }, Qt::QueuedConnection);
}

void RealUserDefaults::tell(const QString &message) const
{
    if (m_log)
        m_log->write(message);
}

bool RealUserDefaults::writeNow()
{
    handOver();
    Outcome outcome = m_outcome;
    for (; outcome.number < m_handedOver; outcome = m_outcome)
        m_outcome.wait(outcome);
    return outcome.isWritten != 0;
}

void RealUserDefaults::handOver()
{
    const Outcome last = m_outcome;
    const bool hasFailed = last.number == m_handedOver && !last.isWritten;
    if (m_pending.isEmpty() && !hasFailed)
        return;
    // One that the thread has not taken yet takes these along.
    std::unique_ptr<Errand> errand(m_errand.exchange(nullptr));
    if (!errand)
        errand = std::make_unique<Errand>();
    errand->changes.follow(std::exchange(m_pending, {}));
    errand->number = ++m_handedOver;
    m_errand = errand.release();
    if (!m_thread.joinable())
        startThread();
    if (m_thread.joinable())
        m_work.release();
    else
        attempt();
}

void RealUserDefaults::startThread()
{
    try {
        m_thread = std::thread([this] { run(); });
    } catch (const std::system_error &) {
        // There are too many. The main thread writes, then.
    }
}

void RealUserDefaults::run()
{
    while (true) {
        m_work.acquire();
        attempt();
        if (m_isEnding && !m_errand.load())
            return;
    }
}

void RealUserDefaults::attempt()
{
    const std::unique_ptr<Errand> errand(m_errand.exchange(nullptr));
    if (!errand)
        return;
    m_unwritten.follow(errand->changes);
    const QString problem = m_file.change(m_unwritten);
    if (problem.isNull())
        m_unwritten = {};
    else
        tell(u"The settings could not be written to %1: %2"_s.arg(m_file.path(), problem));
    m_outcome = Outcome{errand->number, problem.isNull() ? 1U : 0U};
    m_outcome.notify_all();
    QMetaObject::invokeMethod(
        &m_receiver, [this] { answer(); }, Qt::QueuedConnection);
}

void RealUserDefaults::answer()
{
    const Outcome outcome = m_outcome;
    while (!m_waiting.empty() && m_waiting.begin()->first <= outcome.number) {
        const auto done = m_waiting.extract(m_waiting.begin());
        done.mapped()(outcome.isWritten != 0);
    }
}
