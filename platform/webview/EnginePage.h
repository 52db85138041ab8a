#pragma once

#include "platform/ui/WebPage.h"
#include "platform/webview/ScriptBridge.h"

#include <QPointer>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineView>

/// One page of the engine. Keeps nothing on disk. Main thread.
class EnginePage : public WebPage
{
public:
    EnginePage(QWidget *parent, WebPageObserver &observer);
    ~EnginePage() override;
    Q_DISABLE_COPY_MOVE(EnginePage)

    QWidget *widget() const override;
    void load(const QString &html, const QUrl &baseUrl) override;
    void load(const QUrl &address) override;
    void setPolicy(const WebPagePolicy &policy) override;
    void setObject(const WebPageObject &object) override;
    void runScript(const QString &script,
                   const std::function<void(const QVariant &)> &done) override;

private:
    class Page;
    class View;

    void setScript(const QString &name, const QString &source, quint32 world);

    QWebEngineProfile m_profile; ///< without a name: off the record
    ScriptBridge m_bridge;
    std::unique_ptr<Page> m_page;
    QPointer<View> m_view;
};
