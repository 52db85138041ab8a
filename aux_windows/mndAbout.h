#pragma once

#include "aux_windows/mndTextField.h"
#include "aux_windows/SheetController.h"

#include <QLabel>
#include <QPointer>

/// The About sheet: version, edition, and the way to the product's web site. Main thread.
class mndAbout : public SheetController
{
    Q_OBJECT
    Q_PROPERTY(mndTextField *lblLink MEMBER lblLink)
    Q_PROPERTY(QLabel *lblEdition MEMBER lblEdition)
    Q_PROPERTY(QLabel *lblVersion MEMBER lblVersion)

public:
    mndAbout();

    Q_INVOKABLE void onOKClicked(QObject *sender);
    /// Ends the sheet, then opens the web site: once, however often it is clicked.
    Q_INVOKABLE void lblLinkClicked();

private:
    QPointer<mndTextField> lblLink;
    QPointer<QLabel> lblEdition;
    QPointer<QLabel> lblVersion;
};
