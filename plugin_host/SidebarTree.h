#pragma once

#include "plugin_host/SourceListItem.h"

#include <optional>
#include <vector>

class mndPlugins;

/// The sidebar's tree of headings and plugin rows, built once from the registry.
///
/// Owns every item, those of hidden plugins too. Main thread only.
class SidebarTree
{
public:
    using Headings = QList<SourceListItem *>;

    /// A plugin that names this heading gets no row.
    static QString hiddenHeading();

    /// The first heading of that title in the list; a new one, appended with the identifier
    /// "item.%d", when there is none. Null for the hidden heading.
    SourceListItem *getParentItemNamed(const QString &title, Headings &headings);

    /// Makes an item for every plugin that has a view and puts it under its heading: last, or
    /// first when the plugin says so. The item is also stored in the plugin's info dictionary under
    /// "__item".
    void addPlugins(const mndPlugins &plugins, Headings &headings);

    /// The row under the first heading of that title that has rows; null when there is none.
    static SourceListItem *findItem(const Headings &headings, const QString &heading,
                                    const QString &title);

    /// The row's number in the outline with every heading expanded. A heading title that occurs
    /// twice shifts the rows of the second one by the number of rows of the first.
    static std::optional<qsizetype> rowNumber(const Headings &headings, const QString &heading,
                                              const QString &title);

private:
    SourceListItem *keep(std::unique_ptr<SourceListItem> item);

    std::vector<std::unique_ptr<SourceListItem>> m_items;
};
