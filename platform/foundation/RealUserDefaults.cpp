#include "platform/foundation/RealUserDefaults.h"

#include "platform/foundation/MainThread.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace {

// An INI file knows texts only: a tag before the text says what else it was.
constexpr QLatin1StringView booleanTag = "bool:"_L1;
constexpr QLatin1StringView integerTag = "int:"_L1;
constexpr QLatin1StringView longTag = "long:"_L1;
constexpr QLatin1StringView realTag = "real:"_L1;
constexpr QLatin1StringView textTag = "text:"_L1;
constexpr QLatin1StringView tags[] = {booleanTag, integerTag, longTag, realTag, textTag};

bool hasTag(const QString &text)
{
    return std::any_of(std::begin(tags), std::end(tags),
                       [&](QLatin1StringView tag) { return text.startsWith(tag); });
}

QVariant toFile(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::Bool:
        return booleanTag + (value.toBool() ? u"true"_s : u"false"_s);
    case QMetaType::Int:
        return integerTag + QString::number(value.toInt());
    case QMetaType::LongLong:
        return longTag + QString::number(value.toLongLong());
    case QMetaType::Double:
        return realTag + QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case QMetaType::QString: {
        const QString text = value.toString();
        return hasTag(text) ? textTag + text : text;
    }
    case QMetaType::QByteArray:
        return value;
    default:
        // A map is stored with all its types; a list alone would become a list of texts.
        return QVariantMap{{QString(), value}};
    }
}

QVariant fromFile(const QVariant &stored)
{
    if (stored.typeId() == QMetaType::QVariantMap)
        return stored.toMap().value(QString());
    if (stored.typeId() != QMetaType::QString)
        return stored;
    const QString text = stored.toString();
    if (!hasTag(text))
        return text;
    const QString rest = text.section(u':', 1);
    bool ok = true;
    QVariant value = rest;
    if (text.startsWith(booleanTag))
        value = rest == "true"_L1;
    else if (text.startsWith(integerTag))
        value = rest.toInt(&ok);
    else if (text.startsWith(longTag))
        value = rest.toLongLong(&ok);
    else if (text.startsWith(realTag))
        value = rest.toDouble(&ok);
    return ok ? value : text;
}

// QSettings takes slashes for groups, and joins several into one.
QString keyInFile(const QString &key)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(key));
}

QString keyFromFile(const QString &key)
{
    return QUrl::fromPercentEncoding(key.toLatin1());
}

} // namespace

QString RealUserDefaults::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + u"/Solvane/solvane.conf"_s;
}

RealUserDefaults::RealUserDefaults(const QString &filePath)
    : m_filePath(filePath)
{
    Values values;
    const QSettings file(m_filePath, QSettings::IniFormat);
    const QStringList keys = file.allKeys();
    for (const QString &key : keys)
        values.insert(keyFromFile(key), fromFile(file.value(key)));
    m_fileIsDamaged = file.status() == QSettings::FormatError;
    m_values.replace(std::move(values));
}

RealUserDefaults::~RealUserDefaults()
{
    synchronize();
}

QVariant RealUserDefaults::value(const QString &key) const
{
    return m_values.read([&](const Values &values) { return values.value(key); });
}

QStringList RealUserDefaults::keys() const
{
    QStringList keys =
        m_values.read([](const Values &values) { return QStringList(values.keys()); });
    keys.sort();
    return keys;
}

void RealUserDefaults::setValue(const QString &key, const QVariant &value)
{
    change(key, value.isValid() ? std::optional(value) : std::nullopt);
}

void RealUserDefaults::removeValue(const QString &key)
{
    change(key, std::nullopt);
}

void RealUserDefaults::change(const QString &key, const std::optional<QVariant> &value)
{
    if (key.isEmpty())
        return;
    if (qApp && !MainThread::isCurrent())
        return MainThread::runAndWait([&] { change(key, value); });
    Values values = m_values.latest();
    if (value)
        values.insert(key, *value);
    else if (!values.remove(key))
        return;
    m_pending.insert(key, value);
    m_values.replace(std::move(values));
}

bool RealUserDefaults::synchronize()
{
    bool written = false;
    if (qApp && !MainThread::isCurrent())
        MainThread::runAndWait([&] { written = write(); });
    else
        written = write();
    return written;
}

bool RealUserDefaults::keepDamagedFile()
{
    if (!m_fileIsDamaged)
        return true;
    const QString kept = m_filePath + u".damaged"_s;
    if (!QFile::exists(kept) && !QFile::copy(m_filePath, kept))
        return false;
    m_fileIsDamaged = false;
    return true;
}

bool RealUserDefaults::write()
{
    if (m_pending.isEmpty())
        return true;
    if (!QDir().mkpath(QFileInfo(m_filePath).path()) || !keepDamagedFile())
        return false;
    // A file object of its own for every try: one that failed keeps saying so.
    QSettings file(m_filePath, QSettings::IniFormat);
    for (auto entry = m_pending.cbegin(); entry != m_pending.cend(); ++entry) {
        if (entry.value())
            file.setValue(keyInFile(entry.key()), toFile(*entry.value()));
        else
            file.remove(keyInFile(entry.key()));
    }
    file.sync();
    if (file.status() == QSettings::AccessError)
        return false;
    m_pending.clear();
    return true;
}
