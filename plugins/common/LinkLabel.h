#pragma once

#include <QLabel>

/// A label that is one link: Tab reaches it at the first press, Return follows it, and so does
/// assistive technology, to which it is a link that can be pressed. linkActivated() tells. Main
/// thread.
class LinkLabel : public QLabel
{
public:
    /// @param link told by linkActivated(); @param title plain text, also the accessible name.
    LinkLabel(const QString &link, const QString &title);

    void follow();

protected:
    void focusInEvent(QFocusEvent *event) override;

private:
    QString m_link;
};
