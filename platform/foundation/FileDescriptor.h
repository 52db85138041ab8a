#pragma once

#include <QByteArrayView>

#include <unistd.h>

#include <cerrno>
#include <utility>

/// Owns an open file descriptor, or none.
class FileDescriptor
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int number)
        : m_number(number)
    { }
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_number(std::exchange(other.m_number, -1))
    { }
    FileDescriptor &operator=(FileDescriptor &&other) noexcept
    {
        std::swap(m_number, other.m_number);
        other.reset();
        return *this;
    }
    ~FileDescriptor() { reset(); }

    bool isOpen() const { return m_number >= 0; }
    /// Negative when there is none.
    int number() const { return m_number; }

    /// Leaves errno alone, which may tell of the call before.
    void reset()
    {
        const int number = std::exchange(m_number, -1);
        const int error = errno;
        if (number >= 0)
            ::close(number);
        errno = error;
    }

    /// Closes and answers whether all that was written has been taken. On Linux the descriptor is
    /// gone even when it has not.
    bool close() { return ::close(std::exchange(m_number, -1)) == 0; }

private:
    int m_number = -1;
};

/// Makes a system call again as long as signals interrupt it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// All of it, at the descriptor's place; false, with errno, when that failed on the way.
inline bool writeAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t count = uninterrupted(
            [&] { return ::write(descriptor, bytes.data(), static_cast<size_t>(bytes.size())); });
        if (count == 0)
            errno = EIO;
        if (count <= 0)
            return false;
        bytes = bytes.sliced(count);
    }
    return true;
}
