#include "platform/foundation/RealMachine.h"

#include "platform/foundation/RegularFile.h"

#include <QStringList>

#include <unistd.h>

#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype longestModel = 255; // bytes
constexpr qsizetype largestText = 64 * 1024;
constexpr qsizetype largestTable = 16 * 1024 * 1024; // thousands of processors

QByteArray content(const QString &path, qsizetype limit = largestText)
{
    return RegularFile::read(path, limit).valueOr({});
}

/// A line for a person; empty for what is no text.
QString readLine(const QString &path)
{
    QByteArray bytes = content(path);
    // Device-tree texts end with a zero byte.
    if (const qsizetype end = bytes.indexOf('\0'); end >= 0)
        bytes.truncate(end);
    const QString text = QString::fromUtf8(bytes);
    return text.contains(QChar::ReplacementCharacter) ? QString() : text.simplified();
}

/// A firmware text, or nothing where the maker left the form unfilled.
QString readFirmware(const QString &path)
{
    static const QStringList unfilled = {u"to be filled by o.e.m."_s,
                                         u"default string"_s,
                                         u"system product name"_s,
                                         u"system manufacturer"_s,
                                         u"system version"_s,
                                         u"not specified"_s,
                                         u"not applicable"_s,
                                         u"o.e.m."_s,
                                         u"none"_s,
                                         u"n/a"_s,
                                         u"unknown"_s,
                                         u"invalid"_s,
                                         u"product name"_s,
                                         u"empty"_s,
                                         u"x.x"_s};
    const QString text = readLine(path);
    return unfilled.contains(text.toLower()) ? QString() : text;
}

/// The maker and the model, as DMI (SMBIOS) gives them.
QString firmwareModel(const QString &dmi)
{
    QString vendor = readFirmware(dmi + u"sys_vendor"_s);
    QString product = readFirmware(dmi + u"product_name"_s);
    if (vendor.compare("LENOVO"_L1, Qt::CaseInsensitive) == 0) {
        // Lenovo's product name is an order number; the name on the lid is the version.
        const QString version = readFirmware(dmi + u"product_version"_s);
        product = version.isEmpty() ? product : version;
        vendor = u"Lenovo"_s;
    }
    if (product.isEmpty()) {
        product = readFirmware(dmi + u"board_name"_s);
        const QString boardVendor = readFirmware(dmi + u"board_vendor"_s);
        vendor = boardVendor.isEmpty() ? vendor : boardVendor;
    }
    if (product.startsWith(vendor, Qt::CaseInsensitive))
        return product;
    return (vendor + u' ' + product).trimmed();
}

/// The value of an os-release(5) assignment: the shell's quoting, without expansions.
QString unquoted(const QString &value)
{
    QString plain;
    QChar quote;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar c = value[i];
        const bool escapes = c == u'\\' && quote != u'\'' && i + 1 < value.size()
            && (quote.isNull() || u"\"$`\\"_s.contains(value[i + 1]));
        if (escapes)
            plain += value[++i];
        else if (c == quote)
            quote = QChar();
        else if (quote.isNull() && (c == u'"' || c == u'\''))
            quote = c;
        else
            plain += c;
    }
    return plain.simplified();
}

QString distribution(const QString &root)
{
    QByteArray text = content(root + u"/etc/os-release"_s);
    if (text.isEmpty())
        text = content(root + u"/usr/lib/os-release"_s);
    QString prettyName;
    QString name;
    QString version;
    for (const QString &line : QString::fromUtf8(text).split(u'\n')) {
        const QString entry = line.trimmed();
        if (entry.startsWith("PRETTY_NAME="_L1))
            prettyName = unquoted(entry.mid(12));
        else if (entry.startsWith("NAME="_L1))
            name = unquoted(entry.mid(5));
        else if (entry.startsWith("VERSION="_L1))
            version = unquoted(entry.mid(8));
    }
    return prettyName.isEmpty() ? (name + u' ' + version).trimmed() : prettyName;
}

/// The number behind the first such key in lines of "key : number unit"; NaN without one.
double numberIn(const QByteArray &lines, const QByteArray &key)
{
    for (const QByteArray &line : lines.split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || line.left(colon).trimmed().compare(key, Qt::CaseInsensitive) != 0)
            continue;
        bool isNumber = false;
        const QByteArray written = line.mid(colon + 1).simplified();
        const double number = written.split(' ').constFirst().toDouble(&isNumber);
        if (isNumber)
            return number;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

/// Whole, and only when it says something.
std::optional<int> positive(double number)
{
    const double rounded = std::round(number);
    if (!(rounded >= 1) || rounded > std::numeric_limits<int>::max())
        return std::nullopt;
    return static_cast<int>(rounded);
}

} // namespace

RealMachineFacts::RealMachineFacts(const QString &root)
    : m_root(root)
{ }

QString RealMachineFacts::modelName() const
{
    QString model = firmwareModel(m_root + u"/sys/class/dmi/id/"_s);
    if (model.isEmpty())
        model = readLine(m_root + u"/proc/device-tree/model"_s);
    model.truncate(longestModel); // no character takes fewer bytes than units
    while (model.toUtf8().size() > longestModel)
        model.chop(model.size() > 1 && model.back().isLowSurrogate() ? 2 : 1);
    return model.isEmpty() ? QString() : model;
}

QString RealMachineFacts::osVersion() const
{
    const QString kernel = readLine(m_root + u"/proc/sys/kernel/osrelease"_s);
    QStringList parts{distribution(m_root), kernel.isEmpty() ? QString() : u"Linux "_s + kernel};
    parts.removeAll(QString());
    return parts.isEmpty() ? u"Linux"_s : parts.join(u", "_s);
}

std::optional<int> RealMachineFacts::cpuCount() const
{
    return positive(static_cast<double>(::sysconf(_SC_NPROCESSORS_ONLN)));
}

std::optional<int> RealMachineFacts::cpuSpeed() const
{
    const QByteArray highest =
        content(m_root + u"/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq"_s);
    bool isNumber = false;
    const double kilohertz = highest.trimmed().toDouble(&isNumber);
    if (const auto speed = positive(isNumber ? kilohertz / 1000 : 0))
        return speed;
    return positive(numberIn(content(m_root + u"/proc/cpuinfo"_s, largestTable), "cpu MHz"));
}

std::optional<int> RealMachineFacts::ramSize() const
{
    return positive(numberIn(content(m_root + u"/proc/meminfo"_s), "MemTotal") / 1024);
}
