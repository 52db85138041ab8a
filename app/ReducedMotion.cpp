#include "app/ReducedMotion.h"

#include "platform/ui/HostLook.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

namespace {

struct Setting
{
    QLatin1StringView group, key;
};

/// What the common desktops call it, each in its own words.
constexpr Setting gnome{"org.gnome.desktop.interface"_L1, "enable-animations"_L1};
constexpr Setting kde{"org.kde.kdeglobals.KDE"_L1, "AnimationDurationFactor"_L1};

} // namespace

ReducedMotion::ReducedMotion(QObject *parent)
    : QObject(parent)
{
    // Whoever changes the desktop's settings does so in another window, and comes back.
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this,
            [this](Qt::ApplicationState state) {
                if (state == Qt::ApplicationActive)
                    askTheDesktop();
            });
    askTheDesktop();
}

void ReducedMotion::askTheDesktop()
{
    ask(gnome.group, gnome.key, [this](const QVariant &value) { m_gnomeAsks = !value.toBool(); });
    ask(kde.group, kde.key,
        [this](const QVariant &value) { m_kdeAsks = value.toString() == u"0"_s; });
}

template <typename Note>
void ReducedMotion::ask(QLatin1StringView group, QLatin1StringView key, const Note &note)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal.Settings"_s, u"Read"_s);
    question.setArguments({QString(group), QString(key)});
    auto *answer =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, note] {
        const QDBusPendingReply<QDBusVariant> reply = *answer;
        answer->deleteLater();
        if (!reply.isValid())
            return;
        // A variant in a variant, as the portal's first version has it.
        const QVariant value = reply.value().variant();
        note(value.metaType() == QMetaType::fromType<QDBusVariant>()
                 ? value.value<QDBusVariant>().variant()
                 : value);
        HostLook::setReducedMotion(m_gnomeAsks || m_kdeAsks);
    });
}
