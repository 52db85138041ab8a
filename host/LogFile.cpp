#include "host/LogFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace LogFile {

QString line(const QString &message, const QDateTime &time, const QLocale &locale)
{
    QString text = message;
    text.remove(u" NULL"_s);
    return locale.toString(time.date(), QLocale::ShortFormat) + u' '
        + locale.toString(time.time(), QLocale::ShortFormat) + u' ' + text + u'\n';
}

bool append(const QString &path, const QString &line)
{
    if (!QDir().mkpath(QFileInfo(path).path()))
        return false;
    QFile file(path);
    const QByteArray data = line.toUtf8();
    return file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)
        && file.write(data) == data.size();
}

} // namespace LogFile
