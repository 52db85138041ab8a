#include "platform/webview/PagePolicyScript.h"

#include "platform/ui/WebPage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

QString pagePolicyScript(const WebPagePolicy &policy)
{
    QJsonArray selectable;
    for (const auto &row : policy.selectable)
        selectable.append(QJsonArray{row[0], row[1]});
    const QJsonObject rules{
        {"drops"_L1, policy.acceptsDrops},  {"drags"_L1, policy.startsDrags},
        {"menu"_L1, policy.hasContextMenu}, {"scrolls"_L1, policy.scrolls},
        {"selectable"_L1, selectable},
    };
    const QString script = uR"js((() => {
    const rules = %1;
    const refuse = event => { event.preventDefault(); event.stopImmediatePropagation(); };
    const on = (names, handler) =>
        names.forEach(name => window.addEventListener(name, handler, {capture: true, passive: false}));
    if (!rules.menu) on(['contextmenu'], refuse);
    if (!rules.drops) on(['dragenter', 'dragover', 'drop'], refuse);
    if (!rules.drags) on(['dragstart'], refuse);

    // By type: those of addresses and numbers hold text, too, but do not tell what is selected.
    const textTypes = ['text', 'search', 'url', 'tel', 'email', 'password', 'number'];
    const isField = node => node instanceof HTMLTextAreaElement ||
        (node instanceof HTMLInputElement && textTypes.includes(node.type));
    const isEditable = node => {
        const element = node && node.nodeType !== Node.ELEMENT_NODE ? node.parentElement : node;
        return Boolean(element) && (isField(element) || element.isContentEditable === true);
    };
    const allows = (start, end) => rules.selectable[Number(isEditable(start))][Number(isEditable(end))];
    on(['selectstart'], event => { if (!allows(event.target, event.target)) refuse(event); });
    document.addEventListener('selectionchange', () => {
        const selection = document.getSelection();
        // So it is for a field, which keeps its selection to itself.
        if (selection.isCollapsed) return;
        const range = selection.getRangeAt(0);
        if (!allows(range.startContainer, range.endContainer)) selection.removeAllRanges();
    }, true);

    // What scrolls inside the page goes on doing so.
    if (!rules.scrolls && window === window.top) {
        const sheet = new CSSStyleSheet();
        sheet.replaceSync('html, body { overflow: hidden !important; }');
        document.adoptedStyleSheets = [sheet];
        window.addEventListener('scroll', () => {
            if (scrollX || scrollY) window.scrollTo(0, 0);
        }, true);
    }
})();)js"_s;
    return script.arg(QString::fromUtf8(QJsonDocument(rules).toJson(QJsonDocument::Compact)));
}
