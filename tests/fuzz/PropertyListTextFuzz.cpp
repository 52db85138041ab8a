#include "Harness.h"

#include "platform/foundation/PropertyListText.h"

#include <QString>

/// The text form, from any UTF-16, lone surrogates and all.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString asLatin1 =
        QString::fromLatin1(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QString asUtf16(static_cast<qsizetype>(size / 2), Qt::Uninitialized);
    for (qsizetype i = 0; i < asUtf16.size(); ++i)
        asUtf16[i] = QChar(data[2 * i] | data[2 * i + 1] << 8);
    for (const QString &text : {asLatin1, asUtf16}) {
        const Result<QVariant> read = PropertyListText::parse(text);
        require(read.ok() ? read.value().isValid() : !read.error().isEmpty());
    }
    return 0;
}
