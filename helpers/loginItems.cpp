#include "helpers/loginItems.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/DesktopEntry.h"
#include "platform/foundation/FilePath.h"
#include "platform/foundation/FilePlace.h"
#include "platform/foundation/FileReplacement.h"
#include "platform/foundation/FolderDescent.h"
#include "platform/foundation/SystemServices.h"

#include <QDir>
#include <QStandardPaths>
#include <QStringEncoder>

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {

const QString ownEntry = u"com.solvane.Solvane.desktop"_s;

/// Whether there is a folder, or one at the end of a link.
bool isFolder(const QString &path)
{
    const FilePlace place = FilePlace::of(path);
    struct stat64 status;
    return ::fstatat64(place.folder(), place.path(), &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// $XDG_CONFIG_HOME/autostart; null where no such folder is or can be.
QString autostartFolder()
{
    // Relative paths count as none (XDG Base Directory).
    QString settings = FilePath::decode(qgetenv("XDG_CONFIG_HOME"));
    if (!settings.startsWith(u'/')) {
        const QString home = systemServices().account->home();
        settings = home.startsWith(u'/') ? home + u"/.config"_s : QString();
    }
    if (settings.isEmpty())
        return {};
    const QString folder = QDir::cleanPath(settings) + u"/autostart"_s;
    return isFolder(folder) || !systemServices().fileSystem->attributes(folder) ? folder
                                                                                : QString();
}

/// Whether this desktop is among those that the entry is for.
bool isForThisDesktop(const DesktopEntry &entry)
{
    const QStringList only = entry.strings(u"OnlyShowIn"_s);
    const QStringList except = entry.strings(u"NotShowIn"_s);
    // The desktop's own name, then those of the desktops it takes after; the first known decides.
    for (const QString &desktop : qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':')) {
        if (only.contains(desktop))
            return true;
        if (except.contains(desktop))
            return false;
    }
    return entry.string(u"OnlyShowIn"_s).isNull();
}

/// Whether the session starts what the entry names.
bool isEnabled(const DesktopEntry &entry)
{
    const QString needed = entry.string(u"TryExec"_s);
    return !entry.boolean(u"Hidden"_s, false) && entry.boolean(u"X-GNOME-Autostart-enabled"_s, true)
        && isForThisDesktop(entry)
        && (needed.isEmpty() || !QStandardPaths::findExecutable(needed).isEmpty());
}

/// The file itself, links resolved; null when there is none.
QByteArray resolved(const QString &path)
{
    const std::unique_ptr<char, decltype(&std::free)> found(
        ::realpath(FilePath::encode(path).constData(), nullptr), &std::free);
    return QByteArray(found.get());
}

/// What stands before a program whose path cannot begin the command: a percent sign is written
/// twice, but sessions look for the first word just as it is written, and "=" may not be in it. It
/// changes nothing about the program, and unlike env takes any path for one.
const QStringList runner{u"nice"_s, u"-n"_s, u"0"_s};

/// The file that the entry runs, links resolved; null when there is none.
QByteArray programOf(const DesktopEntry &entry)
{
    const QStringList command = entry.command();
    const QString name = command.value(command.mid(0, runner.size()) == runner ? runner.size() : 0);
    if (name.isEmpty() || name.startsWith(u'/'))
        return resolved(name);
    return name.contains(u'/') ? QByteArray() : resolved(QStandardPaths::findExecutable(name));
}

/// Null for a program whose path no entry can hold, since it is no Unicode.
QByteArray entryFor(const QString &program)
{
    const QString entry = u"[Desktop Entry]\n"
                          "Type=Application\n"
                          "Name=Solvane\n"
                          "Exec=%1 --hidden\n"
                          "Icon=com.solvane.Solvane\n"
                          "Terminal=false\n"
                          "X-GNOME-Autostart-enabled=true\n"
                          "X-Solvane-HideOnLaunch=true\n"_s;
    QStringList command{DesktopEntry::quotedArgument(program)};
    if (program.contains(u'%') || program.contains(u'='))
        command = runner + command;
    QStringEncoder encoder(QStringEncoder::Utf8);
    const QByteArray content = encoder(entry.arg(command.join(u' ')));
    return encoder.hasError() ? QByteArray() : content;
}

/// Makes the folder and those above it, for the user alone (XDG Base Directory). False when one
/// could not be made; one that another has made in the meantime will do.
bool makeFolder(const QString &path)
{
    if (isFolder(path))
        return true;
    const qsizetype slash = path.lastIndexOf(u'/');
    return slash >= 0 && (slash == 0 || makeFolder(path.first(slash)))
        && (::mkdir(FilePath::encode(path).constData(), 0700) == 0 || isFolder(path));
}

} // namespace

LoginItemList::LoginItemList()
    : loginItemsListRef(autostartFolder())
{ }

QStringList LoginItemList::loginItems()
{
    const FilePlace place = FilePlace::of(loginItemsListRef);
    FileDescriptor folder(
        ::openat(place.folder(), place.path(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!folder.isOpen())
        return {};
    FolderDescent entries(std::move(folder), 2);
    QStringList items;
    for (FolderDescent::Entry found; entries.next(found);) {
        const QString path = loginItemsListRef + u'/' + FilePath::decode(found.name);
        if (!path.endsWith(".desktop"_L1))
            continue;
        const Result<DesktopEntry> entry = DesktopEntry::read(path);
        if (entry && isEnabled(entry.value()))
            items << path;
    }
    std::sort(items.begin(), items.end());
    return items;
}

QString LoginItemList::mainBundleLoginItemCopy()
{
    const QByteArray program = resolved(systemServices().mainBundle->executablePath());
    if (program.isNull())
        return {};
    for (const QString &item : loginItems()) {
        const Result<DesktopEntry> entry = DesktopEntry::read(item);
        if (entry && programOf(entry.value()) == program)
            return item;
    }
    return {};
}

void LoginItemList::addMainBundleToLoginItems()
{
    const QString program = systemServices().mainBundle->executablePath();
    const QByteArray entry = program.isNull() ? QByteArray() : entryFor(program);
    // Whether that could be done, launchOnLogin() tells.
    if (!loginItemsListRef.isNull() && !entry.isNull() && makeFolder(loginItemsListRef))
        std::ignore = replaceFile(loginItemsListRef + u'/' + ownEntry, entry);
}

void LoginItemList::removeMainBundleFromLoginItems()
{
    const QString item = mainBundleLoginItemCopy();
    if (!item.isNull())
        systemServices().fileSystem->hold(item)->remove();
}

bool LoginItemList::launchOnLogin()
{
    return !mainBundleLoginItemCopy().isNull();
}

void LoginItemList::setLaunchOnLogin(bool value)
{
    if (value)
        addMainBundleToLoginItems();
    else
        removeMainBundleFromLoginItems();
}
