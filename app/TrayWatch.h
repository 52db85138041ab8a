#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>

#include <functional>
#include <utility>

/// Waits for the desktop to have a tray, for as long as it takes: a panel may well start after the
/// programs of the session. Hears of it on the session bus (StatusNotifierItem) and from the window
/// system (System Tray Protocol), and asks nobody twice. Main thread.
class TrayWatch : public QObject, private QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    /// @param appeared called once, and not before begin().
    explicit TrayWatch(std::function<void()> appeared)
        : m_appeared(std::move(appeared))
    { }
    ~TrayWatch() override = default;
    Q_DISABLE_COPY_MOVE(TrayWatch)

    void begin();

private Q_SLOTS:
    void askBus();

private:
    void watchBus();
    void watchDisplay();
    void found();
    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;

    std::function<void()> m_appeared;
    quint32 m_managerAtom = 0;
    quint32 m_trayAtom = 0;
};
