#pragma once

#include <QObject>

/// The helper service that plugins find under "SHARED.HELPERS". Holds no state. Any thread.
class sharedHelpers : public QObject
{
    Q_OBJECT

public:
    /// The host object, to be cast to mndCore; asked of the application on every call. Null when
    /// there is none.
    Q_INVOKABLE QObject *getCore() const;
};
