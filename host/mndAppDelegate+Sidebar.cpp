#include "host/mndAppDelegate.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/MainThread.h"
#include "platform/ui/ProgressIndicator.h"
#include "plugin_host/mndPlugins.h"

#include <QLayout>

using namespace Qt::StringLiterals;

namespace {

const SourceListItem *node(QObject *item)
{
    return qobject_cast<const SourceListItem *>(item);
}

/// The number that a text begins with; 0 when it begins with none.
quint64 leadingNumber(const QString &text)
{
    qsizetype end = 0;
    while (end < text.size() && text[end] >= u'0' && text[end] <= u'9')
        ++end;
    return QStringView(text).first(end).toULongLong();
}

QList<ProgressIndicator *> spinnersOf(const PXSourceList &list)
{
    return list.viewport()->findChildren<ProgressIndicator *>(Qt::FindDirectChildrenOnly);
}

} // namespace

void mndAppDelegate::buildSidebarTree()
{
    SidebarTree::Headings headings;
    _core = this;
    m_tree.getParentItemNamed(stringResource(u"SZ_HEADING_CLEANING"_s, u"Cleaning"_s), headings);
    m_tree.getParentItemNamed(stringResource(u"SZ_HEADING_OPTIMIZATION"_s, u"Optimization"_s),
                              headings);
    m_tree.getParentItemNamed(stringResource(u"SZ_HEADING_SECURITY"_s, u"Security"_s), headings);
    m_tree.getParentItemNamed(stringResource(u"SZ_HEADING_SYSTEM"_s, u"System"_s), headings);
    m_tree.getParentItemNamed(stringResource(u"SZ_HEADING_ONLINE"_s, u"Online"_s), headings);
    m_tree.addPlugins(*m_Plugins, headings);
    sourceListItems = headings;
}

int mndAppDelegate::sourceListNumberOfChildrenOfItem(PXSourceList *, OutlineItem item)
{
    if (!item)
        return static_cast<int>(sourceListItems.size());
    const SourceListItem *parent = node(item);
    return parent ? static_cast<int>(parent->children.size()) : 0;
}

OutlineItem mndAppDelegate::sourceListChild(PXSourceList *, int index, OutlineItem item)
{
    if (!item)
        return sourceListItems.value(index);
    const SourceListItem *parent = node(item);
    return parent ? parent->children.value(index) : nullptr;
}

QVariant mndAppDelegate::sourceListObjectValueForItem(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown ? QVariant(shown->title) : QVariant();
}

void mndAppDelegate::sourceListSetObjectValue(PXSourceList *, const QVariant &value,
                                              OutlineItem item)
{
    if (auto *edited = qobject_cast<SourceListItem *>(item))
        edited->title = value.toString();
}

bool mndAppDelegate::sourceListIsItemExpandable(PXSourceList *, OutlineItem item)
{
    const SourceListItem *parent = node(item);
    return parent && parent->hasChildren();
}

bool mndAppDelegate::sourceListItemHasBadge(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown && shown->hasBadge();
}

qint64 mndAppDelegate::sourceListBadgeValueForItem(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown ? shown->badgeValue : PXSourceListDataSource::noBadge;
}

bool mndAppDelegate::sourceListItemHasIcon(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown && shown->hasIcon();
}

QImage mndAppDelegate::sourceListIconForItem(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown ? shown->icon : QImage();
}

QImage mndAppDelegate::sourceListIconForItemSelected(PXSourceList *, OutlineItem item)
{
    const SourceListItem *shown = node(item);
    return shown ? shown->iconSelected : QImage();
}

QMenu *mndAppDelegate::sourceListMenuForEvent(PXSourceList *, QContextMenuEvent *, OutlineItem)
{
    return nullptr;
}

bool mndAppDelegate::sourceListIsGroupAlwaysExpanded(PXSourceList *, OutlineItem)
{
    return true;
}

bool mndAppDelegate::sourceListShouldEditItem(PXSourceList *, OutlineItem)
{
    return false;
}

void mndAppDelegate::setSidebarNeedsDisplay()
{
    if (!sourceList)
        return;
    // Icons and badges are changed on the caller's thread, but only the main thread may touch a
    // view.
    if (MainThread::isCurrent())
        sourceList->viewport()->update();
    else
        MainThread::runLater([list = sourceList] {
            if (list)
                list->viewport()->update();
        });
}

Dictionary mndAppDelegate::infoOfPlugin(const QString &id) const
{
    return m_Plugins ? mndPlugins::info(m_Plugins->pluginWithID(id)) : Dictionary();
}

Dictionary mndAppDelegate::infoForCall(const char *selector, const QString &id) const
{
    const Dictionary info = infoOfPlugin(id);
    if (info.isAbsent())
        tellOfUnknownPlugin(selector, id);
    return info;
}

void mndAppDelegate::tellOfUnknownPlugin(const char *selector, const QString &id) const
{
    tellOfWrongCall(selector, u"no plugin has the id \"%1\""_s.arg(id));
}

void mndAppDelegate::sourceListSelectionDidChange(const Notification &)
{
    if (!sourceList || !m_Plugins)
        return;
    const RowIndexes selected = sourceList->selectedRowIndexes();
    if (selected.size() != 1)
        return;
    const SourceListItem *item = node(sourceList->itemAtRow(*selected.begin()));
    if (!item)
        return;
    uiRevertToSystemTouchbar();
    displayPage([&] {
        m_Plugins->doDisplayMainViewForPluginAtIndex(leadingNumber(item->identifier),
                                                     pluginViewHost);
    });
    setSidebarNeedsDisplay();
}

void mndAppDelegate::displayPage(const std::function<void()> &display)
{
    const auto hasKeyboard = [this] {
        return _window && pluginViewHost && pluginViewHost->isAncestorOf(_window->focusWidget());
    };
    const bool had = hasKeyboard();
    display();
    // With the page that had it the keyboard would go to whatever comes next.
    if (had && sourceList && !hasKeyboard())
        sourceList->setFocus();
}

void mndAppDelegate::sourceListDeleteKeyPressedOnRows(const Notification &) { }

bool mndAppDelegate::showPlugin(const QString &id)
{
    bool shows = false;
    bool isKnown = true;
    MainThread::runAndWait([&] { shows = _showPlugin(id, isKnown); });
    // Here, where whoever has called can be told.
    if (!isKnown)
        tellOfUnknownPlugin("showPlugin:", id);
    return shows;
}

bool mndAppDelegate::_showPlugin(const QString &id, bool &isKnown)
{
    if (uiModalShowing())
        return false;
    logPlace("showPlugin:", 216, id);
    uiRevertToSystemTouchbar();
    const Dictionary info = infoOfPlugin(id);
    isKnown = !info.isAbsent();
    if (!isKnown)
        return false;
    if (info.string(u"parent"_s) != SidebarTree::hiddenHeading()) {
        _highlightItem(info.string(u"parent"_s), info.string(u"name"_s));
        return true;
    }
    const RowIndexes selected = sourceList ? sourceList->selectedRowIndexes() : RowIndexes();
    displayPage([&] { m_Plugins->doDisplayMainViewForPluginById(id, pluginViewHost); });
    setSidebarNeedsDisplay();
    // A plugin that led on to one with a row has selected that.
    if (sourceList && sourceList->selectedRowIndexes() == selected)
        sourceList->deselectAll();
    return true;
}

void mndAppDelegate::_highlightItem(const QString &heading, const QString &title)
{
    const auto row = SidebarTree::rowNumber(sourceListItems, heading, title);
    if (!row || !sourceList)
        return;
    sourceList->selectRowIndexes({static_cast<int>(*row)}, false);
    setSidebarNeedsDisplay();
}

void mndAppDelegate::pluginSetBadge(const QString &id, quint64 value)
{
    expectMainThread("pluginSetBadge:value:");
    const Dictionary info = infoForCall("pluginSetBadge:value:", id);
    if (!info.isAbsent())
        _setBadge(info.string(u"parent"_s), info.string(u"name"_s), value);
}

void mndAppDelegate::_setBadge(const QString &heading, const QString &title, quint64 value)
{
    if (SourceListItem *item = SidebarTree::findItem(sourceListItems, heading, title))
        item->badgeValue = static_cast<qint64>(value);
    setSidebarNeedsDisplay();
    // To measure every title takes its time, and plugins count up quickly.
    if (m_isSidebarToBeFitted.exchange(true))
        return;
    MainThread::runLater([self = QPointer(this)] {
        if (self)
            self->fitSidebar();
    });
}

/// As wide as the interface file says, unless a number would take all the room of its title.
void mndAppDelegate::fitSidebar()
{
    m_isSidebarToBeFitted = false;
    QWidget *sidebar = sourceList ? sourceList->parentWidget() : nullptr;
    if (!sidebar)
        return;
    if (m_sidebarWidth == 0)
        m_sidebarWidth = sidebar->minimumWidth();
    const int before = sourceList->viewport()->width();
    sidebar->setFixedWidth(std::max(m_sidebarWidth, sourceList->widthForBadges()));
    if (sidebar->parentWidget() && sidebar->parentWidget()->layout())
        sidebar->parentWidget()->layout()->activate();
    // They are found by their place, of which no plugin knows that another's number has moved it.
    const int wider = sourceList->isRightToLeft() ? 0 : sourceList->viewport()->width() - before;
    for (ProgressIndicator *spinner : spinnersOf(*sourceList))
        spinner->move(spinner->x() + wider, spinner->y());
}

void mndAppDelegate::pluginSetIcon(const QString &id, const QImage &icon)
{
    expectMainThread("pluginSetIcon:icon:");
    const Dictionary info = infoForCall("pluginSetIcon:icon:", id);
    if (icon.isNull() || info.isAbsent())
        return;
    _pluginSetIcon(info.string(u"parent"_s), info.string(u"name"_s), icon);
    setSidebarNeedsDisplay();
}

void mndAppDelegate::_pluginSetIcon(const QString &heading, const QString &title,
                                    const QImage &icon)
{
    if (SourceListItem *item = SidebarTree::findItem(sourceListItems, heading, title))
        item->icon = icon;
}

void mndAppDelegate::pluginSetIconHighlighted(const QString &id, const QImage &icon)
{
    expectMainThread("pluginSetIconHighlighted:icon:");
    // The row keeps the image it was made with; the stored one serves the Touch Bar.
    if (!icon.isNull())
        infoForCall("pluginSetIconHighlighted:icon:", id).setValue(u"icon-selected"_s, icon);
}

// Stands beside its siblings for whoever wants the row to follow; nothing calls it today.
void mndAppDelegate::_pluginSetIconHighlighted(const QString &heading, const QString &title,
                                               const QImage &icon)
{
    if (SourceListItem *item = SidebarTree::findItem(sourceListItems, heading, title))
        item->iconSelected = icon;
}

void mndAppDelegate::pluginSetProcessing(const QString &id, bool value)
{
    // The search too: the registry belongs to the main thread.
    bool isFound = true;
    MainThread::runAndWait([&] { isFound = findAndSetProcessing(id, value); });
    if (!isFound)
        tellOfWrongCall("pluginSetProcessing:value:",
                        u"no plugin with a heading and a name has the id \"%1\""_s.arg(id));
}

bool mndAppDelegate::findAndSetProcessing(const QString &id, bool value)
{
    for (quint64 i = 0; m_Plugins && i < m_Plugins->count(); ++i) {
        const Dictionary info = mndPlugins::info(m_Plugins->pluginAtIndex(i));
        if (id.isNull() || !info.contains(u"id"_s) || info.string(u"id"_s) != id
            || !info.contains(u"parent"_s) || !info.contains(u"name"_s)) {
            continue;
        }
        pluginSetProcessingEx({info.string(u"parent"_s), info.string(u"name"_s), value});
        return true;
    }
    return false;
}

void mndAppDelegate::pluginSetProcessingEx(const QVariantList &packed)
{
    // A spinner is known by its frame, which would be another one later.
    if (m_earlySpinners)
        return m_earlySpinners->append(packed);
    _pluginSetProcessing(packed.value(0).toString(), packed.value(1).toString(),
                         packed.value(2).toBool());
    setSidebarNeedsDisplay();
}

void mndAppDelegate::placeEarlySpinners()
{
    const QList<QVariantList> early = m_earlySpinners.value_or(QList<QVariantList>());
    m_earlySpinners.reset();
    for (const QVariantList &packed : early)
        pluginSetProcessingEx(packed);
}

void mndAppDelegate::_pluginSetProcessing(const QString &heading, const QString &title, bool value)
{
    const auto row = SidebarTree::rowNumber(sourceListItems, heading, title);
    if (!row || !sourceList)
        return;
    const QRectF cell = sourceList->frameOfCellAtColumn(0, static_cast<int>(*row));
    const qreal left =
        sourceList->isRightToLeft() ? cell.left() + 20 - cell.height() : cell.right() - 20;
    const QRect frame = QRectF(left, cell.top(), cell.height(), cell.height()).toRect();
    // A spinner is known by its frame alone: after the sidebar has changed its size a row gets a
    // new one, and the old one stays where it was.
    const auto existing = spinnersOf(*sourceList);
    const auto found = std::find_if(existing.begin(), existing.end(), [&](const QWidget *spinner) {
        return spinner->geometry() == frame;
    });
    ProgressIndicator *spinner = found != existing.end() ? *found : nullptr;
    if (!spinner) {
        spinner = new ProgressIndicator(sourceList->viewport());
        spinner->setGeometry(frame);
        spinner->setAccessibleName(stringResource(u"SZ_NAME_BUSY"_s, u"Busy"_s));
        spinner->hide();
    }
    spinner->setVisible(value);
    if (value)
        spinner->startAnimation();
}

void mndAppDelegate::setAllPluginsProcessing(bool value)
{
    for (quint64 i = 0; m_Plugins && i < m_Plugins->count(); ++i) {
        const Dictionary info = mndPlugins::info(m_Plugins->pluginAtIndex(i));
        if (info.contains(u"id"_s))
            pluginSetProcessing(info.string(u"id"_s), value);
    }
}
