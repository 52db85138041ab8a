#include "platform/ui/WebPage.h"
#include "platform/webview/EnginePage.h"
#include "platform/webview/EngineSettings.h"

#include <QObject>

/// The module's root object.
class WebEngineModule : public QObject, public WebEngine
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID WebEngine_iid)
    Q_INTERFACES(WebEngine)

public:
    WebEngineModule() { prepareEngine(); }

    std::unique_ptr<WebPage> newPage(QWidget *parent, WebPageObserver &observer) override
    {
        return std::make_unique<EnginePage>(parent, observer);
    }
};

#include "WebEngineModule.moc"
