#include "host/Welcome.h"

#include "host/FolderBookmark.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/FileSystem.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/Mnemonics.h"
#include "platform/ui/ModalLoop.h"

#include <QTabBar>

using namespace Qt::StringLiterals;

namespace {

mndAppDelegate *host()
{
    return qobject_cast<mndAppDelegate *>(applicationDelegate());
}

template <typename Label>
void retitle(const QPointer<Label> &label, const QString &key)
{
    if (label)
        mnemonics::setText(*label, host()->stringResource(key, mnemonics::textOf(*label)));
}

/// Where home folders lie by their usual place, or else where this one does.
QString startFolder(const QString &home)
{
    const QString usual = u"/Users/"_s + systemServices().account->loginName();
    return systemServices().fileSystem->exists(usual) ? usual : home;
}

} // namespace

bool Welcome::load()
{
    return window() || loadInterfaceFile(u"Welcome"_s);
}

void Welcome::localize()
{
    retitle(lblWelcomeTitle, u"SZ_WELCOME_TITLE"_s);
    retitle(lblWelcomeDesc, u"SZ_WELCOME_DESC"_s);
    retitle(btnNext, u"SZ_NEXT"_s);
    retitle(lblWelcomePrompt, u"SZ_HOME_PROMPT"_s);
    retitle(lblWelcomePromptDesc, u"SZ_HOME_PROMPT_DESC"_s);
    retitle(btnSelect, u"SZ_HOME_SELECT"_s);
    if (lblExit)
        lblExit->setStringValue(host()->stringResource(u"SZ_WELCOME_DENY"_s, lblExit->text()));
}

bool Welcome::show()
{
    if (!host() || !load())
        return false;
    localize();
    if (lblExit)
        lblExit->setClickTarget(this, Selector(u"exit"_s));
    if (tvWelcomeMain) {
        tvWelcomeMain->tabBar()->hide();
        tvWelcomeMain->setDocumentMode(true);
    }
    host()->_beginModalSheet(window());
    host()->uiMakeSLVTouchbarWithButtons({u"Next"_s}, this, Selector(u"tbPressed:"_s), window());
    return ModalLoop::runModalForWindow(window());
}

void Welcome::hide()
{
    if (host())
        host()->_endModalSheet(window());
    ModalLoop::stopModal();
}

void Welcome::btnNextClicked(QObject *)
{
    if (tvWelcomeMain)
        tvWelcomeMain->setCurrentIndex(tvWelcomeMain->count() - 1);
    if (lblExit)
        lblExit->show();
    // The button that had the keyboard is out of sight.
    if (btnSelect)
        btnSelect->setFocus();
    if (host()) {
        host()->uiMakeSLVTouchbarWithButtons(
            {u"Select Home Folder"_s, u"Disallow access and exit"_s}, this,
            Selector(u"tbPressed:"_s), window());
    }
}

void Welcome::tbPressed(const QString &title)
{
    if (title == "Next"_L1)
        btnNextClicked();
    else if (title == "Select Home Folder"_L1)
        btnSelectClicked();
    else if (title == "Disallow access and exit"_L1)
        exit();
}

void Welcome::btnSelectClicked(QObject *)
{
    mndAppDelegate *const core = host();
    if (!core)
        return;
    const QString home = core->actualHomeDirectory();
    for (;;) {
        const QString chosen = desktopServices().openPanel->chooseFolder(
            core->stringResource(u"SZ_HOME_POLITE"_s, u"Please select your home directory"_s),
            startFolder(home));
        if (chosen.isNull())
            return;
        if (core->isHomeDirectory(chosen)) {
            core->saveHomeDirectory(chosen);
            core->saveHomeDirectoryBookmark(FolderBookmark::make(chosen));
            hide();
            return;
        }
        const QString message = core->stringResource(
            u"SZ_HOME_ERROR_DESC"_s,
            u"Please simply Open the default folder as prompted.\n\nYour home folder is located "
            "at: '%@'\nYou have specified: '%@'.\n\nPlease select '%@' and try again"_s);
        desktopServices().alertPanel->run(
            core->stringResource(u"SZ_HOME_ERROR_TITLE"_s, u"Selection is not your home folder"_s),
            format(message, {home, chosen, home}), u"OK"_s, {});
    }
}

void Welcome::exit()
{
    if (window())
        window()->close();
    systemServices().processEnd->exit(0);
}
