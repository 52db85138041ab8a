#pragma once

#include <QMetaObject>
#include <QObject>
#include <QString>

#include <memory>

/// Classes by name, of the host and of every loaded bundle.
///
/// A class is known once its pointer type is registered, qRegisterMetaType<fileEnum *>(), and can
/// be made when its constructor without arguments is Q_INVOKABLE. Any thread.
namespace ClassRegistry {

/// Null for an unknown name.
inline const QMetaObject *metaObject(const QString &className)
{
    const QMetaType pointer = QMetaType::fromName(className.toUtf8() + '*');
    const bool isObject = pointer.isValid() && (pointer.flags() & QMetaType::PointerToQObject);
    return isObject ? pointer.metaObject() : nullptr;
}

/// A new object of the class, the caller's. Null for an unknown name, a class that cannot be made,
/// and one whose constructor throws.
inline std::unique_ptr<QObject> newInstance(const QString &className)
{
    const QMetaObject *meta = metaObject(className);
    if (!meta)
        return nullptr;
    try {
        return std::unique_ptr<QObject>(meta->newInstance());
    } catch (...) {
        return nullptr;
    }
}

} // namespace ClassRegistry
