#pragma once

#include <QApplication>

/// The application object: the host's look, and the commands of menus that belong to no window of
/// ours but to the application itself. Main thread.
class Application : public QApplication
{
    Q_OBJECT

public:
    Application(int &argc, char **argv);
    ~Application() override;

    /// What a plugin's slot, timer or painting throws ends here, in the system log: the event loop
    /// cannot be left by an exception.
    bool notify(QObject *receiver, QEvent *event) override;

    /// Tells the delegate that launching is done. Call once, before exec().
    void finishLaunching();

    /// Whether the end has been asked for, even before the main loop has begun.
    bool isTerminating() const { return m_terminating; }

    /// The user started the program again, or asked for it from the tray.
    void reopen();
    /// @return whether the delegate accepted the document.
    bool openFile(const QString &path);

public Q_SLOTS:
    // Menu commands, in their written form "terminate:" and so on.
    void terminate(QObject *sender = nullptr);
    void hide(QObject *sender = nullptr);
    void performMiniaturize(QObject *sender = nullptr);
    void performZoom(QObject *sender = nullptr);
    void arrangeInFront(QObject *sender = nullptr);

private:
    void willTerminate();

    bool m_terminating = false;
    bool m_terminated = false;
};
