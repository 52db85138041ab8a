#include "platform/foundation/ElfFile.h"

#include <QFile>

#include <cstring>

#include <elf.h>

using namespace Qt::StringLiterals;

namespace ElfFile {

namespace {

template <typename Header>
bool readAt(QFile &file, quint64 offset, Header &header)
{
    return offset <= static_cast<quint64>(file.size()) && file.seek(static_cast<qint64>(offset))
        && file.read(reinterpret_cast<char *>(&header), sizeof header) == sizeof header;
}

} // namespace

QString problem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return file.errorString();
    Elf64_Ehdr header{};
    if (!readAt(file, 0, header) || std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0
        || header.e_ident[EI_CLASS] != ELFCLASS64 || header.e_phentsize != sizeof(Elf64_Phdr)) {
        return u"it is no 64-bit ELF file"_s;
    }
    const auto size = static_cast<quint64>(file.size());
    for (quint64 i = 0; i < header.e_phnum; ++i) {
        Elf64_Phdr segment{};
        if (!readAt(file, header.e_phoff + i * sizeof segment, segment))
            return u"it is cut off"_s;
        if (segment.p_type == PT_LOAD
            && (segment.p_offset > size || segment.p_filesz > size - segment.p_offset)) {
            return u"it is cut off"_s;
        }
    }
    return {};
}

} // namespace ElfFile
