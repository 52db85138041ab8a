#pragma once

#include <QtGlobal>

#include <sys/resource.h>

#include <csignal>

/// For a while no file of this process may grow beyond so many bytes: what does not fit is written
/// in part or not at all, as on a full disk.
class FullDisk
{
public:
    explicit FullDisk(rlim_t bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &m_usual);
        const rlimit full{bytes, m_usual.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &full);
    }
    ~FullDisk() { ::setrlimit(RLIMIT_FSIZE, &m_usual); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_usual{};
};
