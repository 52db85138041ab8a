#pragma once

#include "aux_windows/mndTextField.h"
#include "aux_windows/SheetController.h"
#include "platform/ui/NamedImageView.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QSlider>

/// The preferences sheet: start at login, and how long to wait before what cannot be undone.
/// Changes count at once. Main thread.
class mndPrefs : public SheetController
{
    Q_OBJECT
    Q_PROPERTY(mndTextField *lblClose MEMBER lblClose)
    Q_PROPERTY(QCheckBox *cbAutolaunch MEMBER cbAutolaunch)
    Q_PROPERTY(QLabel *lblAutolaunch MEMBER lblAutolaunch)
    Q_PROPERTY(QLabel *lblAutolaunchFailed MEMBER lblAutolaunchFailed)
    Q_PROPERTY(QSlider *sliderDelay MEMBER sliderDelay)
    Q_PROPERTY(NamedImageView *imgHolder MEMBER imgHolder)
    Q_PROPERTY(QLabel *lblTitle MEMBER lblTitle)
    Q_PROPERTY(QLabel *lblDelay MEMBER lblDelay)
    Q_PROPERTY(QLabel *lblDelayInfo MEMBER lblDelayInfo)
    Q_PROPERTY(QLabel *lblDelayMin MEMBER lblDelayMin)
    Q_PROPERTY(QLabel *lblDelayMax MEMBER lblDelayMax)
    Q_PROPERTY(QLabel *lblDelayValue MEMBER lblDelayValue)
    Q_PROPERTY(QLabel *lblDelayFailed MEMBER lblDelayFailed)

public:
    mndPrefs();

    /// Shows the sheet over the main window, and fills it when it is there.
    Q_INVOKABLE void show();
    Q_INVOKABLE void hide();
    /// Texts and controls, as the language file and the stored settings have them now.
    Q_INVOKABLE void updateUI();

    Q_INVOKABLE void onSliderChanged(QObject *sender);
    Q_INVOKABLE void onAutolaunchClicked(QObject *sender);

private:
    void fillTexts();
    void showDelay();
    void tell(QLabel *label, const QString &key, bool hasFailed);

    QPointer<mndTextField> lblClose;
    QPointer<QCheckBox> cbAutolaunch;
    QPointer<QLabel> lblAutolaunch;
    QPointer<QLabel> lblAutolaunchFailed;
    QPointer<QSlider> sliderDelay;
    QPointer<NamedImageView> imgHolder; ///< in the place of the two, in the store edition
    QPointer<QLabel> lblTitle;
    QPointer<QLabel> lblDelay;
    QPointer<QLabel> lblDelayInfo;
    QPointer<QLabel> lblDelayMin;
    QPointer<QLabel> lblDelayMax;
    QPointer<QLabel> lblDelayValue;
    QPointer<QLabel> lblDelayFailed;
};
