#include "plugin_host/PluginQuarantine.h"

#include "platform/foundation/Bundle.h"
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
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString leftOutKey()
{
    return u"slvCore.leftOut"_s;
}

/// As it is stored. Another build of the module is another chance; what tells one build from
/// another is kept apart from the bundle, so that it need not be opened.
struct LeftOut
{
    explicit LeftOut(const QString &stored)
        : built(stored.section(u' ', 0, 0).toLongLong())
    {
        const QString rest = stored.section(u' ', 1);
        module = rest.section(u'/', 0, 0);
        bundle = rest.mid(module.size());
    }
    LeftOut(const QString &bundlePath, const QString &modulePath)
        : module(QFileInfo(modulePath).fileName())
        , bundle(bundlePath)
        , built(builtAt(modulePath))
    { }

    QString stored() const { return QString::number(built) + u' ' + module + bundle; }
    bool isThere() const { return builtAt(bundle + u"/Contents/MacOS/"_s + module) == built; }

    QString module; ///< file name
    QString bundle; ///< path
    qint64 built = 0;

private:
    static qint64 builtAt(const QString &modulePath)
    {
        return QFileInfo(modulePath).lastModified().toMSecsSinceEpoch();
    }
};

QList<LeftOut> storedLeftOut()
{
    QList<LeftOut> result;
    for (const QString &one : systemServices().defaults->value(leftOutKey()).toStringList())
        result << LeftOut(one);
    return result;
}

void setLeftOut(const QList<LeftOut> &all)
{
    QStringList entries;
    for (const LeftOut &one : all)
        entries << one.stored();
    if (entries.isEmpty())
        systemServices().defaults->removeValue(leftOutKey());
    else
        systemServices().defaults->setValue(leftOutKey(), entries);
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
    if (::posix_fallocate(opened.number(), 0, sizeof(Breadcrumb)) != 0)
        return false;
    void *mapped =
        ::mmap(nullptr, sizeof(Breadcrumb), PROT_READ | PROT_WRITE, MAP_SHARED, opened.number(), 0);
    if (mapped == MAP_FAILED)
        return false;
    m_crumb = static_cast<Breadcrumb *>(mapped);
    m_path = path;
    m_file = std::move(opened);
    const bool hasCrashed = m_crumb->hasCrashed || *m_crumb->entered;
    if (hasCrashed)
        ++m_crumb->crashes;
    else if (!*m_crumb->blamed) // nobody who waits to be asked about
        m_crumb->crashes = 0;
    m_crumb->hasCrashed = 0;
    // What was seen counts more than what was going on.
    if (!*m_crumb->blamed)
        std::memcpy(m_crumb->blamed, m_crumb->entered, PATH_MAX);
    const QByteArrayView left(m_crumb->blamed,
                              static_cast<qsizetype>(::strnlen(m_crumb->blamed, PATH_MAX)));
    m_culprit = left.isEmpty() ? QString() : FilePath::decode(left);
    clear();
    CrashWitness::watch(m_crumb, path);
    return true;
}

void PluginQuarantine::end()
{
    clear();
    if (!m_crumb)
        return;
    const bool isOpen = *m_crumb->blamed;
    CrashWitness::watch(nullptr, isOpen ? QByteArray() : m_path);
    if (!isOpen)
        m_crumb->crashes = 0;
    ::munmap(std::exchange(m_crumb, nullptr), sizeof(Breadcrumb));
    // Under the lock: it is nobody else's. What can be neither removed nor cut is empty all the
    // same.
    if (!isOpen && ::unlink(m_path.constData()) != 0 && ::ftruncate(m_file.number(), 0) != 0)
        systemServices().systemLog->write(u"An empty breadcrumb stays behind."_s);
    m_file.reset();
}

void PluginQuarantine::settle(bool isMended)
{
    m_culprit = QString();
    if (!m_crumb)
        return;
    *m_crumb->blamed = '\0';
    if (isMended)
        m_crumb->crashes = 0;
}

bool PluginQuarantine::isNamed(const QStringList &names)
{
    m_unknown.removeIf([&](const QString &name) { return names.contains(name); });
    return std::any_of(names.begin(), names.end(), [this](const QString &name) {
        return !name.isEmpty() && m_options.leftOut.contains(name);
    });
}

bool PluginQuarantine::isBundled(const QString &bundle)
{
    return bundle.startsWith(systemServices().mainBundle->path() + u'/');
}

void PluginQuarantine::leaveOut(const QString &bundle, const QString &module)
{
    if (isBundled(bundle))
        return;
    QList<LeftOut> all = storedLeftOut();
    all.removeIf([&](const LeftOut &one) { return one.bundle == bundle; });
    all << LeftOut(bundle, module);
    setLeftOut(all);
    // Before anything else runs that could end the process.
    if (!systemServices().defaults->synchronize())
        systemServices().systemLog->write(u"Which plugins are left out could not be written."_s);
}

QStringList PluginQuarantine::leftOut()
{
    QStringList result;
    for (const LeftOut &one : storedLeftOut()) {
        if (!isBundled(one.bundle) && one.isThere())
            result << one.bundle;
    }
    return result;
}

void PluginQuarantine::takeBack(const QString &bundle, std::function<void(bool)> done)
{
    QList<LeftOut> all = storedLeftOut();
    all.removeIf([&](const LeftOut &one) { return one.bundle == bundle; });
    setLeftOut(all);
    systemServices().defaults->synchronizeLater(std::move(done));
}

void PluginQuarantine::enter(const QString &bundle, Stage stage)
{
    m_entered = bundle;
    m_stage = stage;
    CrashWitness::extendEnd();
    if (!m_crumb)
        return;
    // A crash of the process leaves what is written so; only one of the machine would not, and that
    // is no plugin's doing.
    const QByteArray path = FilePath::encode(bundle);
    if (path.size() < PATH_MAX)
        std::memcpy(m_crumb->entered, path.constData(), static_cast<std::size_t>(path.size()) + 1);
    else
        *m_crumb->entered = '\0'; // better nobody than the one before
}

void PluginQuarantine::leave(const QString &bundle)
{
    if (bundle == m_entered)
        clear();
}

void PluginQuarantine::endIsAskedFor(bool isInHostsLoop)
{
    m_isEndAskedFor = true;
    if (!isInHostsLoop && !m_entered.isNull() && m_stage == Stage::Loading)
        CrashWitness::blame(FilePath::encode(m_entered).constData());
}

void PluginQuarantine::clear()
{
    m_entered.clear();
    if (m_crumb)
        *m_crumb->entered = '\0';
}
