#pragma once

#include "platform/foundation/Snapshots.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QString>

/// Objects that the host and its plugins share by name. None is owned; a name goes with its object.
class SharedObjects
{
public:
    /// Replaces what had the name; null removes the name. On another thread than the main one it
    /// waits for that.
    void set(const QString &name, QObject *object);
    void clear() { m_objects.replace({}); }
    /// Null for an unknown name and for an object that is gone. Any thread, and without waiting;
    /// that the object lives for as long as the answer is used is its owner's affair.
    QObject *object(const QString &name) const;

private:
    /// The pointers are never changed once they are in a snapshot, and are safe to look at while
    /// their objects go.
    Snapshots<QHash<QString, QPointer<QObject>>> m_objects;
};
