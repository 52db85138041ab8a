#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

/// Text from inside a document, never null. QString::fromUtf8() takes U+FEFF at the beginning for a
/// byte order mark and drops it.
inline QString textFromUtf8(QByteArrayView bytes)
{
    return QStringDecoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom)(bytes);
}
