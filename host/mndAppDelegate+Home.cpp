#include "host/mndAppDelegate.h"
#include "platform/foundation/SystemServices.h"

using namespace Qt::StringLiterals;

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
    return systemServices().account->home();
}

QString mndAppDelegate::stringByExpandingTildeInPath(const QString &path)
{
    return QString(path).replace(u'~', getHomeDirectory());
}

void mndAppDelegate::saveHomeDirectory(const QString &path)
{
    systemServices().defaults->setValue(u"slv.sandbox.home"_s, path);
    systemServices().defaults->synchronize();
}

void mndAppDelegate::saveHomeDirectoryBookmark(const QByteArray &bookmark)
{
    systemServices().defaults->setValue(u"slv.sandbox.bookmark"_s, bookmark);
    systemServices().defaults->synchronize();
}

// There is no sandbox whose gate would have to be opened and closed again.
void mndAppDelegate::beginAccessingBookmark() { }
void mndAppDelegate::endAccessingBookmark() { }
