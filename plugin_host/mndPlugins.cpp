#include "plugin_host/mndPlugins.h"

#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/OwnTime.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/mndPlugin.h"
#include "plugin_host/PluginQuarantine.h"

#include <QEvent>
#include <QPointer>
#include <QScopedValueRollback>
#include <QWidget>

#include <stdexcept>

using namespace Qt::StringLiterals;

mndPlugins::mndPlugins(QObject *core)
    : m_core(core)
{ }

mndPlugins::~mndPlugins()
{
    while (!_plugins.isEmpty()) {
        auto *plugin = _plugins.takeLast().value<QObject *>(u"obj"_s);
        callWatched(plugin, [plugin] { delete plugin; });
    }
}

bool mndPlugins::listContainsID(const QString &id) const
{
    return !pluginWithID(id).isAbsent();
}

Dictionary mndPlugins::pluginAtIndex(quint64 index) const
{
    if (index > count())
        return {};
    if (index == count())
        throw std::out_of_range("plugin index equals the number of plugins");
    return _plugins[static_cast<qsizetype>(index)];
}

Dictionary mndPlugins::pluginWithID(const QString &id) const
{
    if (id.isNull())
        return {};
    for (const Dictionary &record : _plugins) {
        const Dictionary data = info(record);
        if (data.contains(u"id"_s) && data.string(u"id"_s) == id)
            return record;
    }
    return {};
}

namespace {

mndPluginDelegate *delegateOf(const Dictionary &record)
{
    return qobject_cast<mndPluginDelegate *>(record.value<QObject *>(u"obj"_s));
}

/// Guarded: what a plugin does when its view is hidden may delete another.
QList<QPointer<QWidget>> subviews(const QWidget *view)
{
    const auto children = view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    return {children.begin(), children.end()};
}

/// Tells when the view has been painted for the first time. Belongs to the view.
class FirstPainting : public QObject
{
public:
    FirstPainting(QWidget *view, std::function<void()> painted)
        : QObject(view)
        , m_painted(std::move(painted))
    {
        view->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        watched->removeEventFilter(this);
        // Its children are painted behind it.
        const auto tell = [this] {
            m_painted();
            deleteLater();
        };
        QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
        return false;
    }

private:
    std::function<void()> m_painted;
};

/// Of an object that is on its way out nothing more can be asked.
const void *address(const QVariant &object)
{
    return object.metaType().flags() & QMetaType::PointerToQObject
        ? *static_cast<void *const *>(object.constData())
        : nullptr;
}

} // namespace

/// A plugin's fault in a callback must not take the host along.
void mndPlugins::quietly(const Dictionary &record, const char *what,
                         void (mndPluginDelegate::*message)()) noexcept
{
    mndPluginDelegate *delegate = delegateOf(record);
    if (!delegate)
        return;
    PluginCall call{record.value<QObject *>(u"obj"_s), QString::fromLatin1(what), 0, {}};
    const OwnTime time(m_observer != nullptr);
    try {
        (delegate->*message)();
    } catch (...) {
        call.exception = currentExceptionText();
        systemServices().systemLog->write(
            u"%1 of a plugin threw an exception: %2"_s.arg(call.name, call.exception));
    }
    call.milliseconds = time.milliseconds();
    if (m_observer)
        m_observer->pluginCalled(call);
}

void mndPlugins::performSelectorOnAllDelegates(const Selector &selector)
{
    broadcast(selector, [] { return true; });
}

void mndPlugins::broadcast(const Selector &selector, const std::function<bool()> &goOn)
{
    for (qsizetype i = 0; i < _plugins.size() && goOn(); ++i) {
        const Dictionary record = _plugins[i];
        if (!delegateOf(record))
            continue;
        // The protocol's own three are virtual: a plugin need not declare them as slots.
        if (selector.name() == "onViewShow"_L1)
            quietly(record, "onViewShow", &mndPluginDelegate::onViewShow);
        else if (selector.name() == "onViewHide"_L1)
            quietly(record, "onViewHide", &mndPluginDelegate::onViewHide);
        else if (selector.name() == "onAllPluginsLoaded"_L1)
            callWatched(record.value<QObject *>(u"obj"_s), [&] {
                quietly(record, "onAllPluginsLoaded", &mndPluginDelegate::onAllPluginsLoaded);
            });
        else if (selector.argumentCount() == 0)
            perform::sendQuietly(record.value<QObject *>(u"obj"_s), selector);
    }
}

void mndPlugins::removeSubviews(QWidget *hostView)
{
    for (const QPointer<QWidget> &subview : subviews(hostView)) {
        if (subview)
            subview->hide();
        if (subview)
            subview->setParent(nullptr);
    }
}

void mndPlugins::callWatched(QObject *plugin, const std::function<void()> &call)
{
    const QString bundle = m_bundles.value(plugin);
    if (bundle.isNull())
        return call();
    m_quarantine->enter(bundle);
    call();
    m_quarantine->leave(bundle);
}

void mndPlugins::watchFirstShow(QObject *plugin, QWidget *view)
{
    // Of a view that its children cover nothing may be painted.
    constexpr double longest = 0.5; // seconds
    if (!m_neverShown.remove(plugin))
        return;
    const auto leave = [this, guard = QPointer(&m_guard), bundle = m_bundles.value(plugin)] {
        if (guard)
            m_quarantine->leave(bundle);
    };
    m_quarantine->enter(m_bundles.value(plugin));
    new FirstPainting(view, leave);
    systemServices().scheduler->after(longest, &m_guard, leave);
}

void mndPlugins::watchView(const Dictionary &record)
{
    const QWidget *view = info(record).value<QWidget *>(u"view"_s);
    const std::pair<const QObject *, const QObject *> watch(record.value<QObject *>(u"obj"_s),
                                                            view);
    if (!view || m_watchedViews.contains(watch))
        return;
    m_watchedViews.insert(watch);
    QObject::connect(view, &QObject::destroyed, &m_guard,
                     [this, watch, shared = info(record)](const QObject *gone) mutable {
                         m_watchedViews.remove(watch);
                         // The plugin may have put another one there.
                         if (address(shared.value(u"view"_s)) == gone)
                             shared.setValue(u"view"_s, {});
                     });
}

void mndPlugins::doDisplayMainViewForPluginAtIndex(quint64 index, QWidget *hostView)
{
    // Plugins may show one another from their messages, in a circle too.
    constexpr int deepest = 16;
    if (!hostView || index >= count() || m_displayDepth >= deepest)
        return;
    const Dictionary record = _plugins[static_cast<qsizetype>(index)];
    const QPointer<QWidget> view = info(record).value<QWidget *>(u"view"_s);
    if (!view || view == hostView || view->isAncestorOf(hostView))
        return;
    watchView(record);

    const QScopedValueRollback depth(m_displayDepth, m_displayDepth + 1);
    const quint64 own = ++m_displays;
    const QPointer<QWidget> area = hostView;
    // A plugin that shows another one meanwhile has decided what is shown.
    const auto isCurrent = [&] { return own == m_displays && area && view; };
    removeSubviews(area);
    broadcast(Selector(u"onViewHide"_s), isCurrent);
    if (!isCurrent())
        return;
    watchFirstShow(record.value<QObject *>(u"obj"_s), view);
    quietly(record, "onViewShow", &mndPluginDelegate::onViewShow);
    if (!isCurrent())
        return;
    view->setParent(area);
    view->show();
}

void mndPlugins::doDisplayMainViewForPluginById(const QString &id, QWidget *hostView)
{
    for (quint64 i = 0; i < count(); ++i) {
        const Dictionary data = info(pluginAtIndex(i));
        if (data.contains(u"id"_s) && data.string(u"id"_s) == id)
            return doDisplayMainViewForPluginAtIndex(i, hostView);
    }
}
