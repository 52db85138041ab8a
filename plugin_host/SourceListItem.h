#pragma once

#include <QImage>
#include <QList>
#include <QObject>
#include <QString>

#include <memory>

/// One node of the sidebar's tree: a heading with its rows, or a plugin's row.
///
/// Rows are found again by their titles. Children are not owned: whoever builds the tree owns its
/// items. Main thread only.
class SourceListItem : public QObject
{
    Q_OBJECT

public:
    static constexpr qint64 noBadge = -1;

    SourceListItem() = default;

    static std::unique_ptr<SourceListItem>
    itemWithTitle(const QString &title, const QString &identifier, const QImage &icon = {});

    QString title;
    QString identifier; ///< "item.%d" for a heading, the plugin's index for a row
    QImage icon;
    QImage iconSelected;
    qint64 badgeValue = noBadge;
    QList<SourceListItem *> children;

    /// Every value but noBadge counts, other negative ones too.
    bool hasBadge() const { return badgeValue != noBadge; }
    bool hasChildren() const { return !children.isEmpty(); }
    bool hasIcon() const { return !icon.isNull(); }

    /// One line for a log.
    QString description() const;
};
