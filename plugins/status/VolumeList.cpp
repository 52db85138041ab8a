#include "VolumeList.h"

#include "Sizes.h"

#include "plugins/common/ElidedLabel.h"
#include "plugins/common/Look.h"
#include "plugins/common/ShareView.h"

#include <QGridLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// From here on the bar warns. A medium that cannot be written is full by nature and never does.
constexpr int almostFull = 90;

/// A thin rounded bar.
class UsageBar : public ShareView
{
public:
    UsageBar()
        : ShareView(QAccessible::ProgressBar)
    {
        setFixedHeight(8);
    }

    void setColor(const QColor &color)
    {
        if (std::exchange(m_color, color) != color)
            update();
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF all(0, 0, width(), height());
        const double radius = all.height() / 2;
        painter.setPen(look::hairline);
        painter.setBrush(look::track);
        painter.drawRoundedRect(all.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
        if (share() <= 0)
            return;
        painter.setPen(Qt::NoPen);
        // Even a little shows as a dot, and keeps its round ends.
        QRectF used = all;
        used.setWidth(qBound(all.height(), all.width() * share(), all.width()));
        if (isRightToLeft())
            used.moveRight(all.right());
        painter.setBrush(m_color);
        painter.drawRoundedRect(used, radius, radius);
    }

private:
    QColor m_color = look::accent;
};

QString nameOf(const Volume &volume, const Texts &texts)
{
    if (volume.path == u"/"_s)
        return texts(u"SZ_STATUS_SYSTEM_VOLUME"_s, u"System volume"_s);
    return volume.path.section(u'/', -1);
}

} // namespace

class VolumeRow : public QWidget
{
public:
    VolumeRow(Volume volume, const Texts &texts)
        : m_volume(std::move(volume))
        , m_texts(texts)
        , m_figures(new ElidedLabel)
        , m_bar(new UsageBar)
    {
        auto *name = new ElidedLabel;
        name->setText(nameOf(m_volume, texts));
        name->setFont(look::font(1.0, QFont::Medium));
        // When there is too little room the name gives way, not the figures.
        name->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
        auto *place = new ElidedLabel(Qt::ElideMiddle);
        place->setText(
            u"%1 \u2022 %2 \u2022 %3"_s.arg(m_volume.path, m_volume.source, m_volume.type));
        place->setFont(look::font(0.9));
        look::setTextColor(place, look::secondaryText);
        m_figures->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto *grid = new QGridLayout(this);
        grid->setContentsMargins(0, 0, 0, 0);
        grid->setHorizontalSpacing(12);
        grid->setVerticalSpacing(6);
        grid->addWidget(name, 0, 0);
        grid->addWidget(m_figures, 0, 1);
        grid->addWidget(m_bar, 1, 0, 1, 2);
        grid->addWidget(place, 2, 0, 1, 2);
        grid->setColumnStretch(0, 1);
        setText(m_texts(u"SZ_STATUS_MEASURING"_s, u"Measuring\u2026"_s), false);
    }

    const Volume &volume() const { return m_volume; }

    void setUsage(const std::optional<VolumeUsage> &usage)
    {
        if (!usage) {
            setText(m_texts(u"SZ_STATUS_VOLUME_UNREADABLE"_s, u"Cannot be measured"_s), false);
            showShare(0, false);
            return;
        }
        const int percent = usage->percent();
        const bool warns = percent >= almostFull && !m_volume.readOnly;
        QString figures = m_texts(u"SZ_STATUS_VOLUME_USAGE"_s, u"%1 of %2 used, %3 free"_s,
                                  {sizeText(usage->used, m_texts), sizeText(usage->size, m_texts),
                                   sizeText(usage->available, m_texts)});
        if (warns)
            figures = m_texts(u"SZ_STATUS_VOLUME_ALMOST_FULL"_s, u"Almost full: %1"_s, {figures});
        setText(figures + u"   "_s + percentText(percent, m_texts), warns);
        showShare(percent / 100.0, warns);
    }

    void setSilent()
    {
        setText(m_texts(u"SZ_STATUS_VOLUME_SILENT"_s, u"Does not answer"_s), false);
        showShare(0, false);
    }

private:
    void setText(const QString &figures, bool warns)
    {
        if (m_figures->text() == figures)
            return;
        m_figures->setText(figures);
        look::setTextColor(m_figures, warns ? look::warningText : look::text);
        m_bar->setAccessibleName(
            u"%1, %2, %3"_s.arg(nameOf(m_volume, m_texts), m_volume.path, figures.simplified()));
    }

    void showShare(double share, bool warns)
    {
        m_bar->setShare(share);
        m_bar->setColor(warns ? look::warning : look::accent);
    }

    Volume m_volume;
    Texts m_texts;
    ElidedLabel *m_figures;
    UsageBar *m_bar;
};

VolumeList::VolumeList(Texts texts)
    : m_texts(texts)
    , m_column(new QVBoxLayout(this))
    , m_empty(new QLabel(texts(u"SZ_STATUS_NO_VOLUMES"_s, u"No volumes are reported"_s)))
{
    m_column->setContentsMargins(18, 16, 18, 16);
    m_column->setSpacing(18);
    m_empty->setTextFormat(Qt::PlainText);
    look::setTextColor(m_empty, look::secondaryText);
    m_column->addWidget(m_empty);
}

void VolumeList::setVolumes(const std::vector<Volume> &volumes)
{
    if (volumes == m_volumes)
        return;
    std::map<QString, VolumeRow *> rows;
    for (const Volume &volume : volumes) {
        const auto known = m_rows.find(volume.path);
        const bool same = known != m_rows.end() && known->second->volume() == volume;
        VolumeRow *row = same ? known->second : new VolumeRow(volume, m_texts);
        if (same)
            m_rows.erase(known);
        m_column->removeWidget(row);
        m_column->addWidget(row);
        row->show();
        rows[volume.path] = row;
    }
    for (const auto &[path, row] : m_rows)
        delete row;
    m_rows = std::move(rows);
    m_volumes = volumes;
    m_empty->setVisible(volumes.empty());
}

void VolumeList::setUsage(const QString &path, const std::optional<VolumeUsage> &usage)
{
    if (const auto row = m_rows.find(path); row != m_rows.end())
        row->second->setUsage(usage);
}

void VolumeList::setSilent(const QString &path)
{
    if (const auto row = m_rows.find(path); row != m_rows.end())
        row->second->setSilent();
}
