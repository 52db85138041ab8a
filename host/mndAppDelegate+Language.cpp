#include "host/LocalizedLink.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/ProductAddresses.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/KeyLetters.h"
#include "platform/ui/Mnemonics.h"

#include <QMenu>
#include <QMenuBar>

using namespace Qt::StringLiterals;

bool mndAppDelegate::loadLanguageFile()
{
    const QStringList languages = systemServices().languages->preferred();
    _languageFile = LanguageFile::load(*systemServices().mainBundle, languages.value(0));
    for (const QString &problem : _languageFile->problems())
        systemServices().systemLog->write(problem);
    if (_languageFile->isLoaded())
        return true;
    // The only texts of start-up that cannot come from the language file.
    const bool missing = _languageFile->outcome() == LanguageFile::Outcome::NotFound;
    desktopServices().alertPanel->run(
        missing ? u"Fatal error (1)"_s : u"Fatal error (2)"_s,
        u"Unable to load language file.  Please re-install Solvane and if the problem persists visit "_s
            + ProductAddresses::support(),
        u"OK"_s, {});
    systemServices().processEnd->exit(0);
    return false;
}

QString mndAppDelegate::stringResource(const QString &key, const QString &fallback)
{
    if (key.isNull())
        return u"!aId"_s;
    const auto text = _languageFile ? _languageFile->text(key) : std::nullopt;
    if (text)
        return *text;
    logPlace("stringResource:def:", 1373, format(u"Unable to get %@"_s, {key}));
    return fallback;
}

void mndAppDelegate::localize(QAction *item, const char *key, const QString &fallback)
{
    if (!item)
        return;
    item->setProperty(keyLetters::designedTitle, mnemonics::shown(item->text()));
    const QString text = stringResource(
        QString::fromLatin1(key), fallback.isNull() ? mnemonics::shown(item->text()) : fallback);
    item->setText(mnemonics::literal(text));
}

void mndAppDelegate::localizeMenus()
{
    localize(miAbout, "SZ_MENU_ABOUT");
    localize(miPrefs, "SZ_MENU_PREFS");
    localize(miPrefsReset, "SZ_MENU_PREFS_RESET");
    localize(miFeedback, "SZ_MENU_FEEDBACK");
    localize(miCheckForUpdate, "SZ_MENU_UPDATE");
    localize(miServices, "SZ_MENU_SERVICES");
    localize(miHideSolvane, "SZ_MENU_HIDE");
    localize(miHideOthers, "SZ_MENU_HIDE_OTHERS");
    localize(miShowAll, "SZ_MENU_SHOW_ALL");
    localize(miQuit, "SZ_MENU_QUIT");
    localize(miMinimize, "SZ_MENU_MINIMIZE");
    localize(miZoom, "SZ_MENU_ZOOM");
    localize(miBringToFront, "SZ_MENU_BRING_ALL_TO_FRONT");
    localize(miShowMainWindow, "SZ_MENU_SHOW_MAIN_WINDOW");
    localize(miHelp, "SZ_MENU_HELP");
    localize(miHelpLink, "SZ_MENU_HELP_ITEM");
    localize(miExtendedLogging, "SZ_EXTENDED_LOGGING", u"Extended logging"_s);
    localize(miExtendedLoggingEnable, "SZ_EXTENDED_LOGGING_ENABLE", u"Enable extended logging"_s);
    localize(miExtendedLoggingSend, "SZ_REVEAL_LOG", u"Reveal logfile"_s);

    // The menu bar shows the titles of the submenus, not those of the entries that hold them.
    const QList<QAction *> topLevel =
        _window && _window->menuWidget() ? _window->menuBar()->actions() : QList<QAction *>();
    const auto localizeSubmenu = [&](qsizetype index, const char *key, const QAction *entry) {
        if (index < topLevel.size() && topLevel[index]->menu()) {
            QMenu *menu = topLevel[index]->menu();
            menu->setProperty(keyLetters::designedTitle, mnemonics::shown(menu->title()));
            menu->setTitle(mnemonics::literal(stringResource(
                QString::fromLatin1(key), entry ? mnemonics::shown(entry->text()) : QString())));
        }
    };
    localizeSubmenu(1, "SZ_MENU_WINDOW", miWindow);
    localizeSubmenu(2, "SZ_MENU_HELP", miHelp);
    makeLeftOutMenu();
    if (!topLevel.isEmpty())
        keyLetters::follow(_window->menuBar());

    // Nobody should choose what nobody does.
    if (!topLevel.isEmpty() && topLevel.first()->menu()) {
        connect(topLevel.first()->menu(), &QMenu::aboutToShow, this, [this] {
            if (miCheckForUpdate)
                miCheckForUpdate->setEnabled(sharedObject(u"shared.updater"_s));
        });
    }

    // What shows no text of its own is read out.
    if (sourceList) {
        sourceList->setLocale(QLocale(_languageFile->language()));
        sourceList->setAccessibleName(stringResource(u"SZ_NAME_PLUGINS"_s, u"Plugins"_s));
    }
    if (_helpbtn) {
        _helpbtn->setAccessibleName(stringResource(u"SZ_MENU_HELP"_s, u"Help"_s));
        _helpbtn->setToolTip(_helpbtn->accessibleName());
    }
}

QString mndAppDelegate::localizeLink(const QString &link)
{
    const QStringList languages = systemServices().languages->preferred();
    return localizedLink(link, languages.value(0), *systemServices().mainBundle);
}
