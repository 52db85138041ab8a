#include "platform/foundation/ElfTables.h"

#include <unistd.h>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

struct Table
{
    qint64 address;
    qint64 size;
    quint64 entry; ///< bytes
};

constexpr Table tables[] = {
    {DT_STRTAB, DT_STRSZ, 1},
    {DT_RELA, DT_RELASZ, sizeof(Elf64_Rela)},
    {DT_JMPREL, DT_PLTRELSZ, sizeof(Elf64_Rela)},
    {DT_RELR, DT_RELRSZ, sizeof(Elf64_Relr)},
    {DT_INIT_ARRAY, DT_INIT_ARRAYSZ, sizeof(Elf64_Addr)},
    {DT_FINI_ARRAY, DT_FINI_ARRAYSZ, sizeof(Elf64_Addr)},
};

/// The loader takes these for granted, with an assertion at best.
constexpr Elf64_Dyn fixedValues[] = {
    {DT_SYMENT, {sizeof(Elf64_Sym)}},
    {DT_RELAENT, {sizeof(Elf64_Rela)}},
    {DT_RELRENT, {sizeof(Elf64_Relr)}},
    {DT_PLTREL, {DT_RELA}},
};

constexpr qint64 stringTags[] = {DT_NEEDED, DT_SONAME,    DT_RPATH, DT_RUNPATH,
                                 DT_FILTER, DT_AUXILIARY, DT_AUDIT, DT_DEPAUDIT};

/// Marks a symbol's version as one that is not linked against by default.
constexpr quint64 hiddenVersion = 0x8000;

/// Forms of relocation and compression that none of our compilers writes, and nobody has checked.
constexpr qint64 foreignTags[] = {DT_REL, DT_RELSZ, DT_RELENT, DT_PREINIT_ARRAY,
                                  DT_PREINIT_ARRAYSZ};

// The two lists of versions differ in the names of their fields only.
quint64 details(const Elf64_Verneed &one)
{
    return one.vn_aux;
}
quint64 details(const Elf64_Verdef &one)
{
    return one.vd_aux;
}
quint64 detailCount(const Elf64_Verneed &one)
{
    return one.vn_cnt;
}
quint64 detailCount(const Elf64_Verdef &one)
{
    return one.vd_cnt;
}
quint64 next(const Elf64_Verneed &one)
{
    return one.vn_next;
}
quint64 next(const Elf64_Verdef &one)
{
    return one.vd_next;
}
quint64 next(const Elf64_Vernaux &one)
{
    return one.vna_next;
}
quint64 next(const Elf64_Verdaux &one)
{
    return one.vda_next;
}

bool isPowerOfTwo(quint64 number)
{
    return number != 0 && (number & (number - 1)) == 0;
}

} // namespace

ElfTables::ElfTables(QByteArrayView file, std::vector<Elf64_Phdr> segments)
    : m_file(file)
    , m_segments(std::move(segments))
{ }

QString ElfTables::problem()
{
    if (!segmentsFit())
        return u"its segments do not fit together"_s;
    if (!readDynamic() || !tablesFit() || !stringsFit())
        return u"its dynamic section leads out of it"_s;
    if (!countSymbols() || !symbolsFit() || !versionsFit())
        return u"its table of symbols leads out of it"_s;
    if (!relocationsFit(DT_RELA, DT_RELASZ) || !relocationsFit(DT_JMPREL, DT_PLTRELSZ)
        || !packedRelocationsFit())
        return u"its relocations lead out of it"_s;
    return {};
}

/// The loaded segment that holds so many bytes at the address and has all of the flags.
const Elf64_Phdr *ElfTables::segmentOf(quint64 address, quint64 size, quint32 flags) const
{
    const auto found = std::find_if(m_segments.begin(), m_segments.end(), [&](const auto &one) {
        return one.p_type == PT_LOAD && (one.p_flags & flags) == flags && address >= one.p_vaddr
            && address - one.p_vaddr <= one.p_memsz
            && size <= one.p_memsz - (address - one.p_vaddr);
    });
    return found == m_segments.end() ? nullptr : &*found;
}

/// The bytes of the file that will lie at the address; null when not all of them do.
const char *ElfTables::at(quint64 address, quint64 size) const
{
    const Elf64_Phdr *segment = segmentOf(address, size, 0);
    if (!segment)
        return nullptr;
    const quint64 offset = address - segment->p_vaddr;
    if (offset > segment->p_filesz || size > segment->p_filesz - offset)
        return nullptr;
    return m_file.data() + segment->p_offset + offset;
}

const Elf64_Dyn *ElfTables::find(qint64 tag) const
{
    // As the loader: the last of a tag counts.
    const auto found = std::find_if(m_dynamic.rbegin(), m_dynamic.rend(),
                                    [&](const auto &one) { return one.d_tag == tag; });
    return found == m_dynamic.rend() ? nullptr : &*found;
}

quint64 ElfTables::value(qint64 tag) const
{
    const Elf64_Dyn *entry = find(tag);
    return entry ? entry->d_un.d_val : 0;
}

bool ElfTables::segmentsFit() const
{
    constexpr quint64 largest = quint64(1) << 40; // beyond what any module can be
    quint64 end = 0;
    for (const Elf64_Phdr &one : m_segments) {
        if (one.p_type == PT_LOAD) {
            if (one.p_vaddr < end || one.p_vaddr > largest || one.p_memsz > largest
                || one.p_filesz > one.p_memsz || !isPowerOfTwo(one.p_align)
                || (one.p_vaddr - one.p_offset) % one.p_align != 0)
                return false;
            end = one.p_vaddr + one.p_memsz;
        }
    }
    return std::all_of(m_segments.begin(), m_segments.end(), [this](const Elf64_Phdr &one) {
        switch (one.p_type) {
        case PT_DYNAMIC:
            // The loader writes into it, unless it says itself that nobody may.
            return segmentOf(one.p_vaddr, one.p_memsz, PF_R | (one.p_flags & PF_W)) != nullptr;
        case PT_GNU_RELRO:
            return protectedPartFits(one);
        case PT_TLS:
            return one.p_filesz <= one.p_memsz && (one.p_align == 0 || isPowerOfTwo(one.p_align))
                && at(one.p_vaddr, one.p_filesz) != nullptr;
        case PT_NOTE:
        case PT_GNU_PROPERTY:
            return at(one.p_vaddr, std::max(one.p_filesz, one.p_memsz)) != nullptr;
        default:
            return true;
        }
    });
}

/// The loader makes its whole pages unwritable once all is bound. Some linkers have it go on to the
/// end of the segment's last page.
bool ElfTables::protectedPartFits(const Elf64_Phdr &part) const
{
    const auto page = static_cast<quint64>(::getpagesize());
    const Elf64_Phdr *segment = segmentOf(part.p_vaddr, 0, PF_W);
    if (!segment || part.p_memsz > ~part.p_vaddr)
        return false;
    const quint64 end = (part.p_vaddr + part.p_memsz) / page * page;
    const auto next = std::find_if(m_segments.begin(), m_segments.end(), [&](const auto &one) {
        return one.p_type == PT_LOAD && one.p_vaddr > segment->p_vaddr;
    });
    const quint64 last = segment->p_vaddr + segment->p_memsz;
    return end <= (next == m_segments.end() ? (last + page - 1) : next->p_vaddr) / page * page;
}

bool ElfTables::readDynamic()
{
    const auto isDynamic = [](const Elf64_Phdr &one) { return one.p_type == PT_DYNAMIC; };
    if (std::count_if(m_segments.begin(), m_segments.end(), isDynamic) != 1)
        return false;
    m_dynamicSegment = *std::find_if(m_segments.begin(), m_segments.end(), isDynamic);
    for (quint64 i = 0; i < m_dynamicSegment.p_memsz / sizeof(Elf64_Dyn); ++i) {
        const quint64 place = m_dynamicSegment.p_vaddr + i * sizeof(Elf64_Dyn);
        if (!at(place, sizeof(Elf64_Dyn)))
            return false;
        const auto entry = read<Elf64_Dyn>(place);
        if (entry.d_tag == DT_NULL)
            return true;
        m_dynamic.push_back(entry);
    }
    return false;
}

bool ElfTables::tablesFit() const
{
    for (const Table &table : tables) {
        const quint64 size = value(table.size);
        if (has(table.address) != has(table.size) || size % table.entry != 0
            || (has(table.address) && !at(value(table.address), size)))
            return false;
    }
    for (const Elf64_Dyn &fixed : fixedValues) {
        if (has(fixed.d_tag) && value(fixed.d_tag) != fixed.d_un.d_val)
            return false;
    }
    if (has(DT_JMPREL) != has(DT_PLTREL) || (has(DT_RELA) && !has(DT_RELAENT)))
        return false;
    for (const qint64 tag : {DT_INIT, DT_FINI}) {
        if (has(tag) && !segmentOf(value(tag), 1, PF_X))
            return false;
    }
    if (has(DT_PLTGOT) && !segmentOf(value(DT_PLTGOT), 3 * sizeof(Elf64_Addr), PF_W))
        return false;
    return std::none_of(std::begin(foreignTags), std::end(foreignTags),
                        [this](qint64 tag) { return has(tag); });
}

bool ElfTables::stringsFit() const
{
    const quint64 size = value(DT_STRSZ);
    const char *strings = size ? at(value(DT_STRTAB), size) : nullptr;
    // With an end of its own no string runs out of the table.
    if (!strings || strings[size - 1] != '\0')
        return false;
    return std::all_of(m_dynamic.begin(), m_dynamic.end(), [&](const Elf64_Dyn &entry) {
        return std::find(std::begin(stringTags), std::end(stringTags), entry.d_tag)
            == std::end(stringTags)
            || entry.d_un.d_val < size;
    });
}

bool ElfTables::countSymbols()
{
    return has(DT_SYMTAB) && (has(DT_GNU_HASH) || has(DT_HASH))
        && (!has(DT_GNU_HASH) || countByGnuHash()) && (!has(DT_HASH) || countBySysvHash())
        && at(value(DT_SYMTAB), m_symbols * sizeof(Elf64_Sym));
}

/// As many symbols as there are up to the last one that a relocation names.
quint64 ElfTables::relocated(qint64 table, qint64 size) const
{
    quint64 symbols = 0;
    for (quint64 i = 0; i < value(size) / sizeof(Elf64_Rela); ++i) {
        const auto one = read<Elf64_Rela>(value(table) + i * sizeof(Elf64_Rela));
        symbols = std::max<quint64>(symbols, ELF64_R_SYM(one.r_info) + 1);
    }
    return symbols;
}

bool ElfTables::countByGnuHash()
{
    struct Header
    {
        quint32 buckets, firstSymbol, bloomWords, bloomShift;
    };
    const quint64 table = value(DT_GNU_HASH);
    const auto header = read<Header>(table);
    const quint64 buckets = table + sizeof header + quint64(header.bloomWords) * 8;
    const quint64 chains = buckets + quint64(header.buckets) * 4;
    if (header.buckets == 0 || !isPowerOfTwo(header.bloomWords) || header.bloomShift >= 64
        || !at(table, chains - table))
        return false;
    quint32 last = 0;
    for (quint64 i = 0; i < header.buckets; ++i) {
        const auto bucket = read<quint32>(buckets + i * 4);
        if (bucket != 0 && bucket < header.firstSymbol)
            return false;
        last = std::max(last, bucket);
    }
    m_symbols = header.firstSymbol;
    if (last == 0) { // nothing is exported, and of what is imported the table says nothing
        m_symbols =
            std::max({m_symbols, relocated(DT_RELA, DT_RELASZ), relocated(DT_JMPREL, DT_PLTRELSZ)});
        return true;
    }
    // The lowest bit ends a chain. Where the last chain ends, all others have ended.
    for (quint64 symbol = last;; ++symbol) {
        const quint64 place = chains + (symbol - header.firstSymbol) * 4;
        if (!at(place, 4))
            return false;
        m_symbols = symbol + 1;
        if (read<quint32>(place) & 1)
            return true;
    }
}

bool ElfTables::countBySysvHash()
{
    const quint64 table = value(DT_HASH);
    const quint64 buckets = read<quint32>(table);
    const quint64 chains = read<quint32>(table + 4);
    if (buckets == 0 || !at(table, (2 + buckets + chains) * 4))
        return false;
    m_symbols = std::max(m_symbols, chains);
    for (quint64 i = 0; i < buckets; ++i) {
        quint64 steps = 0;
        for (quint32 next = read<quint32>(table + (2 + i) * 4); next != 0;
             next = read<quint32>(table + (2 + buckets + next) * 4)) {
            if (next >= chains || ++steps > chains)
                return false; // out of the table, or round in a circle
        }
    }
    return true;
}

bool ElfTables::symbolsFit() const
{
    for (quint64 i = 0; i < m_symbols; ++i) {
        const auto symbol = read<Elf64_Sym>(value(DT_SYMTAB) + i * sizeof(Elf64_Sym));
        const int type = ELF64_ST_TYPE(symbol.st_info);
        if (symbol.st_name >= value(DT_STRSZ))
            return false;
        if (symbol.st_shndx == SHN_UNDEF || symbol.st_shndx == SHN_ABS || type == STT_TLS)
            continue;
        if (!segmentOf(symbol.st_value, 0, type == STT_GNU_IFUNC ? PF_X : 0))
            return false;
    }
    return true;
}

template <typename Entry, typename Detail, typename Check>
bool ElfTables::versionListFits(qint64 list, qint64 count, const Check &fits) const
{
    // The loader reads the first of each kind, whatever their number is said to be.
    if (has(list) != has(count) || (has(list) && (value(count) == 0 || !has(DT_VERSYM))))
        return false;
    quint64 place = value(list);
    for (quint64 i = 0; i < value(count); ++i) {
        const auto entry = read<Entry>(place);
        if (!at(place, sizeof entry) || detailCount(entry) == 0)
            return false;
        quint64 detail = place + details(entry);
        for (quint64 k = 0; k < detailCount(entry); ++k) {
            const auto one = read<Detail>(detail);
            // The loader follows the chain, not the number.
            if (!at(detail, sizeof one) || !fits(entry, one)
                || (next(one) == 0) != (k + 1 == detailCount(entry)))
                return false;
            detail += next(one);
        }
        if ((next(entry) == 0) != (i + 1 == value(count)))
            return false;
        place += next(entry);
    }
    return true;
}

bool ElfTables::versionsFit() const
{
    quint64 highest = VER_NDX_GLOBAL;
    const auto known = [&highest](quint64 version) {
        highest = std::max(highest, version & ~hiddenVersion);
        return true;
    };
    const quint64 strings = value(DT_STRSZ);
    const QList<QByteArray> needed = this->strings(DT_NEEDED);
    const bool listsFit =
        versionListFits<Elf64_Verneed, Elf64_Vernaux>(
            DT_VERNEED, DT_VERNEEDNUM,
            [&](const Elf64_Verneed &need, const Elf64_Vernaux &version) {
                // The loader asserts that the library is there.
                return need.vn_version == VER_NEED_CURRENT && need.vn_file < strings
                    && needed.contains(QByteArray(at(value(DT_STRTAB) + need.vn_file, 1)))
                    && version.vna_name < strings && known(version.vna_other);
            })
        && versionListFits<Elf64_Verdef, Elf64_Verdaux>(
            DT_VERDEF, DT_VERDEFNUM, [&](const Elf64_Verdef &version, const Elf64_Verdaux &name) {
                return version.vd_version == VER_DEF_CURRENT && name.vda_name < strings
                    && known(version.vd_ndx);
            });
    if (!has(DT_VERSYM))
        return listsFit;
    const quint64 versions = value(DT_VERSYM);
    if (!listsFit || !at(versions, m_symbols * sizeof(Elf64_Versym)))
        return false;
    for (quint64 i = 0; i < m_symbols; ++i) {
        if ((read<Elf64_Versym>(versions + i * sizeof(Elf64_Versym)) & ~hiddenVersion) > highest)
            return false;
    }
    return true;
}

bool ElfTables::relocationsFit(qint64 table, qint64 size) const
{
    const quint64 count = value(size) / sizeof(Elf64_Rela);
    [[maybe_unused]] const quint64 relativeOnes = table == DT_RELA ? value(DT_RELACOUNT) : 0;
    const quint32 writable = has(DT_TEXTREL) ? 0 : PF_W;
    if (relativeOnes > count)
        return false;
    for (quint64 i = 0; i < count; ++i) {
        const auto one = read<Elf64_Rela>(value(table) + i * sizeof(Elf64_Rela));
        const quint64 type = ELF64_R_TYPE(one.r_info);
#ifdef __x86_64__
        // The first copies as much as a symbol claims to be long, the next calls what it points at,
        // and the loader asserts that those at the start are of a kind.
        if (type == R_X86_64_COPY
            || (type == R_X86_64_IRELATIVE
                && !segmentOf(static_cast<quint64>(one.r_addend), 1, PF_X))
            || (type != R_X86_64_RELATIVE && i < relativeOnes))
            return false;
#endif
        if (type == R_X86_64_NONE)
            continue;
        if (ELF64_R_SYM(one.r_info) >= m_symbols || !isRelocatable(one.r_offset, writable))
            return false;
    }
    return true;
}

/// Addresses, and after each the bits of the 63 words that follow it or the bits before.
bool ElfTables::packedRelocationsFit() const
{
    constexpr quint64 word = sizeof(Elf64_Addr);
    constexpr int bits = 63;
    const quint64 count = value(DT_RELRSZ) / sizeof(Elf64_Relr);
    const quint32 writable = has(DT_TEXTREL) ? 0 : PF_W;
    quint64 place = 0;
    for (quint64 i = 0; i < count; ++i) {
        const auto entry = read<Elf64_Relr>(value(DT_RELR) + i * sizeof(Elf64_Relr));
        if ((entry & 1) == 0) {
            if (!isRelocatable(entry, writable))
                return false;
            place = entry + word;
            continue;
        }
        for (int bit = 0; bit < bits; ++bit) {
            if ((entry >> (bit + 1) & 1) != 0
                && !isRelocatable(place + static_cast<quint64>(bit) * word, writable))
                return false;
        }
        place += bits * word;
    }
    return true;
}

bool ElfTables::isRelocatable(quint64 address, quint32 flags) const
{
    const bool hitsDynamic = address + sizeof(Elf64_Addr) > m_dynamicSegment.p_vaddr
        && address < m_dynamicSegment.p_vaddr + m_dynamicSegment.p_memsz;
    return !hitsDynamic && segmentOf(address, sizeof(Elf64_Addr), flags);
}

QList<QByteArray> ElfTables::strings(qint64 tag) const
{
    QList<QByteArray> found;
    for (const Elf64_Dyn &entry : m_dynamic) {
        if (entry.d_tag == tag)
            found << QByteArray(at(value(DT_STRTAB) + entry.d_un.d_val, 1));
    }
    return found;
}
