#include "platform/foundation/WalkPipeline.h"

#include <system_error>

namespace {

// Below this a thread costs more than it brings.
constexpr quint32 batchesWithoutThreads = 4;

} // namespace

WalkPipeline::WalkPipeline(int threads)
    : m_threadCount(threads)
{ }

WalkPipeline::~WalkPipeline()
{
    m_stopping = true;
    ++m_signal;
    m_signal.notify_all();
    for (std::thread &thread : m_threads)
        thread.join();
}

void WalkPipeline::publish()
{
    m_foldersOnTheirWay += filling().folderCount();
    const quint32 published = ++m_published;
    if (m_threads.empty()) {
        if (m_threadCount > 1 && published == batchesWithoutThreads)
            startThreads();
        return;
    }
    ++m_signal;
    m_signal.notify_one();
}

WalkBatch *WalkPipeline::next(size_t folders)
{
    const quint32 published = m_published.load(std::memory_order_relaxed);
    if (m_released == published)
        return nullptr;
    Slot &oldest = slot(m_released);
    const bool room = published - m_released < slotCount && m_foldersOnTheirWay < folders;
    while (!oldest.done.load(std::memory_order_acquire)) {
        if (room && !m_threads.empty())
            return nullptr;
        if (!makeOne())
            oldest.done.wait(0);
    }
    return &oldest.batch;
}

void WalkPipeline::release()
{
    Slot &oldest = slot(m_released++);
    m_foldersOnTheirWay -= oldest.batch.folderCount();
    oldest.batch.clear();
    oldest.done = 0;
}

void WalkPipeline::startThreads()
{
    try {
        m_threads.reserve(static_cast<size_t>(m_threadCount - 1));
        while (static_cast<int>(m_threads.size()) < m_threadCount - 1)
            m_threads.emplace_back([this] { work(); });
    } catch (const std::system_error &) {
        m_threadCount = 1; // with as many as there are
    }
}

void WalkPipeline::work()
{
    for (;;) {
        const quint32 signal = m_signal;
        if (m_stopping)
            return;
        if (!makeOne())
            m_signal.wait(signal);
    }
}

bool WalkPipeline::makeOne()
{
    quint32 index = m_claimed;
    do {
        if (index == m_published)
            return false;
    } while (!m_claimed.compare_exchange_weak(index, index + 1));
    Slot &claimed = slot(index);
    claimed.batch.makeRecords();
    claimed.done = 1;
    claimed.done.notify_one();
    return true;
}
