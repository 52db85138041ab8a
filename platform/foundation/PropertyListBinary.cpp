#include "platform/foundation/PropertyListBinary.h"

#include "platform/foundation/PropertyListLimits.h"
#include "platform/foundation/Utf8.h"

#include <QDateTime>
#include <QHash>
#include <QStringDecoder>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr quint64 headerSize = 8;
constexpr quint64 trailerSize = 32;

enum Type : quint8 {
    Simple = 0x0,
    Integer = 0x1,
    Real = 0x2,
    Moment = 0x3,
    Data = 0x4,
    Ascii = 0x5,
    Utf16 = 0x6,
    Uid = 0x8,
    Array = 0xa,
    Dictionary = 0xd,
};

/// An object as it lies in the data.
struct Object
{
    bool valid = false;
    quint8 type = Simple;
    quint64 count = 0;      ///< of what the type is made of; what there is in place of one, without
    quint64 payload = 0;    ///< bytes of a scalar
    quint64 references = 0; ///< number of references, keys first in a dictionary
    quint64 keys = 0;
    quint64 begin = 0; ///< of them, or of the payload
};

/// What an object stands for, with all that it refers to. Shared by all who refer to it.
struct Built
{
    bool open = true; ///< what it refers to is being built
    int depth = 1;
    int values = 1;
    quint32 bytes = 0;
    QVariant value = {};
};

class BinaryReader
{
public:
    explicit BinaryReader(const QByteArray &data)
        : m_data(data)
    { }

    Result<QVariant> read()
    {
        if (!m_data.startsWith("bplist00"))
            return Result<QVariant>::failure(u"it is of an unknown version"_s);
        if (!readTrailer())
            return Result<QVariant>::failure(u"the trailer does not fit the data"_s);
        const QString problem = walk();
        return problem.isNull() ? Result<QVariant>(m_built.value(m_root).value)
                                : Result<QVariant>::failure(problem);
    }

private:
    struct Visit
    {
        quint64 index;
        Object object;
        quint64 next = 0; ///< reference
    };

    const QByteArray &m_data;
    quint64 m_offsetSize = 0;
    quint64 m_referenceSize = 0;
    quint64 m_objectCount = 0;
    quint64 m_root = 0;
    quint64 m_table = 0;           ///< where the offsets begin, and the objects end
    QHash<quint64, Built> m_built; ///< by object; only those that are referred to
    std::vector<Visit> m_path;

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
        result.type = static_cast<quint8>(marker >> 4);
        quint64 count = marker & 0xf;
        if (result.type >= Data && result.type != Uid && count == 0xf) {
            // The count is an integer object of its own.
            const quint64 size = position < m_table ? number(position, 1) : 0xff;
            if (size < 0x10 || size > 0x13 || (1U << (size & 3)) > m_table - position - 1)
                return result;
            count = number(position + 1, 1U << (size & 3));
            position += 1 + (1U << (size & 3));
        }
        const quint64 room = m_table - position;
        result.count = count;
        result.begin = position;
        // Before anything is computed from it. In the booleans it is no count.
        result.valid = result.type == Simple || count <= room;
        if (!result.valid)
            return result;
        measure(result);
        result.valid = result.valid && result.payload <= room
            && result.references <= room / m_referenceSize && fitsNumber(result);
        return result;
    }

    /// What the object's count means, by its type.
    static void measure(Object &object)
    {
        const quint64 count = object.count;
        switch (object.type) {
        case Simple:
            object.valid = count == 8 || count == 9; // false and true; null is no value
            break;
        case Integer:
            object.valid = count <= 4;
            object.payload = quint64(1) << count;
            break;
        case Real:
            object.valid = count == 2 || count == 3;
            object.payload = quint64(1) << count;
            break;
        case Moment:
            object.valid = count == 3;
            object.payload = 8;
            break;
        case Utf16:
            object.payload = 2 * count;
            break;
        case Uid:
            object.payload = count + 1;
            break;
        case Data:
        case Ascii:
            object.payload = count;
            break;
        case Array:
            object.references = count;
            break;
        case Dictionary:
            object.references = 2 * count;
            object.keys = count;
            break;
        default:
            object.valid = false;
        }
    }

    /// Sixteen bytes are for integers above the range of eight, which are signed.
    bool fitsNumber(const Object &object) const
    {
        if (object.type == Integer && object.payload == 16)
            return number(object.begin, 8) == 0;
        if (object.type == Uid)
            return object.payload <= 8
                && number(object.begin, object.payload) <= std::numeric_limits<quint32>::max();
        return true;
    }

    quint64 reference(const Object &object, quint64 index) const
    {
        return number(object.begin + index * m_referenceSize, m_referenceSize);
    }

    QVariant valueOf(const Object &object) const
    {
        const auto payload = [&] {
            return QByteArrayView(m_data).sliced(static_cast<qsizetype>(object.begin),
                                                 static_cast<qsizetype>(object.payload));
        };
        switch (object.type) {
        case Simple:
            return object.count == 9;
        case Integer:
            return integerValue(object);
        case Real:
            return realValue(object);
        case Moment:
            return dateValue(object);
        case Data:
            return payload().toByteArray();
        case Ascii:
            return textFromUtf8(payload()); // some writers mean this by it
        case Utf16: {
            QStringDecoder decoder(QStringDecoder::Utf16BE,
                                   QStringDecoder::Flag::ConvertInitialBom);
            return QString(decoder(payload()));
        }
        case Uid:
            return qulonglong(number(object.begin, object.payload));
        case Array: {
            QVariantList list;
            list.reserve(static_cast<qsizetype>(object.references));
            for (quint64 i = 0; i < object.references; ++i)
                list.append(built(object, i));
            return list;
        }
        default: {
            QVariantMap pairs;
            for (quint64 i = 0; i < object.keys; ++i)
                pairs.insert(built(object, i).toString(), built(object, object.keys + i));
            return pairs;
        }
        }
    }

    QVariant built(const Object &object, quint64 index) const
    {
        return m_built.constFind(reference(object, index))->value;
    }

    QVariant integerValue(const Object &object) const
    {
        const quint64 value = number(object.begin, object.payload);
        if (object.payload == 16 && value > quint64(std::numeric_limits<qint64>::max()))
            return qulonglong(value);
        return qlonglong(value);
    }

    double realValue(const Object &object) const
    {
        if (object.payload == 4)
            return std::bit_cast<float>(static_cast<quint32>(number(object.begin, 4)));
        return std::bit_cast<double>(number(object.begin, 8));
    }

    QVariant dateValue(const Object &object) const
    {
        static const QDateTime epoch(QDate(2001, 1, 1), QTime(0, 0), Qt::UTC);
        const double seconds = std::bit_cast<double>(number(object.begin, 8));
        constexpr double farthest = 1e14; // three million years
        return std::fabs(seconds) < farthest ? epoch.addMSecs(std::llround(seconds * 1000))
                                             : QDateTime();
    }

    bool enter(quint64 index)
    {
        m_path.push_back({index, object(index)});
        m_built.insert(index, {});
        return m_path.back().object.valid;
    }

    /// Depth first without recursion: an object is built when all it refers to is.
    QString walk()
    {
        if (!enter(m_root))
            return damaged(m_root);
        while (!m_path.empty()) {
            const Visit &visit = m_path.back();
            Built &own = m_built[visit.index];
            if (visit.next == visit.object.references) {
                own.bytes += static_cast<quint32>(visit.object.payload);
                own.value = valueOf(visit.object);
                own.open = false;
                m_path.pop_back();
                continue;
            }
            const quint64 child = reference(visit.object, visit.next);
            if (child >= m_objectCount)
                return damaged(visit.index);
            const auto inner = m_built.constFind(child);
            if (inner == m_built.cend()) {
                if (m_path.size() >= PropertyListLimits::depth)
                    return tooDeep();
                if (m_built.size() >= PropertyListLimits::values)
                    return tooMuch();
                if (!enter(child))
                    return damaged(child);
                continue;
            }
            const QString problem = take(own, *inner, child);
            if (!problem.isNull())
                return problem;
        }
        return {};
    }

    /// Counts what an object refers to next.
    QString take(Built &own, const Built &inner, quint64 child)
    {
        Visit &visit = m_path.back();
        if (inner.open)
            return u"object %1 contains itself"_s.arg(child);
        if (visit.next < visit.object.keys && inner.value.typeId() != QMetaType::QString)
            return u"a key of object %1 is no text"_s.arg(visit.index);
        ++visit.next;
        // Checked at every step, so that the sums cannot overflow.
        own.depth = std::max(own.depth, inner.depth + 1);
        own.values += inner.values;
        own.bytes += inner.bytes;
        if (own.depth > PropertyListLimits::depth)
            return tooDeep();
        if (own.values > PropertyListLimits::values || own.bytes > PropertyListLimits::bytes)
            return tooMuch();
        return {};
    }

    static QString damaged(quint64 index) { return u"object %1 is damaged"_s.arg(index); }
    static QString tooDeep()
    {
        return u"it is deeper than %1 levels"_s.arg(PropertyListLimits::depth);
    }
    static QString tooMuch()
    {
        return u"it stands for more than %1 values or %2 bytes"_s.arg(PropertyListLimits::values)
            .arg(PropertyListLimits::bytes);
    }
};

} // namespace

Result<QVariant> PropertyListBinary::parse(const QByteArray &data)
{
    return BinaryReader(data).read();
}
