#pragma once

#include <QScopeGuard>

#include <atomic>
#include <memory>
#include <vector>

/// A value that one thread replaces as a whole, while any number of others read it without waiting.
template <typename Value>
class Snapshots
{
public:
    explicit Snapshots(Value first = {}) { replace(std::move(first)); }

    /// The work's answer about the value of this moment, which holds still for it. Any thread.
    template <typename Work>
    auto read(Work work) const
    {
        // The order counts: once a writer has put a new value in place and sees no reader, whoever
        // comes later reads the new one, and the old ones can go.
        m_readers.fetch_add(1);
        const auto done = qScopeGuard([this] { m_readers.fetch_sub(1); });
        return work(*m_current.load());
    }

    /// The writing thread's view.
    const Value &latest() const { return *m_kept.back(); }
    void replace(Value value)
    {
        m_kept.push_back(std::make_unique<const Value>(std::move(value)));
        m_current = m_kept.back().get();
        if (m_readers.load() == 0)
            m_kept.erase(m_kept.begin(), m_kept.end() - 1);
    }

private:
    mutable std::atomic<int> m_readers = 0;
    std::atomic<const Value *> m_current = nullptr;
    std::vector<std::unique_ptr<const Value>>
        m_kept; ///< those a reader may still be in, and the last
};
