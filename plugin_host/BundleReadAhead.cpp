#include "plugin_host/BundleReadAhead.h"

#include <system_error>

namespace {

constexpr std::size_t farthest = 32; // bundles

} // namespace

ReadBundle ReadBundle::open(const QString &path)
{
    ReadBundle result{Bundle::open(path), nullptr};
    if (result.bundle)
        result.module = std::make_unique<BundleModule>(result.bundle.value()->executablePath());
    return result;
}

ReadBundle ReadBundle::read(const QString &path)
{
    // Both keep what they have read.
    ReadBundle result = open(path);
    if (result.bundle && result.bundle.value()->infoProblem().isNull())
        result.module->metadata();
    return result;
}

BundleReadAhead::BundleReadAhead(const QStringList &paths)
    : m_slots(static_cast<std::size_t>(paths.size()))
{
    for (std::size_t i = 0; i < m_slots.size(); ++i) {
        m_slots[i].path = paths[static_cast<qsizetype>(i)];
        m_byPath.insert(m_slots[i].path, &m_slots[i]);
    }
    try {
        m_reader = std::thread([this] { readAll(); });
    } catch (const std::system_error &) {
        // Without a thread each is read when it is taken.
    }
}

void BundleReadAhead::readAll()
{
    // The first one is wanted at once.
    for (std::size_t i = 1; i < m_slots.size(); ++i) {
        for (std::size_t taken = m_taken; i > taken + farthest && !m_stop; taken = m_taken)
            m_taken.wait(taken);
        if (m_stop)
            return;
        try {
            read(m_slots[i]);
        } catch (...) {
            // Whoever takes it tries again and meets the same.
        }
    }
}

void BundleReadAhead::goOn(std::size_t taken)
{
    m_taken += taken;
    m_taken.notify_one();
}

BundleReadAhead::~BundleReadAhead()
{
    m_stop = true;
    goOn(m_slots.size());
    if (m_reader.joinable())
        m_reader.join();
}

void BundleReadAhead::read(Slot &slot)
{
    std::call_once(slot.once, [&] { slot.bundle = ReadBundle::read(slot.path); });
}

ReadBundle BundleReadAhead::take(const QString &path)
{
    Slot *slot = m_byPath.take(path);
    if (!slot)
        return ReadBundle::open(path);
    read(*slot);
    ReadBundle result = std::move(*slot->bundle);
    goOn(1);
    return result;
}
