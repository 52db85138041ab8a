#pragma once

#include "platform/ui/Application.h"

/// The application object of a program that shows a Touch Bar. Main thread.
class TouchBarApplication : public Application
{
    Q_OBJECT

public:
    using Application::Application;

    /// That it is answered at all is how the host learns that there is a Touch Bar; what stands on
    /// it is not for the user to choose.
    Q_INVOKABLE bool isAutomaticCustomizeTouchBarMenuItemEnabled() const { return false; }
};
