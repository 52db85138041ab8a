#pragma once

#include <QElapsedTimer>

/// The time that the calling thread takes from here on, asleep too, but not the time for which it
/// could have run and others did: the answer is the same on a busy machine. One thread.
class OwnTime
{
public:
    /// @param isWanted false to measure nothing: it takes some system calls.
    explicit OwnTime(bool isWanted = true);
    /// 0 when nothing is measured.
    double milliseconds() const;

private:
    QElapsedTimer m_timer;
    qint64 m_waited = 0; ///< nanoseconds
};
