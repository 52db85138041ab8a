#include "plugin_host/mndPlugins.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/mndPlugin.h"

#include <QPointer>
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
    return !id.isNull() && !pluginWithID(id).isAbsent();
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

QList<QWidget *> subviews(const QWidget *view)
{
    return view->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
}

/// A plugin's fault in a callback must not take the host along.
template <typename Call>
void quietly(const Call &call) noexcept
{
    try {
        call();
    } catch (...) { }
}

} // namespace

void mndPlugins::performSelectorOnAllDelegates(const Selector &selector)
{
    for (qsizetype i = 0; i < _plugins.size(); ++i) {
        QObject *plugin = _plugins[i].value<QObject *>(u"obj"_s);
        mndPluginDelegate *delegate = delegateOf(_plugins[i]);
        if (!delegate)
            continue;
        // The protocol's own three are virtual: a plugin need not declare them as slots.
        if (selector.name() == "onViewShow"_L1)
            quietly([&] { delegate->onViewShow(); });
        else if (selector.name() == "onViewHide"_L1)
            quietly([&] { delegate->onViewHide(); });
        else if (selector.name() == "onAllPluginsLoaded"_L1)
            quietly([&] { delegate->onAllPluginsLoaded(); });
        else if (selector.argumentCount() == 0)
            perform::sendQuietly(plugin, selector);
    }
}

void mndPlugins::removeSubviews(QWidget *hostView)
{
    for (QWidget *subview : subviews(hostView)) {
        subview->hide();
        subview->setParent(nullptr);
    }
}

void mndPlugins::doDisplayMainViewForPluginAtIndex(quint64 index, QWidget *hostView)
{
    if (!hostView || index >= count())
        return;
    const Dictionary record = _plugins[static_cast<qsizetype>(index)];
    const QPointer<QWidget> view = info(record).value<QWidget *>(u"view"_s);
    if (!view)
        return;
    removeSubviews(hostView);
    performSelectorOnAllDelegates(Selector(u"onViewHide"_s));
    if (mndPluginDelegate *delegate = delegateOf(record))
        quietly([&] { delegate->onViewShow(); });
    // A plugin that shows another one meanwhile has decided what is shown.
    if (!view || !subviews(hostView).isEmpty())
        return;
    view->setParent(hostView);
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
