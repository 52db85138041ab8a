#pragma once

#include <QMainWindow>
#include <QPointer>

class Sheet;
class TouchBarStrip;

/// Told what becomes of a window. Main thread.
class WindowDelegate
{
public:
    virtual ~WindowDelegate() = default;
    /// @return whether the window may close, which only hides it.
    virtual bool windowShouldClose(QObject *window) = 0;
    virtual void windowDidResize(QObject *window) = 0;
};

#define WindowDelegate_iid "com.solvane.WindowDelegate/6"
Q_DECLARE_INTERFACE(WindowDelegate, WindowDelegate_iid)

/// The application's main window. F10 opens its first menu, Ctrl+W closes it. Main thread.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent = nullptr);

    /// Not owned; a QObject that implements WindowDelegate. Null for none.
    void setDelegate(QObject *delegate) { m_delegate = delegate; }

    void setBackgroundColor(const QColor &color);

    /// A title bar that the window draws itself is the row of its menu bar; with a menu bar that
    /// the desktop shows elsewhere there is none.
    bool supportsTitlebarAccessories() const;
    /// Puts the view into the title row, at its right-hand end, behind the menus. The window takes
    /// the view over and keeps what stands in its middle in the middle.
    void addTitlebarAccessory(QWidget *view);
    /// Lets the window's background show through the title row.
    void setTitlebarAppearsTransparent(bool transparent);

    /// Of the window with its title bar and borders, on the screen; never wider than the screen
    /// when it is maximised.
    QRect frame();
    /// Moves and sizes the window so that it fills the frame with its title bar and borders, also
    /// out of a maximised state. At once: the window manager animates what it wants animated.
    void setFrame(const QRect &frame);
    /// Shows the window, whatever state it is in, in front of others and on the virtual desktop
    /// that is seen, and gives it the keyboard.
    void comeForward();
    /// Puts the window into the middle of the free part of its screen.
    void center();

    /// What lies below the menus; sheets and drawers slide over it.
    QWidget *contentView() const;

    /// Where a sheet shows already: the new one follows when it has ended, or comes before it, and
    /// the one that shows comes back afterwards.
    enum SheetOrder { InTurn, InFront };

    /// Shows the view as a sheet, one at a time. A view that holds the window is not shown. The
    /// view is borrowed until its sheet ends; one that waits may be deleted.
    /// @param focusAfterwards gets the keyboard back; null for what has it now.
    void beginSheet(QWidget *view, QWidget *focusAfterwards = nullptr, SheetOrder order = InTurn);
    /// Ends the view's sheet, or its waiting for one, and hides the view; never this window.
    void endSheet(QWidget *view);
    /// Puts a panel in front of the content, but behind a sheet.
    void raiseInContent(QWidget *panel);

    /// What shows the Touch Bars of the window and of the views in it; null until there is one.
    TouchBarStrip *touchBarStrip() const { return m_touchBarStrip; }

protected:
    bool event(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct SheetRequest
    {
        QPointer<QWidget> view;
        QPointer<QWidget> focusAfterwards;
    };

    void openMenus();
    void layGroundUnderTitlebar();
    void layOutAccessory();
    bool sheetShows() const;
    void showNextSheet();
    void stopWaiting(const QWidget *view);

    QPointer<QObject> m_delegate;
    QPointer<QWidget> m_accessory;
    bool m_titlebarIsTransparent = false;
    QMargins m_borders; ///< as the window manager drew them last around a normal window
    QPointer<Sheet> m_sheet;
    QList<SheetRequest> m_waitingSheets;
    TouchBarStrip *m_touchBarStrip = nullptr; ///< owned as a child
};
