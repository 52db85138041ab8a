#pragma once

#include <QByteArrayView>
#include <QList>
#include <QString>

#include <cstring>
#include <vector>

#include <elf.h>

/// What a module's file tells the loader, and what the loader believes without a look (ELF-64,
/// System V ABI and its GNU extensions). Any thread.
class ElfTables
{
public:
    /// @param file the whole file. @param segments its program headers, already known to lie in it.
    ElfTables(QByteArrayView file, std::vector<Elf64_Phdr> segments);

    /// Why the loader would read or write outside of the module with these tables; null when it
    /// would not.
    QString problem();

    /// The strings of that tag in the dynamic section, in order. Only after problem() found none.
    QList<QByteArray> strings(qint64 tag) const;

private:
    template <typename T>
    T read(quint64 address) const
    {
        T value{};
        if (const char *bytes = at(address, sizeof value))
            std::memcpy(&value, bytes, sizeof value);
        return value;
    }
    const char *at(quint64 address, quint64 size) const;
    const Elf64_Phdr *segmentOf(quint64 address, quint64 size, quint32 flags) const;
    bool has(qint64 tag) const { return find(tag) != nullptr; }
    const Elf64_Dyn *find(qint64 tag) const;
    quint64 value(qint64 tag) const;

    bool segmentsFit() const;
    bool protectedPartFits(const Elf64_Phdr &part) const;
    bool readDynamic();
    bool tablesFit() const;
    bool stringsFit() const;
    bool countSymbols();
    quint64 relocated(qint64 table, qint64 size) const;
    bool countByGnuHash();
    bool countBySysvHash();
    bool symbolsFit() const;
    bool versionsFit() const;
    template <typename Entry, typename Detail, typename Check>
    bool versionListFits(qint64 list, qint64 count, const Check &fits) const;
    bool relocationsFit(qint64 table, qint64 size) const;
    bool packedRelocationsFit() const;
    bool isRelocatable(quint64 address, quint32 flags) const;

    QByteArrayView m_file;
    std::vector<Elf64_Phdr> m_segments;
    std::vector<Elf64_Dyn> m_dynamic;
    Elf64_Phdr m_dynamicSegment{};
    quint64 m_symbols = 0;
};
