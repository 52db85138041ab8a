#pragma once

#include <QMainWindow>
#include <QPointer>

class Sheet;

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

/// The application's main window. Main thread.
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

    /// Moves and sizes the window so that it fills the frame with its title bar and borders.
    void setFrame(const QRect &frame);

    /// Shows the view as a sheet, one at a time: a second is not shown while one is. The view is
    /// borrowed until its sheet ends.
    void beginSheet(QWidget *view);
    /// Ends the view's sheet and hides the view. Nothing happens when it is not the one showing.
    void endSheet(QWidget *view);

protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void layOutAccessory();

    QPointer<QObject> m_delegate;
    QPointer<QWidget> m_accessory;
    QPointer<Sheet> m_sheet;
};
