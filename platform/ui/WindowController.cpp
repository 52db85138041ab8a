#include "platform/ui/WindowController.h"

#include "platform/ui/InterfaceFile.h"

WindowController::~WindowController() = default;

bool WindowController::loadInterfaceFile(const QString &name)
{
    m_window = InterfaceFile::load(name, this);
    if (!m_window)
        return false;
    QPalette ground = m_window->palette();
    ground.setColor(QPalette::Window, Qt::white);
    m_window->setPalette(ground);
    return true;
}
