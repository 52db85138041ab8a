#include "Harness.h"

#include "platform/foundation/PropertyList.h"
#include "platform/foundation/PropertyListLimits.h"

static int depthOf(const QVariant &value)
{
    int deepest = 0;
    if (value.typeId() == QMetaType::QVariantMap) {
        for (const QVariant &entry : value.toMap())
            deepest = qMax(deepest, depthOf(entry));
    } else if (value.typeId() == QMetaType::QVariantList) {
        for (const QVariant &entry : value.toList())
            deepest = qMax(deepest, depthOf(entry));
    }
    return deepest + 1;
}

/// The three forms, told apart by how they begin.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const Result<QVariant> read = PropertyList::parse(
        QByteArray(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)));
    if (read.ok()) {
        require(read.value().isValid());
        require(depthOf(read.value()) <= PropertyListLimits::depth + 1);
    } else {
        require(!read.error().isEmpty());
        require(!read.error().contains(u'\n'));
    }
    return 0;
}
