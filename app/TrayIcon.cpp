#include "app/TrayIcon.h"

#include "platform/ui/Application.h"
#include "platform/ui/Mnemonics.h"
#include "plugin_host/mndCore.h"

#include <QTimer>

using namespace Qt::StringLiterals;

namespace {

/// Asking for a tray takes a while; the sidebar comes first.
constexpr int trayDelay = 500; // milliseconds

} // namespace

TrayIcon::TrayIcon(Application &application, mndCore &core)
    : m_watch([this, &application, &core] { show(application, core); })
{
    QTimer::singleShot(trayDelay, &m_watch, &TrayWatch::begin);
}

void TrayIcon::show(Application &application, mndCore &core)
{
    const auto entry = [&core](const QString &key, const QString &fallback) {
        return mnemonics::literal(core.stringResource(key, fallback));
    };
    m_menu.addAction(entry(u"SZ_TRAY_SHOW"_s, u"Show Solvane"_s), &application,
                     &Application::reopen);
    m_menu.addSeparator();
    m_menu.addAction(entry(u"SZ_TRAY_QUIT"_s, u"Quit"_s), &application,
                     [&application] { application.terminate(); });
    m_icon.emplace(QApplication::windowIcon());
    m_icon->setContextMenu(&m_menu);
    m_icon->setToolTip(core.stringResource(u"SZ_TITLE"_s, u"Solvane"_s));
    QObject::connect(&*m_icon, &QSystemTrayIcon::activated, &application,
                     [&application](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             application.reopen();
                     });
    m_icon->show();
}
