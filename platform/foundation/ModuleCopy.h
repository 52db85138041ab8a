#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/Result.h"

#include <QByteArrayView>
#include <QString>

#include <utility>

#include <sys/types.h>

/// A module's file as it was at one moment, in memory that can be changed no more
/// (memfd_create(2)).
///
/// The loader maps files, and whoever writes into a mapped one, as cp does, changes or cuts the
/// code of the process that runs it. Any thread.
class ModuleCopy
{
public:
    /// Fails for what is no regular file, is larger than any module, or is being written.
    static Result<ModuleCopy> of(const QString &path);

    ModuleCopy(ModuleCopy &&other) noexcept;
    ModuleCopy &operator=(ModuleCopy &&other) noexcept;
    ~ModuleCopy();

    QByteArrayView bytes() const { return {m_bytes, m_size}; }
    /// Of the memory; the copy keeps owning it.
    int descriptor() const { return m_file.number(); }
    /// Of the file it was made of.
    std::pair<dev_t, ino_t> original() const { return m_original; }

private:
    ModuleCopy() = default;

    FileDescriptor m_file;
    const char *m_bytes = nullptr;
    qsizetype m_size = 0;
    std::pair<dev_t, ino_t> m_original{};
};
