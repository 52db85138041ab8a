#pragma once

#include "platform/foundation/Selector.h"

#include <QByteArray>
#include <QVariantList>

class QObject;

/// Calls by written name, through the receiver's meta-object.
namespace perform {

/// The C++ method name that a selector stands for: "tbPressed" for "tbPressed:",
/// "sourceListItemHasIcon" for "sourceList:itemHasIcon:".
QByteArray methodName(const Selector &selector);

/// Whether the object has a slot or Q_INVOKABLE method for the selector. False for null.
bool responds(const QObject *receiver, const Selector &selector);

/// Calls the method on the calling thread and answers whether there was one to call. Arguments are
/// converted to the method's parameter types; a method whose parameters cannot take them is not
/// called. What the method throws reaches the caller.
bool send(QObject *receiver, const Selector &selector, const QVariantList &arguments = {});

/// send() for callers that must not be disturbed: what the method throws ends in the
/// system log.
bool sendQuietly(QObject *receiver, const Selector &selector,
                 const QVariantList &arguments = {}) noexcept;

} // namespace perform
