#pragma once

#include "platform/foundation/Result.h"

#include <QStringView>
#include <QVariant>

/// The text form of property lists. All scalars are QString, except data in angle brackets.
namespace PropertyListText {

Result<QVariant> parse(QStringView text);

} // namespace PropertyListText
