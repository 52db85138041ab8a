#include "platform/foundation/ElfFile.h"

#include <QFile>

#include <cstring>

#include <elf.h>

using namespace Qt::StringLiterals;

namespace ElfFile {

namespace {

/// Holds the header and, in every module a linker makes, all program headers: one read will do.
constexpr qint64 usualHeaders = 4096;

template <typename Header>
bool copyFrom(const QByteArray &bytes, quint64 offset, Header &header)
{
    const auto size = static_cast<quint64>(bytes.size());
    if (offset > size || size - offset < sizeof header)
        return false;
    std::memcpy(&header, bytes.constData() + offset, sizeof header);
    return true;
}

} // namespace

QString problem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return file.errorString();
    QByteArray bytes = file.read(usualHeaders);
    Elf64_Ehdr header{};
    if (!copyFrom(bytes, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0
        || header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_phentsize != sizeof(Elf64_Phdr)) {
        return u"it is no 64-bit ELF file"_s;
    }
    const auto size = static_cast<quint64>(file.size());
    const quint64 tableSize = header.e_phnum * sizeof(Elf64_Phdr);
    if (header.e_phoff > size || size - header.e_phoff < tableSize)
        return u"it is cut off"_s;
    if (header.e_phoff + tableSize > static_cast<quint64>(bytes.size()))
        bytes += file.read(static_cast<qint64>(header.e_phoff + tableSize) - bytes.size());
    for (quint64 i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        if (!copyFrom(bytes, header.e_phoff + i * sizeof segment, segment))
            return u"it is cut off"_s;
        if (segment.p_type == PT_LOAD
            && (segment.p_offset > size || segment.p_filesz > size - segment.p_offset)) {
            return u"it is cut off"_s;
        }
    }
    return {};
}

} // namespace ElfFile
