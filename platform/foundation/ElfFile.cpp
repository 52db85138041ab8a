#include "platform/foundation/ElfFile.h"

#include "platform/foundation/ElfTables.h"

#include <QFile>

using namespace Qt::StringLiterals;

QString ElfFile::problem(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return file.errorString();
    Elf64_Ehdr header{};
    const auto size = static_cast<quint64>(file.size());
    const uchar *bytes = size < sizeof header ? nullptr : file.map(0, file.size());
    if (bytes)
        std::memcpy(&header, bytes, sizeof header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64
        || header.e_phentsize != sizeof(Elf64_Phdr)) {
        return u"it is no 64-bit ELF file"_s;
    }
    if (header.e_phoff > size || size - header.e_phoff < header.e_phnum * sizeof(Elf64_Phdr))
        return u"it is cut off"_s;
    std::vector<Elf64_Phdr> segments(header.e_phnum);
    std::memcpy(segments.data(), bytes + header.e_phoff, segments.size() * sizeof(Elf64_Phdr));
    for (const Elf64_Phdr &segment : segments) {
        if (segment.p_type == PT_LOAD
            && (segment.p_offset > size || segment.p_filesz > size - segment.p_offset)) {
            return u"it is cut off"_s;
        }
    }
    return ElfTables({bytes, static_cast<qsizetype>(size)}, std::move(segments)).problem();
}
