#pragma once

#include <QPointer>
#include <QScrollArea>

/// Shows a view that belongs to somebody else, at the size it has, and scrolls where there is less
/// room. Main thread.
///
/// The view is given back hidden, with the parent and the window flags it had before, when this
/// ends or giveBack() is called. Its owner may delete, hide or take it at any moment; whoever
/// borrows it from here gives it back to its owner.
class BorrowedView : public QScrollArea
{
    Q_OBJECT

public:
    /// @param view null for none; one that holds the parent counts as none.
    BorrowedView(QWidget *view, QWidget *parent);
    ~BorrowedView() override;

    /// Null once it was lost or given back.
    QWidget *view() const { return m_view; }
    void giveBack();

    /// Takes the size of the view, or the one wanted instead, or as much of it as there is room
    /// for.
    void fitInto(QSize room, QSize wanted = {});
    /// What a person would call the view: its accessible name, its title, or its first text.
    QString title() const;
    /// The first of the view's controls that the keyboard can reach; null for none.
    QWidget *firstControl() const;

Q_SIGNALS:
    /// The owner deleted, hid or took the view. It is not here any more; do not delete this within.
    void lost();
    /// The owner changed the view's size.
    void viewResized();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void rememberOwner();
    void lose();

    QPointer<QWidget> m_view;
    QPointer<QWidget> m_formerParent;
    Qt::WindowFlags m_formerFlags;
    bool m_filledBackground = false;
};
