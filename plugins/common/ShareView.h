#pragma once

#include <QAccessible>
#include <QWidget>

/// A widget that shows a share of a whole. Assistive technology hears its role, its accessible name
/// and the share in percent, which it cannot set. Main thread.
class ShareView : public QWidget
{
public:
    /// @param role what the share is drawn as: QAccessible::Chart or QAccessible::ProgressBar.
    explicit ShareView(QAccessible::Role role);

    QAccessible::Role role() const { return m_role; }
    /// 0 to 1.
    double share() const { return m_share; }
    /// What lies outside of 0 to 1 counts as the nearer end.
    void setShare(double share);

private:
    QAccessible::Role m_role;
    double m_share = 0;
};
