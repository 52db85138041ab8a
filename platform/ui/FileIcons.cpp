#include "platform/ui/FileIcons.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/FilePlace.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/PathExtension.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/IconImage.h"

#include <QFile>
#include <QIcon>
#include <QMimeDatabase>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Names to try in the theme, best first, and our own drawing for when it has none of them.
struct Kind
{
    QStringList names;
    QString drawing;
};

const Kind application{{u"application-x-executable"_s}, u"icon-application"_s};
const Kind folder{{u"folder"_s, u"inode-directory"_s}, u"icon-folder"_s};

Kind kindOf(const QMimeType &type)
{
    if (type.inherits(u"inode/directory"_s))
        return folder;
    Kind kind{{type.iconName(), type.genericIconName(), u"text-x-generic"_s, u"unknown"_s},
              u"icon-document"_s};
    if (type.inherits(u"application/x-executable"_s) || type.inherits(u"application/x-sharedlib"_s))
        kind.drawing = application.drawing;
    return kind;
}

QImage drawn(const QString &name, int size)
{
    return IconImage::read(systemServices().mainBundle->pathForResource(name, u"svg"_s), size);
}

/// The theme belongs to the main thread.
QImage themed(const QStringList &names, int size)
{
    QImage picture;
    MainThread::runAndWait([&] {
        const int edge = std::min(size, IconImage::largestSize);
        for (const QString &name : names) {
            const QIcon icon = name.isEmpty() ? QIcon() : QIcon::fromTheme(name);
            if (!icon.isNull())
                picture = icon.pixmap(QSize(edge, edge), IconImage::devicePixelRatio).toImage();
            if (!picture.isNull())
                break;
        }
    });
    return IconImage::square(picture, size);
}

QImage iconOf(const Kind &kind, int size)
{
    const QImage found = themed(kind.names, size);
    return found.isNull() ? drawn(kind.drawing, size) : found;
}

/// The icon that a bundle names in its Info.plist; null without one that can be read.
QImage bundleIcon(const QString &path, int size)
{
    const Bundle bundle(path);
    const QVariant name = bundle.infoValue(u"CFBundleIconFile"_s);
    if (name.typeId() != QMetaType::QString)
        return {};
    for (const char *type : {"", "icns"}) {
        const QString file = bundle.pathForResource(name.toString(), QString::fromLatin1(type));
        const QImage icon = file.isNull() ? QImage() : IconImage::read(file, size);
        if (!icon.isNull())
            return icon;
    }
    return {};
}

/// The icon that a desktop entry names; null without one.
QImage entryIcon(const QString &path, int size)
{
    const Result<DesktopEntry> entry = DesktopEntry::read(path);
    const QString icon = entry ? entry.value().string(u"Icon"_s) : QString();
    if (icon.startsWith(u'/'))
        return IconImage::read(icon, size);
    // It should be a name alone, but many give it with the extension of a file.
    const QString extension = pathExtension(icon);
    const bool isFileName = extension == "png"_L1 || extension == "svg"_L1 || extension == "xpm"_L1;
    return icon.isEmpty() ? QImage() : themed({isFileName ? icon.chopped(4) : icon}, size);
}

/// By the name, and by what is in the file where that says too little.
QMimeType typeOf(const QString &path)
{
    const QMimeDatabase database;
    const FilePlace place = FilePlace::of(path);
    struct stat64 status;
    if (::fstatat64(place.folder(), place.path(), &status, 0) != 0)
        return database.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    for (const auto &[mode, name] : {std::pair{S_IFDIR, "inode/directory"},
                                     {S_IFIFO, "inode/fifo"},
                                     {S_IFSOCK, "inode/socket"},
                                     {S_IFCHR, "inode/chardevice"},
                                     {S_IFBLK, "inode/blockdevice"}}) {
        if ((status.st_mode & S_IFMT) == static_cast<mode_t>(mode))
            return database.mimeTypeForName(QString::fromLatin1(name));
    }
    // What has become of the file meanwhile must not keep anybody waiting.
    FileDescriptor descriptor(uninterrupted([&] {
        return ::openat(place.folder(), place.path(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    }));
    QFile file;
    if (!descriptor.isOpen() || !file.open(descriptor.number(), QIODevice::ReadOnly))
        return database.mimeTypeForFile(path, QMimeDatabase::MatchExtension);
    return database.mimeTypeForFileNameAndData(path, &file);
}

QImage ownIcon(const QString &path, int size)
{
    const QString extension = pathExtension(path);
    if (extension == "desktop"_L1)
        return entryIcon(path, size);
    return extension == "app"_L1 || extension == "bundle"_L1 ? bundleIcon(path, size) : QImage();
}

} // namespace

QImage FileIcons::ofFile(const QString &path, int size)
{
    if (size < 1)
        return {};
    const QImage own = ownIcon(path, size);
    if (!own.isNull())
        return own;
    const QMimeType type = typeOf(path);
    const bool isProgram = pathExtension(path) == "app"_L1
        && (type.name() == "inode/directory"_L1 || !systemServices().fileSystem->exists(path));
    return iconOf(isProgram ? application : kindOf(type), size);
}

QImage FileIcons::ofType(const QString &type, int size)
{
    if (size < 1)
        return {};
    if (type == "APPL"_L1 || type == "app"_L1 || type == ".app"_L1)
        return iconOf(application, size);
    const QMimeDatabase database;
    const QString extension = type.startsWith(u'.') ? type : u'.' + type;
    const QMimeType found = type.contains(u'/')
        ? database.mimeTypeForName(type)
        : database.mimeTypeForFile(u'x' + extension, QMimeDatabase::MatchExtension);
    return iconOf(kindOf(found), size);
}
