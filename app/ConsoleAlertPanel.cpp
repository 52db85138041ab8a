#include "app/ConsoleAlertPanel.h"

#include <QTextStream>

AlertPanel::Answer ConsoleAlertPanel::run(const QString &title, const QString &message,
                                          const QString &, const QString &)
{
    QTextStream(stderr) << title << ": " << message << '\n';
    return Default;
}
