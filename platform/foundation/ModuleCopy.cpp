#include "platform/foundation/ModuleCopy.h"

#include "platform/foundation/FilePath.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/sendfile.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// A file that says it is longer would only fill the memory.
constexpr off_t longest = off_t(1) << 30; // bytes

/// Memory under the file's name, by which lists of mappings show it.
FileDescriptor makeMemory(const QByteArray &path)
{
    constexpr qsizetype longestName = 249;
    constexpr unsigned flags = MFD_CLOEXEC | MFD_ALLOW_SEALING;
    constexpr unsigned neverExecuted = 0x8; // MFD_NOEXEC_SEAL, which some systems insist on
    const QByteArray name = path.last(std::min(path.size(), longestName));
    const int made = ::memfd_create(name.constData(), flags | neverExecuted);
    // Kernels before 6.3 do not know it.
    return FileDescriptor(made >= 0 || errno != EINVAL ? made
                                                       : ::memfd_create(name.constData(), flags));
}

bool copyAll(int from, int to)
{
    ssize_t copied = 1;
    while (copied > 0)
        copied = uninterrupted([&] { return ::sendfile(to, from, nullptr, longest); });
    return copied == 0;
}

bool isSame(const struct stat &one, const struct stat &other)
{
    return one.st_size == other.st_size && one.st_ctim.tv_sec == other.st_ctim.tv_sec
        && one.st_ctim.tv_nsec == other.st_ctim.tv_nsec;
}

} // namespace

Result<ModuleCopy> ModuleCopy::of(const QString &path)
{
    using Answer = Result<ModuleCopy>;
    const QByteArray encoded = FilePath::encode(path);
    // Opening a pipe waits for its writer unless told not to.
    const FileDescriptor file(uninterrupted(
        [&] { return ::open(encoded.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); }));
    struct stat before = {};
    struct stat after = {};
    if (!file.isOpen() || ::fstat(file.number(), &before) != 0)
        return Answer::failure(qt_error_string());
    if (!S_ISREG(before.st_mode))
        return Answer::failure(u"it is no regular file"_s);
    if (before.st_size > longest)
        return Answer::failure(u"it is larger than %1 bytes"_s.arg(longest));
    ModuleCopy copy;
    copy.m_file = makeMemory(encoded);
    if (!copy.m_file.isOpen() || !copyAll(file.number(), copy.m_file.number())
        || ::fstat(file.number(), &after) != 0)
        return Answer::failure(qt_error_string());
    if (!isSame(before, after) || ::lseek(copy.m_file.number(), 0, SEEK_CUR) != after.st_size)
        return Answer::failure(u"it is being written"_s);
    if (::fcntl(copy.m_file.number(), F_ADD_SEALS,
                F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL)
        != 0)
        return Answer::failure(qt_error_string());
    copy.m_original = {before.st_dev, before.st_ino};
    if (before.st_size == 0)
        return copy;
    void *mapped = ::mmap(nullptr, static_cast<std::size_t>(before.st_size), PROT_READ, MAP_PRIVATE,
                          copy.m_file.number(), 0);
    if (mapped == MAP_FAILED)
        return Answer::failure(qt_error_string());
    copy.m_bytes = static_cast<const char *>(mapped);
    copy.m_size = before.st_size;
    return copy;
}

ModuleCopy::ModuleCopy(ModuleCopy &&other) noexcept
    : m_file(std::move(other.m_file))
    , m_bytes(std::exchange(other.m_bytes, nullptr))
    , m_size(std::exchange(other.m_size, 0))
    , m_original(std::move(other.m_original))
{ }

ModuleCopy &ModuleCopy::operator=(ModuleCopy &&other) noexcept
{
    std::swap(m_file, other.m_file);
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_size, other.m_size);
    m_original = other.m_original;
    return *this;
}

ModuleCopy::~ModuleCopy()
{
    if (m_bytes)
        ::munmap(const_cast<char *>(m_bytes), static_cast<std::size_t>(m_size));
}
