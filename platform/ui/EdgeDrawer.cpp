#include "platform/ui/EdgeDrawer.h"

#include "platform/ui/DrawerPanel.h"
#include "platform/ui/MainWindow.h"

EdgeDrawer::EdgeDrawer(QWidget *content, MainWindow *window, quint64 edge)
{
    if (content)
        content->move(0, 0);
    QWidget *area = window ? window->contentView() : nullptr;
    if (area)
        m_panel = new DrawerPanel(content, area, edge <= Top ? Edge(edge) : Right);
}

EdgeDrawer::~EdgeDrawer()
{
    if (m_panel)
        m_panel->discard();
}

void EdgeDrawer::open()
{
    if (!m_panel)
        return;
    if (auto *window = qobject_cast<MainWindow *>(m_panel->window()))
        window->raiseInContent(m_panel);
    m_panel->open();
}

void EdgeDrawer::close()
{
    if (m_panel)
        m_panel->close();
}

void EdgeDrawer::toggle()
{
    isOpen() ? close() : open();
}

bool EdgeDrawer::isOpen() const
{
    return m_panel && m_panel->isOpen();
}
