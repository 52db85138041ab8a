#pragma once

#include "plugin_host/mndPlugins.h"

#include <QWidget>

/// The content area. Views in it are borrowed from plugins: they are given back before the area
/// goes, however the window ends.
class PluginViewHost : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;
    ~PluginViewHost() override { mndPlugins::removeSubviews(this); }
};
