#include "plugin_host/mndPlugins.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

#include <typeinfo>

using namespace Qt::StringLiterals;

namespace {

/// The style value of text drawn as raised above its ground, which the host's look reads.
constexpr int raisedBackgroundStyle = 2;

/// Not one of a class derived from it.
template <typename... Classes>
bool isExactly(const QWidget *view)
{
    return ((typeid(*view) == typeid(Classes)) || ...);
}

} // namespace

void mndPlugins::recurseSubViews(QWidget *view)
{
    if (!view)
        return;
    const auto subviews = view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *subview : subviews) {
        if (isExactly<QLabel, QLineEdit>(subview)) {
            subview->setProperty("backgroundStyle", raisedBackgroundStyle);
        } else if (isExactly<QPushButton, QCheckBox, QRadioButton>(subview)) {
            setButtonStringColor(static_cast<QAbstractButton *>(subview), Qt::white);
        } else if (isExactly<QTabWidget>(subview)) {
            auto *tabs = static_cast<QTabWidget *>(subview);
            tabs->setDocumentMode(true);
            for (int i = 0; i < tabs->count(); ++i)
                recurseSubViews(tabs->widget(i));
        }
        recurseSubViews(subview);
    }
}

void mndPlugins::setButtonStringColor(QAbstractButton *button, const QColor &color)
{
    if (!button)
        return;
    QPalette palette = button->palette();
    // A light title stands on a body, which alone says that it is disabled.
    constexpr float stillReadable = 0.6F;
    QColor dimmed = color;
    if (color.lightness() < 128)
        dimmed.setAlphaF(color.alphaF() * stillReadable);
    for (const auto role : {QPalette::ButtonText, QPalette::WindowText}) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
        palette.setColor(QPalette::Disabled, role, dimmed);
    }
    button->setPalette(palette);
}
