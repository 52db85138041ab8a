#pragma once

#include "StatusMonitor.h"

#include "plugins/common/Texts.h"

#include <QWidget>

class ElidedLabel;
class QBoxLayout;
class MeterCard;
class VolumeList;

/// The page about this machine. It reads figures only while it can be seen: while the host shows it
/// and it is on the screen, which a closed or minimised window is not.
class StatusView : public QWidget
{
public:
    /// @param core the host; null for none.
    /// @param root folder that stands for "/" in the kernel's and the distribution's files.
    explicit StatusView(mndCore *core, const QString &root = {});

    /// Whether the host shows this page.
    void setShownByHost(bool shown);

    const StatusMonitor &monitor() const { return m_monitor; }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// From this width on the meters have room side by side for all their texts.
    static constexpr int twoColumns = 560;

    /// A small caption with a value below it.
    struct Fact
    {
        QString caption;
        ElidedLabel *value;
    };

    QLayout *makeHeader();
    QLayout *makeFacts();
    QLayout *makeMeters();
    Fact addFact(class QGridLayout *grid, int column, const QString &caption);
    static void setFact(const Fact &fact, const QString &text);
    void connectMonitor();
    void showFacts(const SystemFacts &facts);
    void showLive(const LiveReading &reading, bool pause);
    void showLoad(const std::optional<double> &load);
    void showMemory(const std::optional<MemoryReading> &memory);
    void follow();

    Texts m_texts;
    bool m_shownByHost = false;
    bool m_onScreen = false;
    ElidedLabel *m_hostName = nullptr;
    ElidedLabel *m_model = nullptr;
    QBoxLayout *m_meters = nullptr;
    Fact m_system;
    Fact m_kernel;
    Fact m_uptime;
    MeterCard *m_load = nullptr;
    MeterCard *m_memory = nullptr;
    VolumeList *m_volumes = nullptr;
    StatusMonitor m_monitor;
};
