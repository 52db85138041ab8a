#include "StatusView.h"

#include "plugins/common/Look.h"
#include "SolvanePlugin.h"

#include <memory>

using namespace Qt::StringLiterals;

/// The first page of the program: what this machine is and how it is doing.
class StatusPlugin : public QObject, public mndPlugin, public mndPluginDelegate
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
    Q_INTERFACES(mndPlugin mndPluginDelegate)

public:
    Dictionary pluginInitialize(const Dictionary &parameters) override
    {
        auto *core = qobject_cast<mndCore *>(parameters.value<QObject *>(u"core"_s));
        const Texts texts(core);
        const QString resources = parameters.string(u"bundle"_s) + u"/Contents/Resources/"_s;
        m_view = std::make_unique<StatusView>(core);
        FillsParent::install(m_view.get());

        Dictionary info = Dictionary::make();
        info.setValue(u"id"_s, u"plugin.status"_s);
        info.setValue(u"name"_s, texts(u"SZ_STATUS_NAME"_s, u"Status"_s));
        info.setValue(u"parent"_s, texts(u"SZ_HEADING_SYSTEM"_s, u"System"_s));
        info.setValue(u"first"_s, true);
        info.setValue(u"icon"_s, look::icon(resources + u"status.svg"_s));
        info.setValue(u"icon-selected"_s, look::icon(resources + u"status-selected.svg"_s));
        info.setValue(u"view"_s, QVariant::fromValue<QWidget *>(m_view.get()));
        return info;
    }

    void onViewShow() override { m_view->setShownByHost(true); }
    void onViewHide() override { m_view->setShownByHost(false); }

private:
    std::unique_ptr<StatusView> m_view;
};

#include "StatusPlugin.moc"
