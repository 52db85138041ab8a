#include "platform/foundation/OwnTime.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

/// Nanoseconds that the calling thread has been waiting for a processor; 0 where the kernel does
/// not count them.
qint64 waited()
{
    QFile file(u"/proc/thread-self/schedstat"_s);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return 0;
    return file.readAll().split(' ').value(1).toLongLong();
}

} // namespace

OwnTime::OwnTime(bool isWanted)
{
    if (!isWanted)
        return;
    m_waited = waited();
    m_timer.start();
}

double OwnTime::milliseconds() const
{
    if (!m_timer.isValid())
        return 0;
    const qint64 taken = m_timer.nsecsElapsed();
    return static_cast<double>(taken - (waited() - m_waited)) / 1e6;
}
