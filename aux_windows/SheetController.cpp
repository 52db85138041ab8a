#include "aux_windows/SheetController.h"

#include "platform/foundation/MainThread.h"
#include "platform/ui/ApplicationDelegate.h"

#include <QLabel>
#include <QLayout>
#include <QPointer>
#include <QShortcut>
#include <QStyle>

mndCore *SheetController::core()
{
    return qobject_cast<mndCore *>(applicationDelegate());
}

bool SheetController::loadSheet(const QString &name)
{
    if (!loadInterfaceFile(name))
        return false;
    for (QLabel *label : window()->findChildren<QLabel *>()) {
        label->setAlignment(QStyle::visualAlignment(window()->layoutDirection(), label->alignment())
                            | Qt::AlignAbsolute);
    }
    return true;
}

void SheetController::endSheet()
{
    if (m_isEnding || !core() || !window())
        return;
    m_isEnding = true;
    core()->endModalSheet(window());
    // Behind the host's own work in the queue.
    MainThread::runLater([self = QPointer(this)] {
        if (self)
            self->m_isEnding = false;
    });
}

void SheetController::onEscape(const std::function<void()> &act)
{
    if (!window())
        return;
    auto *escape = new QShortcut(Qt::Key_Escape, window());
    escape->setAutoRepeat(false);
    connect(escape, &QShortcut::activated, this, act);
}

void SheetController::fitToTexts()
{
    QLayout *layout = window() ? window()->layout() : nullptr;
    if (!layout)
        return;
    if (m_designedHeight == 0)
        m_designedHeight = window()->height();
    layout->activate();
    const int width = qMax(window()->width(), layout->minimumSize().width());
    window()->resize(width, qMax(m_designedHeight, layout->totalHeightForWidth(width)));
}
