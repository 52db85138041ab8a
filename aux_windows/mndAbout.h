#pragma once

#include "platform/ui/WindowController.h"

/// The About sheet: version, edition, and the way to the product's web site.
class mndAbout : public WindowController
{
    Q_OBJECT

public:
    mndAbout();

    Q_INVOKABLE void onOKClicked(QObject *sender);
};
