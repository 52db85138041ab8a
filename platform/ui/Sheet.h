#pragma once

#include <QPointer>
#include <QWidget>

/// Shows a view as a sheet: at the top edge of the window it belongs to, over a dimmed backdrop
/// that takes the clicks meant for the window. Focus stays inside. Main thread.
///
/// Child of the window it covers; the view is borrowed and given back, hidden, when the sheet ends
/// or is deleted.
class Sheet : public QWidget
{
    Q_OBJECT

public:
    Sheet(QWidget *view, QWidget *window);
    ~Sheet() override;

    QWidget *view() const { return m_view; }

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;

private:
    void layOut();

    QPointer<QWidget> m_view;
    QPointer<QWidget> m_focusBefore;
};
