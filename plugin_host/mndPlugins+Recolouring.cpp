#include "plugin_host/mndPlugins.h"

#include <QAbstractButton>
#include <QTabWidget>

#include <cstring>

using namespace Qt::StringLiterals;

namespace {

/// The style value of text drawn as raised above its ground.
constexpr int raisedBackgroundStyle = 2;

template <std::size_t N>
bool isExactly(const QWidget *view, const char *const (&names)[N])
{
    for (const char *name : names) {
        if (std::strcmp(view->metaObject()->className(), name) == 0)
            return true;
    }
    return false;
}

constexpr const char *textFields[] = {"QLabel", "QLineEdit"};
constexpr const char *buttons[] = {"QPushButton", "QCheckBox", "QRadioButton"};
constexpr const char *tabViews[] = {"QTabWidget"};

} // namespace

void mndPlugins::recurseSubViews(QWidget *view)
{
    if (!view)
        return;
    const auto subviews = view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    for (QWidget *subview : subviews) {
        if (isExactly(subview, textFields)) {
            subview->setProperty("backgroundStyle", raisedBackgroundStyle);
        } else if (isExactly(subview, buttons)) {
            setButtonStringColor(static_cast<QAbstractButton *>(subview), Qt::white);
        } else if (isExactly(subview, tabViews)) {
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
    QColor dimmed = color;
    dimmed.setAlphaF(color.alphaF() / 2);
    for (const auto role : {QPalette::ButtonText, QPalette::WindowText}) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
        palette.setColor(QPalette::Disabled, role, dimmed);
    }
    button->setPalette(palette);
}
