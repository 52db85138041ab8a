#include "plugin_host/PluginQuarantine.h"

#include "platform/foundation/FilePath.h"
#include "platform/foundation/SystemServices.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>

using namespace Qt::StringLiterals;

namespace {

QString leftOutKey()
{
    return u"slvCore.leftOut"_s;
}

/// Another build of the module is another chance.
QString entry(const QString &bundle, const QString &module)
{
    const qint64 built = QFileInfo(module).lastModified().toMSecsSinceEpoch();
    return QString::number(built) + u' ' + bundle;
}

bool isAt(const QByteArray &path, const FileDescriptor &file)
{
    struct stat there = {};
    struct stat opened = {};
    return ::stat(path.constData(), &there) == 0 && ::fstat(file.number(), &opened) == 0
        && there.st_ino == opened.st_ino && there.st_dev == opened.st_dev;
}

/// Open when the file is this process's alone.
FileDescriptor openLocked(const QByteArray &path)
{
    constexpr int attempts = 3;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        FileDescriptor file(uninterrupted([&] {
            return ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                          0600);
        }));
        // The lock ends with the process, however that ends.
        if (!file.isOpen()
            || uninterrupted([&] { return ::flock(file.number(), LOCK_EX | LOCK_NB); }) != 0)
            break;
        // Whoever had it may have taken it away in between.
        if (isAt(path, file))
            return file;
    }
    return {};
}

} // namespace

PluginQuarantine::PluginQuarantine()
    : PluginQuarantine(Options())
{ }

PluginQuarantine::PluginQuarantine(Options options)
    : m_options(std::move(options))
{
    for (QString &name : m_options.leftOut) {
        while (name.endsWith(u'/'))
            name.chop(1);
    }
    m_unknown = m_options.leftOut;
    m_unknown.removeDuplicates();
}

PluginQuarantine::~PluginQuarantine()
{
    end();
}

QString PluginQuarantine::breadcrumbPath()
{
    const QString state = qEnvironmentVariable("XDG_STATE_HOME");
    return (QDir::isAbsolutePath(state) ? state
                                        : systemServices().account->home() + u"/.local/state"_s)
        + u"/Solvane/plugin-in-progress"_s;
}

bool PluginQuarantine::keepBreadcrumbs(const QString &file)
{
    QDir().mkpath(QFileInfo(file).path());
    const QByteArray path = FilePath::encode(file);
    FileDescriptor opened = openLocked(path);
    if (!opened.isOpen())
        return false;
    // Mapped, since a plugin is entered often; and with its room reserved, since a full disk would
    // otherwise show at the first touch.
    if (::posix_fallocate(opened.number(), 0, PATH_MAX) != 0)
        return false;
    void *mapped =
        ::mmap(nullptr, PATH_MAX, PROT_READ | PROT_WRITE, MAP_SHARED, opened.number(), 0);
    if (mapped == MAP_FAILED)
        return false;
    m_crumb = static_cast<char *>(mapped);
    m_path = path;
    m_file = std::move(opened);
    const QByteArrayView left(m_crumb, static_cast<qsizetype>(::strnlen(m_crumb, PATH_MAX)));
    m_culprit = left.isEmpty() ? QString() : FilePath::decode(left);
    clear();
    return true;
}

void PluginQuarantine::end()
{
    clear();
    if (!m_crumb)
        return;
    ::munmap(m_crumb, PATH_MAX);
    m_crumb = nullptr;
    // Under the lock: it is nobody else's. What can be neither removed nor cut is empty all the
    // same.
    if (::unlink(m_path.constData()) != 0 && ::ftruncate(m_file.number(), 0) != 0)
        systemServices().systemLog->write(u"An empty breadcrumb stays behind."_s);
    m_file.reset();
}

bool PluginQuarantine::isNamed(const QStringList &names)
{
    m_unknown.removeIf([&](const QString &name) { return names.contains(name); });
    return std::any_of(names.begin(), names.end(), [this](const QString &name) {
        return !name.isEmpty() && m_options.leftOut.contains(name);
    });
}

void PluginQuarantine::leaveOut(const QString &bundle, const QString &module)
{
    UserDefaults &defaults = *systemServices().defaults;
    QStringList entries = defaults.value(leftOutKey()).toStringList();
    entries.removeIf([&](const QString &one) { return one.section(u' ', 1) == bundle; });
    entries << entry(bundle, module);
    defaults.setValue(leftOutKey(), entries);
    if (!defaults.synchronize())
        systemServices().systemLog->write(
            u"That %1 is left out could not be written."_s.arg(bundle));
}

bool PluginQuarantine::isLeftOut(const QString &bundle, const QString &module)
{
    const QStringList entries = systemServices().defaults->value(leftOutKey()).toStringList();
    return !entries.isEmpty() && entries.contains(entry(bundle, module));
}

bool PluginQuarantine::isAnyLeftOut()
{
    return !systemServices().defaults->value(leftOutKey()).toStringList().isEmpty();
}

void PluginQuarantine::enter(const QString &bundle)
{
    m_entered = bundle;
    if (!m_crumb)
        return;
    // A crash of the process leaves what is written so; only one of the machine would not, and that
    // is no plugin's doing.
    const QByteArray path = FilePath::encode(bundle);
    if (path.size() < PATH_MAX)
        std::memcpy(m_crumb, path.constData(), static_cast<std::size_t>(path.size()) + 1);
    else
        *m_crumb = '\0'; // better nobody than the one before
}

void PluginQuarantine::leave(const QString &bundle)
{
    if (bundle == m_entered)
        clear();
}

void PluginQuarantine::clear()
{
    m_entered.clear();
    if (m_crumb)
        *m_crumb = '\0';
}
