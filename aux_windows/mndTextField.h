#pragma once

#include "platform/foundation/Selector.h"
#include "platform/ui/AttributedString.h"

#include <QLabel>
#include <QPointer>

/// A text label that acts as a link or a small button. While enabled its text is underlined and the
/// pointing hand shows over it; a press sends a message without argument to a target.
///
/// It is reached with Tab and pressed with Return or Space; assistive technology sees a link. What
/// its target throws is dropped. Main thread.
class mndTextField : public QLabel
{
    Q_OBJECT

public:
    explicit mndTextField(QWidget *parent = nullptr);
    explicit mndTextField(const QString &text, QWidget *parent = nullptr);

    /// @param target not owned; null, like an empty selector, makes the label unclickable.
    void setClickTarget(QObject *target, const Selector &selector);
    /// Without either the label still looks like a link; a press does nothing.
    bool isClickable() const { return _obj && !_sel.isEmpty() && isEnabled(); }

    /// Shows the text as it is, in the link look while the label is enabled.
    void setStringValue(const QString &text);
    QString stringValue() const { return text(); }
    AttributedString attributedStringValue() const;

    /// Puts the link look on, or takes it off, also when the label is as it shall be already.
    void setEnabled(bool enabled);
    void resetCursorRects();
    /// What a press of the mouse does.
    void click() noexcept;

protected:
    void changeEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setUp();

    QPointer<QObject> _obj;
    Selector _sel;
};
