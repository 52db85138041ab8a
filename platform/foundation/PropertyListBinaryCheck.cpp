#include "platform/foundation/PropertyListBinaryCheck.h"

#include "platform/foundation/PropertyListLimits.h"

#include <QList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;

enum class State : quint8 { Unseen, Open, Done };

/// What an object stands for, with all that it refers to.
struct Extent
{
    State state = State::Unseen;
    int depth = 1;
    quint64 values = 1;
    quint64 bytes = 0;
};

struct Object
{
    bool valid = false;
    bool isString = false;
    bool isWide = false;    ///< UTF-16
    quint64 payload = 0;    ///< bytes of a scalar
    quint64 references = 0; ///< number of references, keys first in a dictionary
    quint64 keys = 0;
    quint64 firstReference = 0; ///< where they, or the payload, begin
};

class BinaryCheck
{
public:
    explicit BinaryCheck(const QByteArray &data)
        : m_data(data)
    { }

    QString problem()
    {
        if (!readTrailer())
            return u"the trailer does not fit the data"_s;
        m_extents.resize(static_cast<qsizetype>(m_objectCount));
        return walk();
    }

private:
    const QByteArray &m_data;
    quint64 m_offsetSize = 0;
    quint64 m_referenceSize = 0;
    quint64 m_objectCount = 0;
    quint64 m_root = 0;
    quint64 m_table = 0; ///< where the offsets begin, and the objects end
    QList<Extent> m_extents;

    /// Big-endian; the caller has checked the bounds.
    quint64 number(quint64 position, quint64 size) const
    {
        quint64 value = 0;
        for (quint64 i = 0; i < size; ++i)
            value = value << 8 | static_cast<quint8>(m_data[static_cast<qsizetype>(position + i)]);
        return value;
    }

    bool readTrailer()
    {
        const auto size = static_cast<quint64>(m_data.size());
        if (size < headerSize + trailerSize + 2)
            return false;
        const quint64 trailer = size - trailerSize;
        m_offsetSize = number(trailer + 6, 1);
        m_referenceSize = number(trailer + 7, 1);
        m_objectCount = number(trailer + 8, 8);
        m_root = number(trailer + 16, 8);
        m_table = number(trailer + 24, 8);
        return m_offsetSize >= 1 && m_offsetSize <= 8 && m_referenceSize >= 1
            && m_referenceSize <= 8 && m_table > headerSize && m_table < trailer
            && m_objectCount >= 1 && m_objectCount <= (trailer - m_table) / m_offsetSize
            && m_root < m_objectCount;
    }

    Object object(quint64 index) const
    {
        Object result;
        quint64 position = number(m_table + index * m_offsetSize, m_offsetSize);
        if (position < headerSize || position >= m_table)
            return result;
        const quint64 marker = number(position++, 1);
        const quint64 type = marker >> 4;
        quint64 count = marker & 0xf;
        if (type >= 4 && type != 8 && count == 0xf) {
            // The count is an integer object of its own.
            const quint64 size = position < m_table ? number(position, 1) : 0xff;
            if (size < 0x10 || size > 0x13 || (1U << (size & 3)) > m_table - position - 1)
                return result;
            count = number(position + 1, 1U << (size & 3));
            position += 1 + (1U << (size & 3));
        }
        const quint64 room = m_table - position;
        // Before anything is computed from it. In null and the booleans it is no count.
        if (type != 0 && count > room)
            return result;
        switch (type) {
        case 0x0: // null, false, true
            break;
        case 0x1: // integer
        case 0x2: // real
            result.payload = count <= 4 ? quint64(1) << count : room + 1;
            break;
        case 0x3: // date
            result.payload = 8;
            break;
        case 0x6: // UTF-16
            result.payload = 2 * count;
            break;
        case 0x8: // uid
            result.payload = count + 1;
            break;
        case 0x4: // data
        case 0x5: // ASCII
            result.payload = count;
            break;
        case 0xa: // array
            result.references = count;
            break;
        case 0xd: // dictionary
            result.references = 2 * count;
            result.keys = count;
            break;
        default:
            return result;
        }
        result.isString = type == 5 || type == 6;
        result.isWide = type == 6;
        result.firstReference = position;
        result.valid = result.payload <= room && result.references <= room / m_referenceSize;
        return result;
    }

    /// libplist ends the program over a key with a zero character.
    bool isKey(quint64 index) const
    {
        const Object key = object(index);
        if (!key.isString)
            return false;
        const quint64 width = key.isWide ? 2 : 1;
        for (quint64 i = 0; i < key.payload; i += width) {
            if (number(key.firstReference + i, width) == 0)
                return false;
        }
        return true;
    }

    /// Depth first without recursion: an object is measured when all it refers to is.
    QString walk()
    {
        struct Visit
        {
            quint64 index;
            Object object;
            quint64 next = 0;
        };
        QList<Visit> path;
        const auto enter = [&](quint64 index) {
            path.append({index, object(index)});
            m_extents[static_cast<qsizetype>(index)].state = State::Open;
            return path.last().object.valid;
        };
        if (!enter(m_root))
            return damaged(m_root);
        while (!path.isEmpty()) {
            Visit &visit = path.last();
            Extent &extent = m_extents[static_cast<qsizetype>(visit.index)];
            if (visit.next == visit.object.references) {
                extent.bytes += visit.object.payload;
                extent.state = State::Done;
                path.removeLast();
                continue;
            }
            const quint64 child =
                number(visit.object.firstReference + visit.next * m_referenceSize, m_referenceSize);
            if (child >= m_objectCount)
                return damaged(visit.index);
            const Extent &inner = m_extents[static_cast<qsizetype>(child)];
            if (inner.state == State::Open)
                return u"object %1 contains itself"_s.arg(child);
            if (inner.state == State::Unseen) {
                if (path.size() >= PropertyListLimits::depth)
                    return tooDeep();
                if (!enter(child))
                    return damaged(child);
                continue;
            }
            if (visit.next < visit.object.keys && !isKey(child))
                return u"a key of object %1 is no text"_s.arg(visit.index);
            ++visit.next;
            extent.depth = std::max(extent.depth, inner.depth + 1);
            extent.values += inner.values;
            extent.bytes += inner.bytes;
            // Checked at every step, so that the sums cannot overflow.
            if (extent.depth > PropertyListLimits::depth)
                return tooDeep();
            if (extent.values > PropertyListLimits::values
                || extent.bytes > PropertyListLimits::bytes)
                return u"it stands for more than %1 values or %2 bytes"_s
                    .arg(PropertyListLimits::values)
                    .arg(PropertyListLimits::bytes);
        }
        return {};
    }

    static QString damaged(quint64 index) { return u"object %1 is damaged"_s.arg(index); }
    static QString tooDeep()
    {
        return u"it is deeper than %1 levels"_s.arg(PropertyListLimits::depth);
    }
};

} // namespace

QString PropertyListBinaryCheck::problem(const QByteArray &data)
{
    return BinaryCheck(data).problem();
}
