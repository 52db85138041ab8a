#pragma once

#include <QObject>

class QWidget;

/// Brings a window back where the user left it: reads its place and size from the user defaults
/// when it is made, and stores them whenever the window is hidden, and at the end of the program. A
/// window that is shown again after it was hidden is where it was, too. A place that no screen
/// shows any more is not taken. Owned by the window as a child. Main thread.
class WindowFrameMemory : public QObject
{
public:
    WindowFrameMemory(QWidget *window, const QString &key);

protected:
    bool eventFilter(QObject *window, QEvent *event) override;

private:
    void keep();

    QWidget *m_window;
    QString m_key;
    QByteArray m_stored;
};
