#include "host/mndAppDelegate.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/ui/Application.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/KeyLetters.h"
#include "platform/ui/Mnemonics.h"
#include "plugin_host/mndPlugins.h"
#include "plugin_host/PluginQuarantine.h"

#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

namespace {

/// In a row, before it is assumed that asking about one plugin does not help.
constexpr unsigned manyCrashes = 2;

QString nameOf(const QString &bundle)
{
    return QFileInfo(bundle).completeBaseName();
}

/// What the end of the program has closed was not answered.
bool wasAnswered()
{
    const auto *application = qobject_cast<Application *>(qApp);
    return !application || !application->isTerminating();
}

void takeBack(mndAppDelegate &host, const QString &bundle)
{
    PluginQuarantine::takeBack(bundle, [self = QPointer(&host), bundle](bool isStored) {
        if (!self)
            return;
        const QString text = isStored
            ? format(self->stringResource(u"SZ_TAKEN_BACK"_s,
                                          u"“%@” is started again the next time Solvane starts."_s),
                     {nameOf(bundle)})
            : self->stringResource(u"SZ_PREFS_DELAY_FAILED"_s,
                                   u"This could not be stored and is forgotten when Solvane ends. "
                                   "The disk may be full or write-protected."_s);
        desktopServices().alertPanel->run(self->stringResource(u"SZ_TITLE"_s, u"Solvane"_s), text,
                                          self->stringResource(u"SZ_CLOSE"_s, u"Close"_s), {});
    });
}

void fillLeftOutMenu(QMenu &menu, mndAppDelegate &host)
{
    menu.clear();
    const QString title = host.stringResource(u"SZ_TAKE_BACK"_s, u"Start “%@” again"_s);
    for (const QString &bundle : PluginQuarantine::leftOut()) {
        menu.addAction(mnemonics::literal(format(title, {nameOf(bundle)})), &host,
                       [&host, bundle] { takeBack(host, bundle); });
    }
    menu.menuAction()->setVisible(!menu.isEmpty());
}

} // namespace

void mndAppDelegate::askAfterCrash()
{
    if (!m_quarantine || askAboutCulprit() || !wasAnswered())
        return;
    if (m_quarantine->crashes() >= manyCrashes && !m_quarantine->bundledOnly()
        && m_Plugins->hasAddedBundles())
        offerSafeMode();
}

/// Whether it is out of the way.
bool mndAppDelegate::askAboutCulprit()
{
    const QString culprit = m_quarantine->culprit();
    if (culprit.isNull())
        return false;
    const Bundle bundle(culprit);
    // The last run may have taken it away itself. What comes with the application stays.
    if (PluginQuarantine::isBundled(culprit) || !QFileInfo::exists(bundle.executablePath())) {
        m_quarantine->settle(false);
        return false;
    }
    // To start it is what changes nothing that lasts, and if it goes wrong the question comes
    // again.
    const auto answer = desktopServices().alertPanel->run(
        stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
        format(stringResource(u"SZ_PLUGIN_CRASHED"_s,
                              u"Solvane did not end as it should, and the plugin “%@” was at work "
                              "then.\n\nIt can be left out until a new version of it is installed. "
                              "“Left-out plugins” in the Help menu brings it back."_s),
               {nameOf(culprit)}),
        stringResource(u"SZ_START_AGAIN"_s, u"Start again"_s),
        stringResource(u"SZ_LEAVE_OUT"_s, u"Leave out"_s));
    if (!wasAnswered())
        return false;
    const bool isLeftOut = answer == AlertPanel::Alternate;
    if (isLeftOut)
        PluginQuarantine::leaveOut(culprit, bundle.executablePath());
    m_quarantine->settle(isLeftOut);
    return isLeftOut;
}

void mndAppDelegate::offerSafeMode()
{
    // For this run alone, and the start that goes wrong least.
    const auto answer = desktopServices().alertPanel->run(
        stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
        stringResource(u"SZ_SAFE_MODE_PROMPT"_s,
                       u"Solvane has ended unexpectedly several times in a row.\n\nIn safe mode it "
                       "starts with its own plugins only, this one time."_s),
        stringResource(u"SZ_SAFE_MODE"_s, u"Safe mode"_s),
        stringResource(u"SZ_START_NORMALLY"_s, u"Start normally"_s));
    if (answer == AlertPanel::Default && wasAnswered())
        m_quarantine->setBundledOnly();
}

/// In the Help menu, while there is something to show in it. Filled before letters are chosen.
void mndAppDelegate::makeLeftOutMenu()
{
    const QList<QAction *> topLevel =
        _window && _window->menuWidget() ? _window->menuBar()->actions() : QList<QAction *>();
    QMenu *help = topLevel.isEmpty() ? nullptr : topLevel.last()->menu();
    if (!help)
        return;
    const QString designed = u"Left-out plugins"_s;
    QMenu *menu =
        help->addMenu(mnemonics::literal(stringResource(u"SZ_LEFT_OUT_PLUGINS"_s, designed)));
    menu->menuAction()->setProperty(keyLetters::designedTitle, designed);
    menu->menuAction()->setVisible(false);
    connect(help, &QMenu::aboutToShow, this, [this, menu] { fillLeftOutMenu(*menu, *this); });
}
