#include "LoggingCard.h"

#include "plugins/common/Look.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

LoggingCard::LoggingCard(mndCore *core, const Texts &texts)
    : m_core(core)
    , m_switch(new LoggingSwitch(texts(u"SZ_EXTENDED_LOGGING"_s, u"Extended logging"_s)))
{
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(18, 16, 18, 16);
    column->setSpacing(8);
    m_switch->setFont(look::font(1.0, QFont::DemiBold));
    auto *info = new QLabel(
        texts(u"SZ_EXTENDED_LOGGING_PROMPT"_s,
              u"Extended logging generates a lot of data and may reduce the performance of "
              "Solvane.  Please only enable this option if support has asked you to do so for "
              "troubleshooting purposes."_s)
            .simplified());
    info->setTextFormat(Qt::PlainText);
    info->setWordWrap(true);
    look::setTextColor(info, look::secondaryText);
    m_switch->setAccessibleDescription(info->text());
    column->addWidget(m_switch);
    column->addWidget(info);
    connect(m_switch, &QCheckBox::clicked, this, [this](bool on) {
        m_core->setExtendedLoggingValue(on);
        refresh();
    });
    refresh();
}

void LoggingCard::refresh()
{
    m_switch->setChecked(m_core->extendedLoggingValue());
}

bool LoggingCard::event(QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::WindowActivate)
        refresh();
    return Card::event(event);
}
