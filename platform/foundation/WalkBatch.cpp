#include "platform/foundation/WalkBatch.h"

#include "platform/foundation/FilePath.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>

namespace {

QString pathOf(const QString &folder, std::string_view name)
{
    const qsizetype count = folder.size();
    QString path(count + static_cast<qsizetype>(name.size()), Qt::Uninitialized);
    auto *begin = reinterpret_cast<char16_t *>(path.data());
    std::memcpy(begin, folder.constData(), static_cast<size_t>(count) * sizeof(char16_t));
    const char16_t *end =
        FilePath::decode(name.data(), static_cast<qsizetype>(name.size()), begin + count);
    path.truncate(end - begin);
    return path;
}

} // namespace

void WalkBatch::addFolder(std::shared_ptr<const FileDescriptor> folder, const QString &path)
{
    m_folders.push_back({std::move(folder), path, m_names.size()});
}

void WalkBatch::add(std::string_view name, bool isFolder)
{
    m_names.push_back(isFolder);
    m_names.insert(m_names.end(), name.begin(), name.end());
    m_names.push_back('\0');
    m_folders.back().namesEnd = m_names.size();
    ++m_entryCount;
}

void WalkBatch::makeRecords() noexcept
{
    try {
        m_records.reserve(m_entryCount);
        size_t position = 0;
        for (const Folder &folder : m_folders)
            makeRecords(folder, position);
    } catch (...) {
        m_failure = std::current_exception();
    }
}

void WalkBatch::makeRecords(const Folder &folder, size_t &position)
{
    while (position < folder.namesEnd) {
        const bool isFolder = m_names[position++];
        const std::string_view name = m_names.data() + position;
        position += name.size() + 1;
        struct stat64 status;
        const int answer = uninterrupted([&] {
            return ::fstatat64(folder.folder->number(), name.data(), &status,
                               AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT);
        });
        if (answer == 0 ? S_ISDIR(status.st_mode) : isFolder || errno == ENOENT)
            continue;
        m_records.push_back({pathOf(folder.path, name),
                             answer == 0 ? std::optional<qint64>(status.st_size) : std::nullopt});
    }
}

FileRecords &WalkBatch::records()
{
    if (m_failure)
        std::rethrow_exception(m_failure);
    return m_records;
}

void WalkBatch::clear()
{
    m_folders.clear();
    m_names.clear();
    m_records.clear();
    m_entryCount = 0;
    m_failure = nullptr;
}
