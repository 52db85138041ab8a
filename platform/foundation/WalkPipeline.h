#pragma once

#include "platform/foundation/WalkBatch.h"

#include <array>
#include <atomic>
#include <thread>

/// Batches on their way from the reader of a walk, through whichever thread makes their records,
/// back to the reader, in their order. Everything but the making of records happens on one thread,
/// the owner's. No locks: a batch belongs to the owner until it is published, to the thread that
/// claims it until it is done, then to the owner again.
class WalkPipeline
{
public:
    /// @param threads that make records at once at most, the owner's included. They are started
    /// once there is work for them.
    explicit WalkPipeline(int threads);
    /// Waits for the threads, which end with the batch they are at.
    ~WalkPipeline();
    Q_DISABLE_COPY_MOVE(WalkPipeline)

    /// Entries and folders that make a batch full, and folders on their way at once: each of these
    /// holds a descriptor.
    static constexpr size_t batchEntries = 256;

    /// The batch to be filled. Only while there is room, which next() sees to.
    WalkBatch &filling() { return slot(m_published.load(std::memory_order_relaxed)).batch; }
    /// Passes the batch on.
    void publish();

    /// The oldest batch on its way once its records are made, to be given back by release(). Null
    /// while there is something better to do than wait: to fill the next batch.
    /// @param folders how many folders may be on their way for that to be so.
    WalkBatch *next(size_t folders);
    void release();

private:
    static constexpr quint32 slotCount = 32; // divides the range of the counters

    struct Slot
    {
        WalkBatch batch;
        std::atomic<quint32> done = 0;
    };

    Slot &slot(quint32 index) { return m_slots[index % slotCount]; }
    void startThreads();
    void work();
    bool makeOne();

    std::array<Slot, slotCount> m_slots;
    std::atomic<quint32> m_published = 0; ///< counters of batches, which wrap around
    std::atomic<quint32> m_claimed = 0;
    quint32 m_released = 0;
    size_t m_foldersOnTheirWay = 0;
    int m_threadCount;
    std::vector<std::thread> m_threads;
    std::atomic<quint32> m_signal = 0; ///< changes when a thread has reason to look
    std::atomic<bool> m_stopping = false;
};
