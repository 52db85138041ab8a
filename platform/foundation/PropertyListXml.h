#pragma once

#include "platform/foundation/Result.h"

#include <QByteArray>
#include <QVariant>

/// The XML form of property lists (XML 1.0, without declared entities and attributes), in one pass.
namespace PropertyListXml {

/// @param document in UTF-8, whatever encoding it names
Result<QVariant> parse(const QByteArray &document);

} // namespace PropertyListXml
