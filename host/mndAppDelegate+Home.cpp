#include "host/FolderBookmark.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/SystemServices.h"

using namespace Qt::StringLiterals;

namespace {

QString homeKey()
{
    return u"slv.sandbox.home"_s;
}

QString bookmarkKey()
{
    return u"slv.sandbox.bookmark"_s;
}

} // namespace

QString mndAppDelegate::actualHomeDirectory() const
{
    const QString home = systemServices().account->actualHome();
    if (home.isNull())
        qFatal("assertion failed: pw");
    return home;
}

bool mndAppDelegate::isHomeDirectory(const QString &path)
{
    return !path.isNull() && path.toLower() == actualHomeDirectory().toLower();
}

QString mndAppDelegate::getHomeDirectory()
{
    constexpr quint64 webEdition = 2;
    for (;;) {
        if (mndEdition() == webEdition)
            return systemServices().account->home();
        const auto stored = [] { return systemServices().defaults->value(homeKey()).toString(); };
        if (isHomeDirectory(stored()))
            return stored();
        bool goOn = false;
        // While another thread waited to ask, the user may have answered.
        MainThread::runAndWait([&] { goOn = isHomeDirectory(stored()) || askForHomeDirectory(); });
        if (!goOn)
            return {};
    }
}

/// @return whether there is something new to look at: not when the program ends, and not without a
/// window to ask in.
bool mndAppDelegate::askForHomeDirectory()
{
    if (m_asksNobody || !_welcome || !_window || !_welcome->load())
        return false;
    // A plugin may ask before the start is over, or in a start that shows nothing; nobody could
    // answer.
    if (!_window->isVisible())
        showMainWindow();
    _window->center();
    return _welcome->show();
}

QString mndAppDelegate::stringByExpandingTildeInPath(const QString &path)
{
    if (!path.contains(u'~'))
        return path;
    const QString home = getHomeDirectory();
    // Without one "~/x" would become "/x", which is another's.
    return home.isNull() ? QString() : QString(path).replace(u'~', home);
}

void mndAppDelegate::saveHomeDirectory(const QString &path)
{
    storeSetting(homeKey(), path);
}

void mndAppDelegate::saveHomeDirectoryBookmark(const QByteArray &bookmark)
{
    storeSetting(bookmarkKey(), bookmark);
}

QUrl mndAppDelegate::loadHomeDirectoryBookmark() const
{
    return FolderBookmark::resolve(systemServices().defaults->value(bookmarkKey()).toByteArray());
}

// There is no sandbox whose gate would have to be opened and closed again.
void mndAppDelegate::beginAccessingBookmark() { }
void mndAppDelegate::endAccessingBookmark() { }
