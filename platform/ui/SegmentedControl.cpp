#include "platform/ui/SegmentedControl.h"

#include "platform/foundation/Perform.h"

#include "platform/ui/HostColors.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace {

constexpr int segmentHeight = 30;
constexpr int leastWidth = 56;
constexpr int cutWidth = 96; // texts that need no more are never cut
constexpr int textMargin = 16;
constexpr int segmentGap = 8;
constexpr qreal segmentRadius = 6;
constexpr int segmentTextSize = 13;

} // namespace

class SegmentedControl::Segment : public QAbstractButton
{
public:
    explicit Segment(QImage image)
        : m_image(std::move(image))
    {
        setUp();
    }
    explicit Segment(QString label)
        : m_label(std::move(label))
    {
        setUp();
        // Not the button's own text: what a plugin calls its button is no place for key shortcuts.
        setAccessibleName(m_label);
    }

    void setOpenEnds(bool before, bool after)
    {
        m_isOpenBefore = before;
        m_isOpenAfter = after;
        update();
    }

    QSize sizeHint() const override
    {
        const int width = m_label.isNull() ? qRound(m_image.deviceIndependentSize().width())
                                           : fontMetrics().horizontalAdvance(m_label);
        return {std::max(leastWidth, width + 2 * textMargin), segmentHeight};
    }
    QSize minimumSizeHint() const override
    {
        return {std::min(sizeHint().width(), cutWidth), segmentHeight};
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
        if (isReturn && !event->isAutoRepeat())
            click();
        else
            QAbstractButton::keyPressEvent(event);
    }

    void resizeEvent(QResizeEvent *event) override
    {
        QAbstractButton::resizeEvent(event);
        if (!m_label.isNull())
            setToolTip(elided() == m_label ? QString() : m_label);
    }

    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.setPen(HostColors::segmentEdge);
        painter.setBrush(isDown()           ? HostColors::segmentPressed
                             : underMouse() ? HostColors::segmentUnderMouse
                                            : HostColors::segment);
        painter.drawPath(outline());
        if (hasFocus()) {
            painter.setPen(QPen(HostColors::segmentRing, 2));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), segmentRadius,
                                    segmentRadius);
        }
        if (m_label.isNull()) {
            drawImage(painter);
        } else {
            painter.setPen(HostColors::lightText);
            painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, elided());
        }
    }

private:
    void setUp()
    {
        setFocusPolicy(Qt::TabFocus);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        QFont look = font();
        look.setPixelSize(segmentTextSize);
        setFont(look);
    }

    QString elided() const
    {
        return fontMetrics().elidedText(m_label, Qt::ElideMiddle, width() - textMargin);
    }

    /// Rounded where the control ends, straight where the next segment begins.
    QPainterPath outline() const
    {
        const bool isOpenLeft = isRightToLeft() ? m_isOpenAfter : m_isOpenBefore;
        const bool isOpenRight = isRightToLeft() ? m_isOpenBefore : m_isOpenAfter;
        QRectF all = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        if (isOpenLeft)
            all.setLeft(-1); // the neighbour draws the line between them
        QPainterPath path;
        path.setFillRule(Qt::WindingFill);
        path.addRoundedRect(all, segmentRadius, segmentRadius);
        if (isOpenLeft)
            path.addRect(all.adjusted(0, 0, -segmentRadius, 0));
        if (isOpenRight)
            path.addRect(all.adjusted(segmentRadius, 0, 0, 0));
        return path.simplified();
    }

    void drawImage(QPainter &painter) const
    {
        const QSizeF size = m_image.deviceIndependentSize();
        const qreal ratio = devicePixelRatioF();
        QImage fitting = m_image.scaled((size * ratio).toSize(), Qt::IgnoreAspectRatio,
                                        Qt::SmoothTransformation);
        fitting.setDevicePixelRatio(ratio);
        const QPointF corner = QRectF(rect()).center() - QPointF(size.width(), size.height()) / 2;
        painter.drawImage(QPointF(qRound(corner.x() * ratio), qRound(corner.y() * ratio)) / ratio,
                          fitting);
    }

    QImage m_image;
    QString m_label;
    bool m_isOpenBefore = false;
    bool m_isOpenAfter = false;
};

SegmentedControl::SegmentedControl(QObject *target, Selector action)
    : m_target(target)
    , m_action(std::move(action))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
}

SegmentedControl::SegmentedControl(const QList<QImage> &images, QObject *target,
                                   const Selector &action)
    : SegmentedControl(target, action)
{
    for (const QImage &image : images)
        add(new Segment(image));
    setSegmentStyle(Joined);
}

SegmentedControl::SegmentedControl(const QStringList &labels, QObject *target,
                                   const Selector &action)
    : SegmentedControl(target, action)
{
    for (const QString &label : labels)
        add(new Segment(label));
    setSegmentStyle(Joined);
}

void SegmentedControl::add(Segment *segment)
{
    const int index = segmentCount();
    m_segments << segment;
    layout()->addWidget(segment);
    connect(segment, &QAbstractButton::clicked, this, [this, index] { tapped(index); });
}

void SegmentedControl::setSegmentStyle(Style style)
{
    m_style = style;
    const bool isJoined = style == Joined;
    layout()->setSpacing(isJoined ? 0 : segmentGap);
    for (Segment *segment : m_segments)
        segment->setOpenEnds(isJoined && segment != m_segments.first(),
                             isJoined && segment != m_segments.last());
}

QWidget *SegmentedControl::segment(int index) const
{
    return m_segments.value(index);
}

void SegmentedControl::setSegmentName(int index, const QString &name)
{
    if (QWidget *named = segment(index)) {
        named->setAccessibleName(name);
        named->setToolTip(name);
    }
}

void SegmentedControl::tapped(int index)
{
    m_selected = index;
    perform::sendQuietly(m_target, m_action, {QVariant::fromValue<QObject *>(this)});
}
