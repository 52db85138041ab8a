#include "app/TrayIcon.h"

#include "platform/ui/Application.h"
#include "plugin_host/mndCore.h"

using namespace Qt::StringLiterals;

TrayIcon::TrayIcon(Application &application, mndCore &core)
    : m_icon(QApplication::windowIcon())
{
    m_menu.addAction(core.stringResource(u"SZ_TRAY_SHOW"_s, u"Show Solvane"_s), &application,
                     &Application::reopen);
    m_menu.addSeparator();
    m_menu.addAction(core.stringResource(u"SZ_TRAY_QUIT"_s, u"Quit"_s), &application,
                     [&application] { application.terminate(); });
    m_icon.setContextMenu(&m_menu);
    m_icon.setToolTip(core.stringResource(u"SZ_TITLE"_s, u"Solvane"_s));
    QObject::connect(&m_icon, &QSystemTrayIcon::activated, &application,
                     [&application](QSystemTrayIcon::ActivationReason reason) {
                         if (reason == QSystemTrayIcon::Trigger)
                             application.reopen();
                     });
    m_icon.show();
}
