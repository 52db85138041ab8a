#include "platform/foundation/DirectoryWalk.h"

#include "platform/foundation/FilePath.h"
#include "platform/foundation/FilePlace.h"
#include "platform/foundation/FolderDescent.h"
#include "platform/foundation/WalkPipeline.h"

#include <dirent.h>
#include <sched.h>
#include <sys/resource.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

// One thread reads the folders, which more than three others do not keep up with.
constexpr int mostThreads = 4;

/// How many descriptors a walk may hold: a small part of what the process is allowed.
int descriptorBudget()
{
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 16;
    return static_cast<int>(std::clamp<rlim_t>(limit.rlim_cur / 8, 16, 128));
}

/// Two slashes become one, once. QString's own way takes half of a plugin thread's smallest stack.
QString withoutDoubleSlashes(QStringView path)
{
    QString single;
    single.reserve(path.size());
    for (qsizetype i = 0; i < path.size(); ++i) {
        single += path[i];
        if (path[i] == u'/' && i + 1 < path.size() && path[i + 1] == u'/')
            ++i;
    }
    return single;
}

class Walk
{
public:
    Walk(FileDescriptor start, QString path, const DirectoryWalk::Found &found, int threads)
        : m_budget(descriptorBudget())
        , m_descent(std::move(start), m_budget / 4)
        , m_pipeline(threads)
        , m_path(std::move(path))
        , m_found(found)
    { }

    void run()
    {
        for (;;) {
            FolderDescent::Entry entry;
            if (m_descent.next(entry)) {
                if ((entry.type != DT_DIR && entry.type != DT_UNKNOWN) || !enter(entry))
                    add(entry);
            } else if (m_descent.isAtStart()) {
                break;
            } else {
                leave();
            }
        }
        handOverAll();
    }

private:
    /// Where a folder cannot be entered, its entry is looked at like any other's: what pretended to
    /// be a folder, or has taken its place, is found that way.
    bool enter(const FolderDescent::Entry &entry)
    {
        if (!m_descent.enter(entry.name)) {
            if (errno != EMFILE && errno != ENFILE)
                return false;
            handOverAll(); // gives descriptors back
            if (!m_descent.enter(entry.name))
                return false;
        }
        m_pathLengths.push_back(m_path.size());
        m_path += FilePath::decode(QByteArrayView(entry.name, entry.length));
        m_path += u'/';
        m_folderIsNew = true;
        return true;
    }

    void leave()
    {
        m_descent.leave();
        m_path.truncate(m_pathLengths.back());
        m_pathLengths.pop_back();
        m_folderIsNew = true;
    }

    void add(const FolderDescent::Entry &entry)
    {
        const size_t folders = static_cast<size_t>(m_budget) / 8;
        WalkBatch *batch = &m_pipeline.filling();
        if (batch->entryCount() == WalkPipeline::batchEntries
            || (m_folderIsNew && batch->folderCount() == folders)) {
            handOver();
            batch = &m_pipeline.filling();
        }
        if (m_folderIsNew || batch->folderCount() == 0) {
            batch->addFolder(m_descent.shared(), m_path);
            m_folderIsNew = false;
        }
        batch->add({entry.name, entry.length}, entry.type == DT_DIR);
    }

    void handOver()
    {
        m_pipeline.publish();
        handOverFinished(static_cast<size_t>(m_budget / 2));
    }

    void handOverAll()
    {
        m_pipeline.publish();
        handOverFinished(0);
    }

    void handOverFinished(size_t foldersOnTheirWay)
    {
        while (WalkBatch *batch = m_pipeline.next(foldersOnTheirWay)) {
            for (FileRecord &record : batch->records())
                m_found(std::move(record));
            m_pipeline.release();
        }
    }

    int m_budget;
    FolderDescent m_descent;
    WalkPipeline m_pipeline;
    QString m_path; ///< of the current folder, with a slash at the end
    std::vector<qsizetype> m_pathLengths;
    bool m_folderIsNew = true; ///< to the batch
    const DirectoryWalk::Found &m_found;
};

} // namespace

int DirectoryWalk::usualThreads()
{
    cpu_set_t processors;
    if (::sched_getaffinity(0, sizeof processors, &processors) != 0)
        return 1; // more processors than the set has room for, or none to be known
    return std::clamp(CPU_COUNT(&processors), 1, mostThreads);
}

void DirectoryWalk::run(const QString &path, const Found &found, int threads)
{
    const FilePlace place = FilePlace::of(path);
    FileDescriptor start(uninterrupted([&] {
        return ::openat(place.folder(), place.path(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    }));
    QString prefix = withoutDoubleSlashes(path + u'/');
    if (start.isOpen())
        Walk(std::move(start), std::move(prefix), found, threads).run();
}
