#pragma once

#include "plugins/common/Card.h"
#include "plugins/common/Texts.h"

#include <QCheckBox>

/// A check box with a dark title: the host gives white ones to plain check boxes, and this one
/// stands on white.
class LoggingSwitch : public QCheckBox
{
    Q_OBJECT

public:
    using QCheckBox::QCheckBox;
};

/// The switch of the extended log, with what to know before using it. It follows the host's own
/// switch whenever the pointer or the focus comes to the page.
class LoggingCard : public Card
{
public:
    /// @param core the host; not null.
    LoggingCard(mndCore *core, const Texts &texts);

    /// Shows what the host says now.
    void refresh();

protected:
    bool event(QEvent *event) override;

private:
    mndCore *m_core;
    LoggingSwitch *m_switch;
};
