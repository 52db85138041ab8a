#include "sourcelist/PXSourceList.h"

#include "platform/foundation/Perform.h"
#include "sourcelist/SourceListGeometry.h"

#include <QContextMenuEvent>
#include <QKeyEvent>

#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal usualRowHeight = 28;
constexpr QSizeF usualIconSize(16, 16);

constexpr QChar upArrow(0xF700);
constexpr QChar downArrow(0xF701);
constexpr QChar forwardDelete(0xF728);
constexpr QChar backspace(0x0008);
constexpr QChar deleteCharacter(0x007F);

struct Binding
{
    QString name;
    QString selector;
};

const std::array<Binding, 7> &bindings()
{
    static const std::array<Binding, 7> all{{
        {u"PXSourceListSelectionIsChanging"_s, u"sourceListSelectionIsChanging:"_s},
        {u"PXSourceListSelectionDidChange"_s, u"sourceListSelectionDidChange:"_s},
        {u"PXSourceListItemWillExpand"_s, u"sourceListItemWillExpand:"_s},
        {u"PXSourceListItemDidExpand"_s, u"sourceListItemDidExpand:"_s},
        {u"PXSourceListItemWillCollapse"_s, u"sourceListItemWillCollapse:"_s},
        {u"PXSourceListItemDidCollapse"_s, u"sourceListItemDidCollapse:"_s},
        {u"PXSourceListDeleteKeyPressedOnRows"_s, u"sourceListDeleteKeyPressedOnRows:"_s},
    }};
    return all;
}

} // namespace

PXSourceList::PXSourceList(QWidget *parent)
    : OutlineView(parent)
{
    setRowHeight(usualRowHeight);
    setIndentationPerLevel(0); // the icons indent the entries enough
    PXSL_setup();
}

void PXSourceList::PXSL_setup()
{
    PXSourceList::setDelegate(OutlineView::delegate());
    OutlineView::setDelegate(this);
    PXSourceList::setDataSource(OutlineView::dataSource());
    OutlineView::setDataSource(this);
    _iconSize = usualIconSize;
}

PXSourceList::~PXSourceList()
{
    OutlineView::setDelegate(nullptr);
    OutlineView::setDataSource(nullptr);
    NotificationCenter::defaultCenter().removeObserver(_secondaryDelegate, {}, this);
}

PXSourceListDataSource *PXSourceList::source() const
{
    return qobject_cast<PXSourceListDataSource *>(_secondaryDataSource.data());
}

PXSourceListDelegate *PXSourceList::judge() const
{
    return qobject_cast<PXSourceListDelegate *>(_secondaryDelegate.data());
}

void PXSourceList::setDelegate(QObject *delegate)
{
    NotificationCenter::defaultCenter().removeObserver(_secondaryDelegate, {}, this);
    _secondaryDelegate = delegate;
    for (const Binding &each : bindings())
        registerDelegateToReceiveNotification(each.name, Selector(each.selector));
    scheduleDelayedItemsLayout(); // the delegate says how high rows are
}

void PXSourceList::registerDelegateToReceiveNotification(const QString &name,
                                                         const Selector &selector)
{
    if (perform::responds(_secondaryDelegate, selector))
        NotificationCenter::defaultCenter().addObserver(_secondaryDelegate, selector, name, this);
}

void PXSourceList::setDataSource(QObject *dataSource)
{
    _secondaryDataSource = dataSource;
    reloadData();
}

void PXSourceList::setIconSize(const QSizeF &size)
{
    _iconSize = SourceListGeometry::fittedIconSize(size, rowHeight());
    viewport()->update();
}

int PXSourceList::numberOfGroups()
{
    return source() ? source()->sourceListNumberOfChildrenOfItem(this, nullptr) : 0;
}

bool PXSourceList::isGroupAlwaysExpanded(OutlineItem item)
{
    return isGroupItem(item) && judge() && judge()->sourceListIsGroupAlwaysExpanded(this, item);
}

bool PXSourceList::itemHasBadge(OutlineItem item)
{
    return source() && source()->sourceListItemHasBadge(this, item);
}

qint64 PXSourceList::badgeValueForItem(OutlineItem item)
{
    return itemHasBadge(item) ? source()->sourceListBadgeValueForItem(this, item)
                              : PXSourceListDataSource::noBadge;
}

QString PXSourceList::accessibleTextForItem(OutlineItem item)
{
    const QString title = OutlineView::accessibleTextForItem(item);
    return itemHasBadge(item) ? u"%1, %2"_s.arg(title, QString::number(badgeValueForItem(item)))
                              : title;
}

QMenu *PXSourceList::menuForEvent(QContextMenuEvent *event)
{
    QMenu *menu = nullptr;
    if (judge())
        menu = judge()->sourceListMenuForEvent(this, event, itemAtRow(rowAtPoint(event->pos())));
    return menu ? menu : OutlineView::menuForEvent(event);
}

void PXSourceList::reloadData()
{
    _scaledIcons.clear(); // rows are numbered anew, and may be fewer
    OutlineView::reloadData();
    if (source() && judge()) {
        // Opening a group may change the tree, so the number of groups is asked for each time.
        for (int i = 0; i < numberOfGroups(); ++i) {
            OutlineItem group = source()->sourceListChild(this, i, nullptr);
            if (isGroupAlwaysExpanded(group))
                expandItem(group, false);
        }
    }
    fixSelection();
    viewport()->update();
}

/// The selection never rests on a heading.
void PXSourceList::fixSelection()
{
    const int selected = selectedRow();
    if (selected < 0) {
        if (allowsEmptySelection())
            return;
        for (int row = 0; row < numberOfRows(); ++row) {
            if (!isGroupItem(itemAtRow(row))) {
                selectRowIndexes({row}, false);
                return;
            }
        }
        return;
    }
    if (!isGroupItem(itemAtRow(selected)))
        return;
    // The first row is not looked at: at the top there is always a heading.
    for (int row = selected; row > 0; --row) {
        if (!isGroupItem(itemAtRow(row))) {
            selectRowIndexes({row}, false);
            return;
        }
    }
    deselectAll();
}

void PXSourceList::selectRowIndexes(const RowIndexes &indexes, bool extend)
{
    if (indexes.empty() && !allowsEmptySelection())
        return;
    RowIndexes entries;
    for (const int row : indexes) {
        if (!isGroupItem(itemAtRow(row)))
            entries.insert(row);
    }
    // An empty request ends here too: it does not clear the selection.
    if (!entries.empty())
        OutlineView::selectRowIndexes(entries, extend);
}

void PXSourceList::keyDown(QKeyEvent *event)
{
    const QChar character = characterOfKey(event);
    const RowIndexes selected = selectedRowIndexes();
    const bool isArrow = character == upArrow || character == downArrow;
    if (!selected.empty() && isArrow && selected.size() == 1
        && !(event->modifiers() & Qt::ShiftModifier)) {
        const int step = character == upArrow ? -1 : 1;
        int row = *selected.begin() + step;
        while (row >= 0 && row < numberOfRows() && isGroupItem(itemAtRow(row)))
            row += step;
        selectRowIndexes({row}, false); // past either end this is no row, and nothing happens
        event->accept();
        return;
    }
    const bool isDelete =
        character == forwardDelete || character == backspace || character == deleteCharacter;
    if (!selected.empty() && isDelete) {
        Dictionary userInfo = Dictionary::make();
        userInfo.setValue(u"rows"_s, QVariant::fromValue(selected));
        event->accept();
        post(u"PXSourceListDeleteKeyPressedOnRows"_s, userInfo);
        return;
    }
    OutlineView::keyDown(event);
}

void PXSourceList::post(const QString &name, const Dictionary &userInfo)
{
    NotificationCenter::defaultCenter().post(name, this, userInfo);
}
