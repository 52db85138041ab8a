#include "plugin_host/mndPlugins.h"

#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/mndPlugin.h"
#include "plugin_host/PluginQuarantine.h"

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
    while (!_plugins.isEmpty())
        delete _plugins.takeLast().value<QObject *>(u"obj"_s);
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

/// A plugin's fault in a callback must not take the host along.
template <typename Call>
void quietly(const char *what, const Call &call) noexcept
{
    try {
        call();
    } catch (...) {
        systemServices().systemLog->write(u"%1 of a plugin threw an exception: %2"_s.arg(
            QLatin1StringView(what), currentExceptionText()));
    }
}

} // namespace

void mndPlugins::performSelectorOnAllDelegates(const Selector &selector)
{
    broadcast(selector, [] { return true; });
}

void mndPlugins::broadcast(const Selector &selector, const std::function<bool()> &goOn)
{
    for (qsizetype i = 0; i < _plugins.size() && goOn(); ++i) {
        const Dictionary record = _plugins[i];
        mndPluginDelegate *delegate = delegateOf(record);
        if (!delegate)
            continue;
        // The protocol's own three are virtual: a plugin need not declare them as slots.
        if (selector.name() == "onViewShow"_L1)
            quietly("onViewShow", [&] { delegate->onViewShow(); });
        else if (selector.name() == "onViewHide"_L1)
            quietly("onViewHide", [&] { delegate->onViewHide(); });
        else if (selector.name() == "onAllPluginsLoaded"_L1)
            quietly("onAllPluginsLoaded", [&] { delegate->onAllPluginsLoaded(); });
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

void mndPlugins::watchFirstShow(QObject *plugin)
{
    // Time for the first painting and for what a view does as soon as it is seen.
    constexpr double seconds = 0.5;
    const QString bundle = m_neverShown.take(plugin);
    if (bundle.isNull())
        return;
    m_quarantine->enter(bundle);
    systemServices().scheduler->after(seconds, &m_guard,
                                      [this, bundle] { m_quarantine->leave(bundle); });
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

    const QScopedValueRollback depth(m_displayDepth, m_displayDepth + 1);
    const quint64 own = ++m_displays;
    const QPointer<QWidget> area = hostView;
    // A plugin that shows another one meanwhile has decided what is shown.
    const auto isCurrent = [&] { return own == m_displays && area && view; };
    removeSubviews(area);
    broadcast(Selector(u"onViewHide"_s), isCurrent);
    if (!isCurrent())
        return;
    watchFirstShow(record.value<QObject *>(u"obj"_s));
    if (mndPluginDelegate *delegate = delegateOf(record))
        quietly("onViewShow", [&] { delegate->onViewShow(); });
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
