#include "helpers/appBundle.h"

#include "platform/foundation/PathExtension.h"
#include "platform/foundation/PropertyList.h"

#include <QDir>

using namespace Qt::StringLiterals;

namespace {

/// The text, never null: a missing value is an empty text to whoever asks.
QString present(const QString &text)
{
    return text.isNull() ? u""_s : text;
}

/// The text under the key; null when there is none, or something else.
QString text(const QVariantMap &manifest, const QString &key)
{
    const QVariant value = manifest.value(key);
    return value.typeId() == QMetaType::QString ? present(value.toString()) : QString();
}

/// The name of the folder itself, for whatever way the path names it.
QString folderName(const QString &bundle)
{
    const QString name = lastPathComponent(QDir::cleanPath(QDir::current().filePath(bundle)));
    const QString extension = pathExtension(name);
    return extension.isEmpty() ? name : name.chopped(extension.size() + 1);
}

} // namespace

QString appBundle::getManifestPath(const QString &bundle)
{
    return bundle.isNull() ? u""_s : bundle + u"/Contents/Info.plist"_s;
}

QString appBundle::getIconPath(const QString &bundle)
{
    const QString icon = text(getManifest(bundle), u"CFBundleIconFile"_s);
    if (icon.isNull())
        return u""_s;
    const bool hasType = pathExtension(icon).compare("icns"_L1, Qt::CaseInsensitive) == 0;
    return bundle + u"/Contents/Resources/"_s + icon + (hasType ? u""_s : u".icns"_s);
}

QString appBundle::getAppName(const QString &bundle)
{
    const QVariantMap info = getManifest(bundle);
    const QString name = text(info, u"SKAppName"_s);
    return present(name.isNull() ? text(info, u"CFBundleExecutable"_s) : name);
}

QString appBundle::getExecutablePath(const QString &bundle)
{
    const Result<QVariant> read = PropertyList::read(getManifestPath(bundle));
    if (!read || read.value().typeId() != QMetaType::QVariantMap)
        return u""_s;
    const QVariantMap info = read.value().toMap();
    const QVariant executable = info.value(u"CFBundleExecutable"_s);
    if (executable.isValid() && executable.typeId() != QMetaType::QString)
        return bundle; // no name can be made of it
    return bundle + u"/Contents/MacOS/"_s
        + (executable.isValid() ? executable.toString() : folderName(bundle));
}

QString appBundle::getInfoString(const QString &bundle)
{
    return present(text(getManifest(bundle), u"CFBundleGetInfoString"_s));
}

QString appBundle::getBundleID(const QString &bundle)
{
    return present(text(getManifest(bundle), u"CFBundleIdentifier"_s));
}

QString appBundle::getShortVersion(const QString &bundle)
{
    return present(text(getManifest(bundle), u"CFBundleShortVersionString"_s));
}

QString appBundle::getAppPathFromExecutablePath(const QString &executable)
{
    QString path;
    for (const QString &component : executable.split(u'/', Qt::SkipEmptyParts)) {
        path += u'/' + component;
        if (pathExtension(component) == "app"_L1)
            return path;
    }
    return u""_s;
}

QVariantMap appBundle::getManifest(const QString &bundle)
{
    const Result<QVariant> read = PropertyList::read(getManifestPath(bundle));
    return read ? read.value().toMap() : QVariantMap();
}
