#pragma once

#include <QColor>

/// The colours shared with plugins. Stateless; usable from any thread.
class mndTheme
{
public:
    QColor backgroundColor() const { return Qt::white; }

    /// As near to these as QColor's 16 bits a component come.
    QColor sidebarColor() const { return QColor::fromRgbF(0.66F, 0.84F, 0.95F, 1.0F); }

    QColor sidebarFontColor() const { return Qt::black; }
};
