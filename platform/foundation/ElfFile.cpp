#include "platform/foundation/ElfFile.h"

#include "platform/foundation/ElfTables.h"

using namespace Qt::StringLiterals;

namespace {

/// Of a file whose header was found to be right.
std::vector<Elf64_Phdr> segmentsOf(QByteArrayView file)
{
    Elf64_Ehdr header{};
    std::memcpy(&header, file.data(), sizeof header);
    std::vector<Elf64_Phdr> segments(header.e_phnum);
    if (!segments.empty())
        std::memcpy(segments.data(), file.data() + header.e_phoff,
                    segments.size() * sizeof(Elf64_Phdr));
    return segments;
}

constexpr std::size_t padded(std::size_t size)
{
    return (size + 3) / 4 * 4;
}

} // namespace

QString ElfFile::problem(QByteArrayView file)
{
    Elf64_Ehdr header{};
    const auto size = static_cast<quint64>(file.size());
    if (size >= sizeof header)
        std::memcpy(&header, file.data(), sizeof header);
    if (std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_ident[EI_CLASS] != ELFCLASS64
        || header.e_phentsize != sizeof(Elf64_Phdr)) {
        return u"it is no 64-bit ELF file"_s;
    }
    if (header.e_phoff > size || size - header.e_phoff < header.e_phnum * sizeof(Elf64_Phdr))
        return u"it is cut off"_s;
    std::vector<Elf64_Phdr> segments = segmentsOf(file);
    for (const Elf64_Phdr &segment : segments) {
        if (segment.p_type == PT_LOAD
            && (segment.p_offset > size || segment.p_filesz > size - segment.p_offset)) {
            return u"it is cut off"_s;
        }
    }
    return ElfTables(file, std::move(segments)).problem();
}

QByteArrayView ElfFile::note(QByteArrayView file, QByteArrayView owner, quint32 type)
{
    const auto size = static_cast<quint64>(file.size());
    const std::size_t start = sizeof(Elf64_Nhdr) + padded(static_cast<std::size_t>(owner.size()));
    for (const Elf64_Phdr &segment : segmentsOf(file)) {
        if (segment.p_type != PT_NOTE || segment.p_offset > size
            || segment.p_filesz > size - segment.p_offset)
            continue;
        const QByteArrayView notes(file.data() + segment.p_offset,
                                   static_cast<qsizetype>(segment.p_filesz));
        // Not from note to note: linkers differ in how far apart they put them.
        for (std::size_t at = 0; at + start <= segment.p_filesz; at += 4) {
            Elf64_Nhdr header{};
            std::memcpy(&header, notes.data() + at, sizeof header);
            const char *name = notes.data() + at + sizeof header;
            if (header.n_type == type && header.n_namesz == static_cast<quint64>(owner.size())
                && header.n_descsz <= segment.p_filesz - at - start
                && QByteArrayView(name, owner.size()) == owner)
                return {notes.data() + at + start, static_cast<qsizetype>(header.n_descsz)};
        }
    }
    return {};
}

ElfFile::Libraries ElfFile::libraries(QByteArrayView file)
{
    ElfTables tables(file, segmentsOf(file));
    if (!tables.problem().isNull())
        return {};
    QList<QByteArray> folders = tables.strings(DT_RUNPATH);
    if (folders.isEmpty())
        folders = tables.strings(DT_RPATH);
    return {tables.strings(DT_NEEDED), folders.isEmpty() ? folders : folders.last().split(':')};
}
