#include "plugins/common/ShareView.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace {

constexpr int percent = 100;

class AccessibleShare : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit AccessibleShare(ShareView *view)
        : QAccessibleWidget(view, view->role())
        , m_view(view)
    { }

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }

    QVariant currentValue() const override { return qRound(m_view->share() * percent); }
    void setCurrentValue(const QVariant &) override { }
    QVariant minimumValue() const override { return 0; }
    QVariant maximumValue() const override { return percent; }
    QVariant minimumStepSize() const override { return 1; }

private:
    ShareView *m_view;
};

QAccessibleInterface *accessibleShare(const QString &, QObject *object)
{
    auto *view = dynamic_cast<ShareView *>(object);
    return view ? new AccessibleShare(view) : nullptr;
}

} // namespace

ShareView::ShareView(QAccessible::Role role)
    : m_role(role)
{
    QAccessible::installFactory(accessibleShare);
}

void ShareView::setShare(double share)
{
    const double shown = std::clamp(share, 0.0, 1.0);
    if (shown == m_share)
        return;
    m_share = shown;
    update();
    QAccessibleValueChangeEvent changed(this, qRound(shown * percent));
    QAccessible::updateAccessibility(&changed);
}
