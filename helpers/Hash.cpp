#include "helpers/Hash.h"

#include <QCryptographicHash>

QString stringByHashMD5(const QString &text)
{
    if (text.isNull())
        return {};
    const QByteArray bytes = text.left(text.indexOf(QChar(u'\0'))).toUtf8();
    const QByteArray digest = QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
    return QString::fromLatin1(digest.toHex().toUpper());
}
