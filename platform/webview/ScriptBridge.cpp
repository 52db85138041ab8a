#include "platform/webview/ScriptBridge.h"

#include "platform/ui/WebPage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <QWebEnginePage>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {

/// More is no call that anybody means.
constexpr qsizetype longestCall = 64 * 1024;

QString json(const QJsonArray &value)
{
    return QString::fromUtf8(QJsonDocument(value).toJson(QJsonDocument::Compact));
}

} // namespace

/// What the channel knows of the program: this method.
class ScriptBridge::Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(WebPageObserver &observer)
        : m_observer(observer)
    { }

    /// @param call a JSON array of texts: the function's name and its arguments. Any other is none.
    Q_INVOKABLE void call(const QString &call)
    {
        if (call.size() > longestCall)
            return;
        const QJsonArray texts = QJsonDocument::fromJson(call.toUtf8()).array();
        QStringList parts;
        for (const QJsonValue &text : texts) {
            if (!text.isString())
                return;
            parts << text.toString();
        }
        if (!parts.isEmpty())
            m_observer.functionCalled(parts.first(), parts.mid(1));
    }

private:
    WebPageObserver &m_observer;
};

ScriptBridge::ScriptBridge(WebPageObserver &observer)
    : m_eventName(QUuid::createUuid().toString(QUuid::WithoutBraces))
    , m_receiver(std::make_unique<Receiver>(observer))
{
    m_channel.registerObject(u"program"_s, m_receiver.get());
}

ScriptBridge::~ScriptBridge()
{
    m_channel.deregisterObject(m_receiver.get());
}

void ScriptBridge::connectTo(QWebEnginePage &page)
{
    page.setWebChannel(&m_channel, QWebEngineScript::ApplicationWorld);
}

// Only the main frame has a way out; the others hand their calls to it.
QString ScriptBridge::listenerScript() const
{
    return uR"js((() => {
    const [name] = %1;
    const invokeMethod = 6;
    let calls = 0;
    const send = call => qt.webChannelTransport.send(JSON.stringify(
        {type: invokeMethod, id: ++calls, object: 'program', method: 'call', args: [call]}));
    const pass = window === top ? send : call => top.postMessage({[name]: call}, '*');
    window.addEventListener(name, event => {
        event.stopImmediatePropagation();
        pass(String(event.detail));
    }, true);
    if (window === top) window.addEventListener('message', event => {
        const call = event.data && event.data[name];
        if (typeof call !== 'string') return;
        event.stopImmediatePropagation();
        send(call);
    }, true);
})();)js"_s.arg(json({m_eventName}));
}

// Everything that is used later is taken now, before a page can replace it, and nothing leads back
// from the functions: no prototype, no constructor, no name.
QString ScriptBridge::objectScript(const WebPageObject &object) const
{
    return uR"js((() => {
    'use strict';
    const [event, key, names, constants] = %1;
    const target = window, {apply, setPrototypeOf, ownKeys} = Reflect, {freeze} = Object;
    const dispatch = EventTarget.prototype.dispatchEvent, Event = CustomEvent;
    const {stringify} = JSON, text = String;
    const offered = {...constants};
    for (const name of names) {
        const call = (...given) => {
            let written = stringify(name);
            for (let i = 0; i < given.length; ++i) written += ',' + stringify(text(given[i]));
            apply(dispatch, target, [new Event(event, {__proto__: null, detail: '[' + written + ']'})]);
        };
        for (const own of ownKeys(call)) delete call[own];
        setPrototypeOf(call, null);
        offered[name] = freeze(call);
    }
    setPrototypeOf(offered, null);
    Object.defineProperty(target, key, {value: freeze(offered), enumerable: true});
})();)js"_s.arg(json({m_eventName, object.name, QJsonArray::fromStringList(object.functions),
                      QJsonObject::fromVariantMap(object.constants)}));
}

#include "ScriptBridge.moc"
