#pragma once

#include "platform/foundation/Result.h"

#include <QByteArray>
#include <QVariant>

/// The binary form of property lists ("bplist00"), in one pass. In this form objects refer to each
/// other by number, so that a hundred bytes can stand for more values than fit any memory, or for a
/// tree without end: the limits hold for all that a list stands for.
namespace PropertyListBinary {

Result<QVariant> parse(const QByteArray &data);

} // namespace PropertyListBinary
