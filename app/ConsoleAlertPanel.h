#pragma once

#include "platform/ui/DesktopServices.h"

/// Alerts on standard error, for runs that nobody sits in front of. The default button is pressed.
class ConsoleAlertPanel : public AlertPanel
{
public:
    Answer run(const QString &title, const QString &message, const QString &defaultButton,
               const QString &alternate) override;
};
