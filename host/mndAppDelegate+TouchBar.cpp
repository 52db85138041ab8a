#include "host/mndAppDelegate.h"

#include "platform/foundation/MainThread.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/SegmentedControl.h"
#include "plugin_host/HostTouchBar.h"
#include "plugin_host/TouchBarImages.h"

#include <QApplication>

using namespace Qt::StringLiterals;

namespace {

constexpr double tapDelay = 0.2; // seconds

int tappedSegment(QObject *sender)
{
    const auto *control = qobject_cast<SegmentedControl *>(sender);
    return control ? control->selectedSegment() : -1;
}

} // namespace

void mndAppDelegate::loadSystemTouchBar()
{
    _sysTB = perform::responds(qApp, Selector(u"isAutomaticCustomizeTouchBarMenuItemEnabled"_s));
    // Made anew each time, so that it is never the one that is there, and shows new icons.
    if (_sysTB)
        TouchBar::install(_window, makeTouchBar());
}

std::unique_ptr<TouchBar> mndAppDelegate::makeTouchBar()
{
    return _sysTB ? std::make_unique<TouchBar>(this, HostTouchBar::systemItems()) : nullptr;
}

std::unique_ptr<TouchBarItem>
mndAppDelegate::touchBarMakeItemForIdentifier(TouchBar *, const QString &identifier)
{
    return HostTouchBar::makeItem(identifier, m_Plugins.get(), _systbTitles, this);
}

// By the place in the whole list of ids: while a plugin is missing, the buttons after it lead to
// their neighbours.
void mndAppDelegate::tbPressed(QObject *sender)
{
    const QString id = HostTouchBar::pluginIds().value(tappedSegment(sender));
    if (!id.isNull())
        showPlugin(id);
}

void mndAppDelegate::tbPluginPressed(QObject *sender)
{
    const QString title = _systbTitles.value(tappedSegment(sender));
    if (!_systbTarget || title.isNull())
        return;
    // Who is to hear of the tap is settled now, even if another bar comes meanwhile.
    systemServices().scheduler->after(tapDelay, _systbTarget,
                                      [target = _systbTarget, selector = _systbSEL, title] {
                                          perform::sendQuietly(target, selector, {title});
                                      });
}

// A request for a bar without the status button changes nothing: the sheets that ask for one are
// closed by their own controls.
void mndAppDelegate::uiMakeSLVTouchbarWithButtons(const QStringList &, QObject *, const Selector &,
                                                  QWidget *)
{ }

void mndAppDelegate::uiMakeSLVSystemTouchbarWithButtons(const QStringList &titles, QObject *target,
                                                        const Selector &selector, QWidget *window)
{
    expectMainThread("uiMakeSLVSystemTouchbarWithButtons:target:selector:window:");
    if (!_sysTB)
        return;
    _systbSEL = selector;
    _systbTarget = target;
    TouchBar::install(window ? window : _window.data(), _coreMakeSystemTouchBarWith(titles));
}

std::unique_ptr<TouchBar> mndAppDelegate::_coreMakeSystemTouchBarWith(const QStringList &titles)
{
    _systbTitles = titles;
    return std::make_unique<TouchBar>(this, HostTouchBar::pluginItems(true));
}

// Stands beside its sibling for bars without the status button; nothing calls it today.
std::unique_ptr<TouchBar> mndAppDelegate::_coreMakeTouchBarWith(const QStringList &titles)
{
    _systbTitles = titles;
    return std::make_unique<TouchBar>(this, HostTouchBar::pluginItems(false));
}

void mndAppDelegate::uiRevertToSystemTouchbar()
{
    MainThread::runAndWait([this] { _uiRevertToSystemTouchbar(); });
}

void mndAppDelegate::_uiRevertToSystemTouchbar()
{
    loadSystemTouchBar();
}

QImage mndAppDelegate::getPluginTBImageForID(const QString &id)
{
    return HostTouchBar::iconForPlugin(m_Plugins.get(), id);
}

QList<QImage> mndAppDelegate::getAllpluginTBImages()
{
    return HostTouchBar::allPluginIcons(m_Plugins.get());
}

QImage mndAppDelegate::tintForTB(const QImage &image, float alpha)
{
    return TouchBarImages::tinted(image, alpha);
}

QImage mndAppDelegate::imageResize(const QImage &image, const QSizeF &newSize)
{
    return TouchBarImages::resized(image, newSize);
}

QImage mndAppDelegate::imageToGreyImage(const QImage &image)
{
    return TouchBarImages::grey(image);
}

QImage mndAppDelegate::imageFromCGImageRef(const QImage &bitmap)
{
    return TouchBarImages::imageFromBitmap(bitmap);
}

QImage mndAppDelegate::nsImageToCGImageRef(const QImage &image)
{
    return TouchBarImages::bitmap(image);
}
