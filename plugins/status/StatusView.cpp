#include "StatusView.h"

#include "HistoryChart.h"
#include "MeterCard.h"
#include "Sizes.h"
#include "VolumeList.h"

#include "plugins/common/ElidedLabel.h"
#include "plugins/common/Look.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

StatusView::StatusView(mndCore *core, const QString &root)
    : m_texts(core)
    , m_monitor(core, root)
{
    auto *column =
        new QVBoxLayout(look::addScrollingColumn(this, m_texts(u"SZ_STATUS_NAME"_s, u"Status"_s)));
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(makeHeader());
    column->addSpacing(20);
    column->addLayout(makeFacts());
    column->addSpacing(24);
    column->addLayout(makeMeters());
    column->addSpacing(24);
    auto *heading = new ElidedLabel;
    heading->setText(m_texts(u"SZ_STATUS_VOLUMES"_s, u"Volumes"_s));
    heading->setFont(look::font(1.0, QFont::DemiBold));
    column->addWidget(heading);
    column->addSpacing(8);
    m_volumes = new VolumeList(m_texts);
    column->addWidget(m_volumes);
    column->addStretch(1);
    connectMonitor();
}

QLayout *StatusView::makeHeader()
{
    m_hostName = new ElidedLabel;
    m_hostName->setText(m_texts(u"SZ_STATUS_THIS_COMPUTER"_s, u"This computer"_s));
    m_hostName->setFont(look::font(1.8, QFont::DemiBold));
    m_model = new ElidedLabel;
    m_model->setFont(look::font(1.1));
    look::setTextColor(m_model, look::secondaryText);
    auto *header = new QVBoxLayout;
    header->setSpacing(2);
    header->addWidget(m_hostName);
    header->addWidget(m_model);
    return header;
}

QLayout *StatusView::makeFacts()
{
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(2);
    m_system = addFact(grid, 0, m_texts(u"SZ_STATUS_SYSTEM"_s, u"System"_s));
    m_kernel = addFact(grid, 1, m_texts(u"SZ_STATUS_KERNEL"_s, u"Kernel"_s));
    m_uptime = addFact(grid, 2, m_texts(u"SZ_STATUS_UPTIME"_s, u"Running for"_s));
    grid->setColumnStretch(0, 7);
    grid->setColumnStretch(1, 4);
    grid->setColumnStretch(2, 3);
    return grid;
}

StatusView::Fact StatusView::addFact(QGridLayout *grid, int column, const QString &caption)
{
    auto *label = new ElidedLabel;
    label->setText(caption);
    label->setFont(look::font(0.9));
    look::setTextColor(label, look::secondaryText);
    auto *value = new ElidedLabel;
    value->setText(u"\u2013"_s);
    grid->addWidget(label, 0, column);
    grid->addWidget(value, 1, column);
    return {caption, value};
}

void StatusView::setFact(const Fact &fact, const QString &text)
{
    if (fact.value->text() == text)
        return;
    fact.value->setText(text);
    fact.value->setAccessibleName(u"%1: %2"_s.arg(fact.caption, text));
}

QLayout *StatusView::makeMeters()
{
    const QString period = m_texts(u"SZ_STATUS_PERIOD"_s, u"Last 2 minutes"_s);
    const QString measuring = m_texts(u"SZ_STATUS_MEASURING"_s, u"Measuring\u2026"_s);
    const QString processor = m_texts(u"SZ_STATUS_PROCESSOR"_s, u"Processor"_s);
    const QString memory = m_texts(u"SZ_STATUS_MEMORY"_s, u"Memory"_s);
    m_load = new MeterCard(processor, period, look::accent);
    m_load->setValue(u"\u2013"_s, measuring, processor);
    m_memory = new MeterCard(memory, period, look::secondAccent);
    m_memory->setValue(u"\u2013"_s, measuring, memory);
    m_meters = new QHBoxLayout;
    m_meters->setSpacing(look::gap);
    m_meters->addWidget(m_load, 1);
    m_meters->addWidget(m_memory, 1);
    return m_meters;
}

void StatusView::connectMonitor()
{
    connect(&m_monitor, &StatusMonitor::factsRead, this, &StatusView::showFacts);
    connect(&m_monitor, &StatusMonitor::liveRead, this, &StatusView::showLive);
    connect(&m_monitor, &StatusMonitor::volumesRead, m_volumes, &VolumeList::setVolumes);
    connect(&m_monitor, &StatusMonitor::usageRead, m_volumes, &VolumeList::setUsage);
    connect(&m_monitor, &StatusMonitor::volumeSilent, m_volumes, &VolumeList::setSilent);
}

void StatusView::setShownByHost(bool shown)
{
    m_shownByHost = shown;
    follow();
}

void StatusView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    m_onScreen = true;
    follow();
}

void StatusView::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    m_meters->setDirection(width() < twoColumns ? QBoxLayout::TopToBottom
                                                : QBoxLayout::LeftToRight);
}

void StatusView::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    m_onScreen = false;
    follow();
}

void StatusView::follow()
{
    if (m_shownByHost && m_onScreen)
        m_monitor.start();
    else
        m_monitor.stop();
}

void StatusView::showFacts(const SystemFacts &facts)
{
    const QString unknown = m_texts(u"SZ_STATUS_NOT_REPORTED"_s, u"Not reported"_s);
    const auto orUnknown = [&](const QString &text) { return text.isEmpty() ? unknown : text; };
    if (!facts.hostName.isEmpty())
        m_hostName->setText(facts.hostName);
    m_model->setText(facts.model.isEmpty()
                         ? m_texts(u"SZ_STATUS_MODEL_UNKNOWN"_s, u"Model not reported"_s)
                         : facts.model);
    setFact(m_system, orUnknown(facts.system));
    setFact(m_kernel, orUnknown(facts.kernel));

    QStringList processor;
    processor << (facts.processor.isEmpty()
                      ? m_texts(u"SZ_STATUS_PROCESSOR_UNKNOWN"_s, u"Model not reported"_s)
                      : facts.processor);
    if (facts.cores == 1)
        processor << m_texts(u"SZ_STATUS_ONE_CORE"_s, u"1 core"_s);
    else if (facts.cores > 1)
        processor << m_texts(u"SZ_STATUS_CORES"_s, u"%1 cores"_s, {QString::number(facts.cores)});
    if (facts.threads > facts.cores)
        processor << m_texts(u"SZ_STATUS_THREADS"_s, u"%1 threads"_s,
                             {QString::number(facts.threads)});
    m_load->setNote(processor.join(u" \u2022 "_s));
}

void StatusView::showLive(const LiveReading &reading, bool pause)
{
    if (pause) {
        m_load->chart()->clear();
        m_memory->chart()->clear();
    }
    showLoad(reading.load);
    showMemory(reading.memory);
    setFact(m_uptime,
            reading.uptime ? durationText(*reading.uptime, m_texts)
                           : m_texts(u"SZ_STATUS_NOT_REPORTED"_s, u"Not reported"_s));
}

void StatusView::showLoad(const std::optional<double> &load)
{
    if (!load)
        return;
    const QString percent = percentText(qRound(*load * 100), m_texts);
    m_load->chart()->addSample(*load);
    m_load->setValue(percent, m_texts(u"SZ_STATUS_BUSY"_s, u"busy"_s),
                     m_texts(u"SZ_STATUS_PROCESSOR_SPOKEN"_s, u"Processor, %1 busy"_s, {percent}));
}

void StatusView::showMemory(const std::optional<MemoryReading> &memory)
{
    if (!memory) {
        m_memory->setValue(u"\u2013"_s, m_texts(u"SZ_STATUS_NOT_REPORTED"_s, u"Not reported"_s),
                           m_texts(u"SZ_STATUS_MEMORY"_s, u"Memory"_s));
        return;
    }
    const QString used = sizeText(memory->used, m_texts);
    const QString total = sizeText(memory->total, m_texts);
    m_memory->chart()->addSample(double(memory->used) / double(memory->total));
    m_memory->setValue(
        used, m_texts(u"SZ_STATUS_MEMORY_OF"_s, u"of %1 used"_s, {total}),
        m_texts(u"SZ_STATUS_MEMORY_SPOKEN"_s, u"Memory, %1 of %2 used"_s, {used, total}));
    m_memory->setNote(m_texts(u"SZ_STATUS_MEMORY_AVAILABLE"_s, u"%1 available"_s,
                              {sizeText(memory->available, m_texts)}));
}
