#pragma once

#include "platform/foundation/Dictionary.h"
#include "platform/foundation/Selector.h"

#include <QObject>
#include <QPointer>

#include <vector>

/// What an observer is told: the name, who posted it, and whatever goes with it.
struct Notification
{
    QString name;
    QPointer<QObject> object; ///< Null when posted without one, or when the poster is gone.
    Dictionary userInfo;      ///< Absent when there is nothing to say.
};

Q_DECLARE_METATYPE(Notification)

/// Passes notifications to whoever asked for them, by name and poster. Main thread only.
///
/// Observers and posters are not owned; registrations of gone ones are dropped. An observer is
/// called at once, in the order of registration, and may add or remove observers, post, or delete
/// itself meanwhile: one removed during a post is not called any more, one added only by the next.
class NotificationCenter
{
public:
    /// The one that the whole program shares.
    static NotificationCenter &defaultCenter();

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter &) = delete;
    NotificationCenter &operator=(const NotificationCenter &) = delete;

    /// Registers the observer. Each registration is served on its own, so registering twice means
    /// being called twice. A null observer or an empty selector is ignored.
    /// @param selector a slot or Q_INVOKABLE method that takes a Notification, or nothing.
    /// @param name null for every name.
    /// @param object null for every poster.
    void addObserver(QObject *observer, const Selector &selector, const QString &name,
                     QObject *object);

    /// Drops the observer's registrations for the name (null: for every name) and the poster (null:
    /// for every poster). Removing what was never registered does nothing.
    void removeObserver(QObject *observer, const QString &name = {}, QObject *object = nullptr);

    /// Calls the observers. What one of them throws is dropped, so that it disturbs neither the
    /// others nor the event loop.
    void post(const QString &name, QObject *object, const Dictionary &userInfo = {});

private:
    struct Registration
    {
        quint64 id;
        QPointer<QObject> observer;
        Selector selector;
        QString name;
        QPointer<QObject> object;
        bool fromAnyObject;

        bool isGone() const { return !observer || (!fromAnyObject && !object); }
    };

    const Registration *find(quint64 id) const;

    std::vector<Registration> m_registrations;
    quint64 m_lastId = 0;
};
