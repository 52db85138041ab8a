#include "SupportView.h"

#include "plugins/common/Look.h"
#include "SolvanePlugin.h"

#include <memory>

using namespace Qt::StringLiterals;

/// The page that tells how to get help.
class SupportPlugin : public QObject, public mndPlugin, public mndPluginDelegate
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID mndPlugin_iid FILE "plugin.json")
    Q_INTERFACES(mndPlugin mndPluginDelegate)

public:
    Dictionary pluginInitialize(const Dictionary &parameters) override
    {
        auto *core = qobject_cast<mndCore *>(parameters.value<QObject *>(u"core"_s));
        const Texts texts(core);
        const QString bundle = parameters.string(u"bundle"_s);
        const QString resources = bundle + u"/Contents/Resources/"_s;
        m_view = std::make_unique<SupportView>(core, bundle);
        FillsParent::install(m_view.get());

        Dictionary info = Dictionary::make();
        info.setValue(u"id"_s, u"plugin.support"_s);
        info.setValue(u"name"_s, texts(u"SZ_SUPPORT_NAME"_s, u"Support"_s));
        info.setValue(u"parent"_s, texts(u"SZ_HEADING_ONLINE"_s, u"Online"_s));
        info.setValue(u"icon"_s, look::icon(resources + u"support.svg"_s));
        info.setValue(u"icon-selected"_s, look::icon(resources + u"support-selected.svg"_s));
        info.setValue(u"view"_s, QVariant::fromValue<QWidget *>(m_view.get()));
        return info;
    }

    /// Plugins may have been added since the page was shown last.
    void onViewShow() override { m_view->refresh(); }

private:
    std::unique_ptr<SupportView> m_view;
};

#include "SupportPlugin.moc"
