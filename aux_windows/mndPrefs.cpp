#include "aux_windows/mndPrefs.h"

#include "helpers/loginItems.h"
#include "helpers/mndHelpers.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/KeyLetters.h"
#include "platform/ui/Mnemonics.h"

#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

/// The sheet is on the screen by then.
constexpr double fillDelay = 0.01;

constexpr quint64 storeEdition = 1;

mndHelpers *sharedHelpersOf(mndCore *core)
{
    return core ? qobject_cast<mndHelpers *>(core->sharedObject(u"SHARED.HELPERS"_s)) : nullptr;
}

template <typename Control>
void retitle(mndCore &core, const QPointer<Control> &control, const QString &key)
{
    if (control)
        mnemonics::setText(*control, core.stringResource(key, mnemonics::textOf(*control)));
}

} // namespace

mndPrefs::mndPrefs()
{
    if (!loadSheet(u"Prefs"_s))
        return;
    if (lblClose)
        lblClose->setClickTarget(this, Selector(u"hide"_s));
    if (core()) // what assistive technology calls the sheet from its first moment
        window()->setWindowTitle(
            core()->stringResource(u"SZ_PREFS_TITLE"_s, window()->windowTitle()));
    onEscape([this] { hide(); });
}

void mndPrefs::show()
{
    if (!core() || !window())
        return;
    core()->beginModalSheet(window());
    systemServices().scheduler->after(fillDelay, this, [this] { updateUI(); });
    core()->uiMakeSLVTouchbarWithButtons({u"Close"_s}, this, Selector(u"hide"_s), window());
}

void mndPrefs::hide()
{
    endSheet();
}

void mndPrefs::updateUI()
{
    if (!core())
        return;
    fillTexts();
    core()->uiButtonSetTextColor(cbAutolaunch, Qt::black);
    const bool isStore = core()->mndEdition() == storeEdition;
    if (cbAutolaunch) {
        if (!isStore)
            cbAutolaunch->setChecked(loginItems().launchOnLogin());
        cbAutolaunch->setVisible(!isStore);
    }
    if (lblAutolaunch)
        lblAutolaunch->setVisible(!isStore);
    for (QLabel *failed : {lblAutolaunchFailed.data(), lblDelayFailed.data()}) {
        if (failed)
            failed->hide();
    }
    if (imgHolder)
        imgHolder->setVisible(isStore);
    if (const auto helpers = sharedHelpersOf(core()); helpers && sliderDelay) {
        // What is shown was not chosen: it must not be stored.
        const QSignalBlocker quiet(sliderDelay);
        sliderDelay->setValue(helpers->forcedDelayValue());
    }
    showDelay();
    keyLetters::assign(window());
    fitToTexts();
}

void mndPrefs::fillTexts()
{
    mndCore &host = *core();
    retitle(host, lblTitle, u"SZ_PREFS_TITLE"_s);
    retitle(host, cbAutolaunch, u"SZ_PREFS_AUTOLAUNCH"_s);
    retitle(host, lblAutolaunch, u"SZ_PREFS_AUTOLAUNCH_INFO"_s);
    if (lblClose)
        lblClose->setStringValue(host.stringResource(u"SZ_CLOSE"_s, u"Close"_s));
    retitle(host, lblDelay, u"SZ_PREFS_DELAY"_s);
    retitle(host, lblDelayInfo, u"SZ_PREFS_DELAY_INFO"_s);
    if (lblDelayMin)
        lblDelayMin->setText(host.stringResource(u"SZ_PREFS_SECONDS_MIN"_s, u"2s"_s));
    if (lblDelayMax)
        lblDelayMax->setText(host.stringResource(u"SZ_PREFS_SECONDS_MAX"_s, u"15s"_s));
    if (cbAutolaunch && lblAutolaunch)
        cbAutolaunch->setAccessibleDescription(lblAutolaunch->text());
    if (sliderDelay && lblDelay)
        sliderDelay->setAccessibleName(lblDelay->text());
}

/// Assistive technology reads the slider's number by itself; the description adds the unit.
void mndPrefs::showDelay()
{
    if (!sliderDelay || !core())
        return;
    const QString text =
        format(core()->stringResource(u"SZ_PREFS_SECONDS"_s, u"%ds"_s), {sliderDelay->value()});
    if (lblDelayValue)
        lblDelayValue->setText(text);
    sliderDelay->setAccessibleDescription(lblDelayInfo ? u"%1. %2"_s.arg(text, lblDelayInfo->text())
                                                       : text);
}

void mndPrefs::onSliderChanged(QObject *)
{
    if (const auto helpers = sharedHelpersOf(core()); helpers && sliderDelay)
        helpers->setForcedDelayValue(sliderDelay->value());
    showDelay();
    systemServices().defaults->synchronizeLater([self = QPointer(this)](bool written) {
        if (self)
            self->tell(self->lblDelayFailed, u"SZ_PREFS_DELAY_FAILED"_s, !written);
    });
}

void mndPrefs::tell(QLabel *label, const QString &key, bool hasFailed)
{
    if (!core() || !label || label->isVisible() == hasFailed)
        return;
    label->setText(core()->stringResource(key, label->text()));
    label->setVisible(hasFailed);
    fitToTexts();
}

void mndPrefs::onAutolaunchClicked(QObject *)
{
    if (!core() || !cbAutolaunch)
        return;
    const bool wanted = cbAutolaunch->isChecked();
    loginItems items;
    items.setLaunchOnLogin(wanted);
    // A folder that cannot be written keeps what it has: the box shows what is so.
    const bool isSo = items.launchOnLogin();
    cbAutolaunch->setChecked(isSo);
    tell(lblAutolaunchFailed, u"SZ_PREFS_AUTOLAUNCH_FAILED"_s, isSo != wanted);
}
