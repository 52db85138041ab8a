#pragma once

#include "platform/foundation/Bundle.h"
#include "platform/foundation/BundleModule.h"

#include <QHash>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

/// A bundle with what its files say of it. None of its code has run.
struct ReadBundle
{
    /// What is not read now is read when it is asked for.
    static ReadBundle open(const QString &path);
    static ReadBundle read(const QString &path);

    Result<std::unique_ptr<Bundle>> bundle;
    std::unique_ptr<BundleModule> module; ///< null without a bundle
};

/// Reads bundles on a thread of its own while the one before is still being started, up to some
/// that wait to be taken: each keeps a copy of its module open. Its methods are for one thread; the
/// destructor waits until the bundle at hand is read.
class BundleReadAhead
{
public:
    explicit BundleReadAhead(const QStringList &paths);
    ~BundleReadAhead();
    Q_DISABLE_COPY_MOVE(BundleReadAhead)

    /// What was taken before, or is none of the paths, is only opened.
    ReadBundle take(const QString &path);

private:
    struct Slot
    {
        QString path;
        std::once_flag once;
        std::optional<ReadBundle> bundle;
    };
    static void read(Slot &slot);
    void readAll();
    void goOn(std::size_t taken);

    std::vector<Slot> m_slots;
    QHash<QString, Slot *> m_byPath;
    std::atomic<std::size_t> m_taken = 0;
    std::atomic<bool> m_stop = false;
    std::thread m_reader;
};
