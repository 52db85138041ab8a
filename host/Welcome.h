#pragma once

#include "platform/ui/WindowController.h"

/// The window that leads the user of a confined edition to the choice of the home folder.
class Welcome : public WindowController
{
    Q_OBJECT

public:
    Welcome();
};
