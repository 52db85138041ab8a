#pragma once

#include <QLatin1StringView>
#include <QObject>

/// Asks the desktop's portal (the interface org.freedesktop.portal.Settings) whether little motion
/// is wished, at once and whenever the user comes back to the program, and passes it on to the look
/// of the host. Without a portal everything moves. Main thread; asks without waiting.
class ReducedMotion : public QObject
{
    Q_OBJECT

public:
    explicit ReducedMotion(QObject *parent);

private:
    void askTheDesktop();
    template <typename Note>
    void ask(QLatin1StringView group, QLatin1StringView key, const Note &note);

    bool m_gnomeAsks = false;
    bool m_kdeAsks = false;
};
