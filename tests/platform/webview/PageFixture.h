#pragma once

#include "host/HostFixture.h"
#include "platform/ui/WebView.h"

/// A host that has the real engine, and a web view in which pages are asked.
struct EngineHost : Host
{
    void addEngine() const
    {
        const QString folder = services.root.filePath(u"Solvane.app/Contents/PlugIns"_s);
        QDir().mkpath(folder);
        QFile::link(QStringLiteral(ENGINE_MODULE), folder + u"/WebEngine.so"_s);
    }

    /// Nothing when the page goes away while it is asked.
    std::optional<QVariant> answerTo(const QString &script, int patience) const
    {
        auto answer = std::make_shared<std::optional<QVariant>>();
        view->runScript(script, [answer](const QVariant &result) { *answer = result; });
        return QTest::qWaitFor([&] { return answer->has_value(); }, patience) ? *answer
                                                                              : std::nullopt;
    }
    QVariant ask(const QString &script) const
    {
        const std::optional<QVariant> answer = answerTo(script, 10000);
        EXPECT_TRUE(answer) << "no answer";
        return answer.value_or(QVariant());
    }
    bool becomes(const QString &script, const QVariant &wanted) const
    {
        return QTest::qWaitFor([&] { return answerTo(script, 1000) == wanted; }, 20000);
    }
    /// Waits until the page has done what it had begun: drawn twice, and come to its next task.
    void settle() const
    {
        ask(u"window.settled = 0; requestAnimationFrame(() => requestAnimationFrame(() => "
            "setTimeout(() => { settled = 1 }))); 0"_s);
        EXPECT_TRUE(becomes(u"settled"_s, 1));
    }

    WebView *view = nullptr;
};
