#pragma once

#include <QtGlobal>

#include <sys/resource.h>

#include <csignal>

/// Allows the process less of something for a while.
class LowLimit
{
public:
    LowLimit(__rlimit_resource resource, rlim_t limit)
        : m_resource(resource)
    {
        ::getrlimit(resource, &m_usual);
        const rlimit low{limit, m_usual.rlim_max};
        ::setrlimit(resource, &low);
    }
    ~LowLimit() { ::setrlimit(m_resource, &m_usual); }
    Q_DISABLE_COPY_MOVE(LowLimit)

private:
    __rlimit_resource m_resource;
    rlimit m_usual{};
};

/// For a while no file of this process may grow beyond so many bytes: what does not fit is written
/// in part or not at all, as on a full disk.
struct FullDisk : LowLimit
{
    explicit FullDisk(rlim_t bytes)
        : LowLimit(RLIMIT_FSIZE, bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
    }
};
