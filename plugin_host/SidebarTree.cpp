#include "plugin_host/SidebarTree.h"

#include "plugin_host/mndPlugins.h"

#include <QWidget>

using namespace Qt::StringLiterals;

QString SidebarTree::hiddenHeading()
{
    return u"*hidden*"_s;
}

SourceListItem *SidebarTree::keep(std::unique_ptr<SourceListItem> item)
{
    m_items.push_back(std::move(item));
    return m_items.back().get();
}

SourceListItem *SidebarTree::getParentItemNamed(const QString &title, Headings &headings)
{
    if (title == hiddenHeading())
        return nullptr;
    for (SourceListItem *heading : headings) {
        if (heading->title == title)
            return heading;
    }
    headings.append(keep(SourceListItem::itemWithTitle(title, u"item.%1"_s.arg(headings.size()))));
    return headings.last();
}

void SidebarTree::addPlugins(const mndPlugins &plugins, Headings &headings)
{
    for (quint64 i = 0; i < plugins.count(); ++i) {
        Dictionary info = mndPlugins::info(plugins.pluginAtIndex(i));
        if (info.isAbsent() || !info.value<QWidget *>(u"view"_s))
            continue;
        SourceListItem *item = keep(SourceListItem::itemWithTitle(
            info.string(u"name"_s), QString::number(i), info.value<QImage>(u"icon"_s)));
        item->iconSelected = info.value<QImage>(u"icon-selected"_s);
        SourceListItem *heading = getParentItemNamed(info.string(u"parent"_s), headings);
        info.setValue(u"__item"_s, QVariant::fromValue<QObject *>(item));
        if (!heading)
            continue;
        if (info.contains(u"first"_s))
            heading->children.prepend(item);
        else
            heading->children.append(item);
    }
}

SourceListItem *SidebarTree::findItem(const Headings &headings, const QString &heading,
                                      const QString &title)
{
    for (const SourceListItem *candidate : headings) {
        if (candidate->title != heading || !candidate->hasChildren())
            continue;
        for (SourceListItem *child : candidate->children) {
            if (child->title == title)
                return child;
        }
        return nullptr;
    }
    return nullptr;
}

std::optional<qsizetype> SidebarTree::rowNumber(const Headings &headings, const QString &heading,
                                                const QString &title)
{
    qsizetype counter = 1;
    for (const SourceListItem *candidate : headings) {
        if (candidate->title == heading && candidate->hasChildren()) {
            for (qsizetype j = 0; j < candidate->children.size(); ++j) {
                if (candidate->children[j]->title == title)
                    return counter + j;
            }
            counter += candidate->children.size();
        }
        counter += candidate->children.size() + 1;
    }
    return std::nullopt;
}
