#pragma once

#include <QObject>
#include <QWidget>

#include <memory>

/// Owns the window of one interface file. Main thread.
///
/// A controller whose file is missing lives on without a window, and everything it is asked to show
/// stays unseen.
class WindowController : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;
    ~WindowController() override;

    /// Null when the interface file is missing. The controller keeps it.
    QWidget *window() const { return m_window.get(); }

protected:
    /// Loads the file with this object as its owner and paints the window's ground white.
    /// @return whether there was one.
    bool loadInterfaceFile(const QString &name);

private:
    std::unique_ptr<QWidget> m_window;
};
