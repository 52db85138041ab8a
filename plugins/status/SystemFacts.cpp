#include "SystemFacts.h"

#include "ReadFile.h"

#include <QSet>
#include <QStringList>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString readLine(const QString &path)
{
    // Device-tree texts end with a zero byte.
    return QString::fromUtf8(readFile(path)).remove(QChar(0)).simplified();
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

QString readModel(const QString &root)
{
    const QString dmi = root + u"/sys/class/dmi/id/"_s;
    QString vendor = readFirmware(dmi + u"sys_vendor"_s);
    QString product = readFirmware(dmi + u"product_name"_s);
    if (vendor.compare(u"LENOVO"_s, Qt::CaseInsensitive) == 0) {
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
    if (product.isEmpty() && vendor.isEmpty())
        return readLine(root + u"/proc/device-tree/model"_s);
    if (product.startsWith(vendor, Qt::CaseInsensitive))
        return product;
    return (vendor + u' ' + product).trimmed();
}

/// The value of an os-release line: shell quoting, one level.
QString unquote(QString value)
{
    value = value.trimmed();
    const bool quoted = value.size() >= 2 && (value.startsWith(u'"') || value.startsWith(u'\''))
        && value.endsWith(value[0]);
    if (!quoted)
        return value;
    const bool escapes = value.startsWith(u'"');
    QString plain;
    for (qsizetype i = 1; i + 1 < value.size(); ++i) {
        if (escapes && value[i] == u'\\' && i + 2 < value.size())
            ++i;
        plain += value[i];
    }
    return plain;
}

QString readSystem(const QString &root)
{
    QByteArray text = readFile(root + u"/etc/os-release"_s);
    if (text.isEmpty())
        text = readFile(root + u"/usr/lib/os-release"_s);
    QString name;
    for (const QByteArray &line : text.split('\n')) {
        const QString entry = QString::fromUtf8(line);
        if (entry.startsWith(u"PRETTY_NAME="_s))
            return unquote(entry.mid(12)).simplified();
        if (entry.startsWith(u"NAME="_s))
            name = unquote(entry.mid(5)).simplified();
    }
    return name;
}

void readProcessor(const QString &root, SystemFacts &facts)
{
    QSet<std::pair<QByteArray, QByteArray>> cores;
    QByteArray package;
    for (const QByteArray &line : readFile(root + u"/proc/cpuinfo"_s).split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArray key = line.left(colon).trimmed();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (key == "processor") {
            // Some ARM kernels write the model's name under "Processor", told apart by its capital.
            ++facts.threads;
            package.clear();
        } else if (key == "physical id") {
            package = value;
        } else if (key == "core id") {
            cores.insert({package, value});
        } else if (facts.processor.isEmpty()
                   && (key == "model name" || key == "cpu model" || key == "Processor"
                       || key == "uarch")) {
            facts.processor = QString::fromUtf8(value).simplified();
        }
    }
    facts.cores = cores.isEmpty() ? facts.threads : int(cores.size());
}

} // namespace

SystemFacts readSystemFacts(const QString &root)
{
    SystemFacts facts;
    const QString kernel = root + u"/proc/sys/kernel/"_s;
    facts.hostName = readLine(kernel + u"hostname"_s);
    facts.model = readModel(root);
    facts.system = readSystem(root);
    facts.kernel =
        (readLine(kernel + u"ostype"_s) + u' ' + readLine(kernel + u"osrelease"_s)).trimmed();
    readProcessor(root, facts);
    return facts;
}
