#pragma once

#include <QEvent>
#include <QPointer>
#include <QWidget>

/// Keeps a view as large as whatever it is shown in.
///
/// The host leaves a plugin's view where the plugin puts it. Give the view one of these and it
/// fills the content area, also when the window changes its size. Owned by the view.
class FillsParent : public QObject
{
public:
    static void install(QWidget *view) { new FillsParent(view); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        switch (event->type()) {
        case QEvent::ParentChange:
            if (watched == view())
                follow();
            break;
        case QEvent::Resize:
            if (watched == m_followed)
                fill();
            break;
        default:
            break;
        }
        return false;
    }

private:
    explicit FillsParent(QWidget *view)
        : QObject(view)
    {
        view->installEventFilter(this);
        follow();
    }

    QWidget *view() const { return static_cast<QWidget *>(parent()); }

    void follow()
    {
        if (m_followed)
            m_followed->removeEventFilter(this);
        m_followed = view()->parentWidget();
        if (m_followed)
            m_followed->installEventFilter(this);
        fill();
    }

    void fill()
    {
        if (m_followed)
            view()->setGeometry(m_followed->rect());
    }

    QPointer<QWidget> m_followed;
};
