#include "plugin_host/SourceListItem.h"

using namespace Qt::StringLiterals;

std::unique_ptr<SourceListItem>
SourceListItem::itemWithTitle(const QString &title, const QString &identifier, const QImage &icon)
{
    auto item = std::make_unique<SourceListItem>();
    item->title = title;
    item->identifier = identifier;
    item->icon = icon;
    return item;
}

QString SourceListItem::description() const
{
    return u"<%1: 0x%2 | identifier = %3 | title = %4 >"_s.arg(
        QString::fromLatin1(metaObject()->className()),
        QString::number(reinterpret_cast<quintptr>(this), 16), identifier, title);
}
