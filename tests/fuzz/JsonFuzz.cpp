#include "Harness.h"

#include "helpers/Json.h"

/// What can be read can be written, and reads back as the same; lone surrogates are texts, too.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString asUtf8 =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QString asUtf16(static_cast<qsizetype>(size / 2), Qt::Uninitialized);
    for (qsizetype i = 0; i < asUtf16.size(); ++i)
        asUtf16[i] = QChar(data[2 * i] | data[2 * i + 1] << 8);
    for (const QString &text : {asUtf8, asUtf16}) {
        const QVariant value = Json::decoded(text);
        if (!value.isValid())
            continue;
        const QString written = Json::encoded(value);
        require(!written.isNull());
        require(Json::decoded(written) == value);
    }
    return 0;
}
