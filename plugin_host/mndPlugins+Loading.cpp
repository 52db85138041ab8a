#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/OwnTime.h"
#include "platform/foundation/Perform.h"
#include "platform/foundation/ProductAddresses.h"
#include "platform/foundation/SystemServices.h"
#include "platform/foundation/WriteAccess.h"
#include "plugin_host/BundleReadAhead.h"
#include "plugin_host/mndCore.h"
#include "plugin_host/mndPlugin.h"
#include "plugin_host/mndPlugins.h"
#include "plugin_host/PluginModules.h"
#include "plugin_host/PluginQuarantine.h"
#include "plugin_host/SidebarTree.h"

#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

constexpr int hostApiVersion = 6;

/// From so many on, a thread that reads ahead saves more than it takes.
constexpr qsizetype manyBundles = 8;

/// A folder that the desktop shows as one thing.
bool isFilePackage(const QFileInfo &entry)
{
    static const QStringList packageTypes{u"app"_s, u"bundle"_s, u"framework"_s};
    return entry.isDir() && packageTypes.contains(entry.suffix().toLower());
}

QString initializationError(const QString &path, const QString &description)
{
    return format(u"We encountered an error while initializing a component. (%@ : %@)"_s,
                  {QFileInfo(path).fileName(), description})
        + u"\n\nPlease visit %1 or write to %2 if the problem persists.\n\n"_s.arg(
            ProductAddresses::support(), ProductAddresses::supportMail())
        + u"Solvane will now attempt to continue loading."_s;
}

/// Whether the bundle's module makes a principal object for this host, and if not, why.
bool declaresPlugin(const Bundle &bundle, BundleModule &module, QStringList &problems)
{
    if (const QString problem = bundle.infoProblem(); !problem.isNull()) {
        problems << problem;
        return false;
    }
    if (bundle.executablePath().isNull()) {
        problems << u"Info.plist names no module: CFBundleExecutable is missing or no file name"_s;
        return false;
    }
    const auto metadata = module.metadata();
    if (!metadata) {
        problems << metadata.error();
        return false;
    }
    if (metadata.value().interfaceId != QLatin1StringView(mndPlugin_iid)) {
        problems << u"not a plugin of this host: the module's interface is \"%1\", not \"%2\""_s
                        .arg(metadata.value().interfaceId, QLatin1StringView(mndPlugin_iid));
        return false;
    }
    if (metadata.value().apiVersion == 0) {
        problems
            << u"its metadata names no host API: Q_PLUGIN_METADATA needs FILE \"plugin.json\""_s;
        return false;
    }
    if (metadata.value().apiVersion != hostApiVersion) {
        problems << u"built for host API %1, this host has %2"_s.arg(metadata.value().apiVersion)
                        .arg(hostApiVersion);
        return false;
    }
    return true;
}

/// Where plugins of the user's own lie.
QString addedFolder()
{
    return systemServices().account->home() + u"/Library/Application Support/Solvane"_s;
}

/// What the author of an accepted plugin should know.
QStringList remarks(const Dictionary &info, const QObject *plugin)
{
    QStringList found;
    if (!info.contains(u"id"_s))
        found << u"the info dictionary has no \"id\": other plugins cannot address it"_s;
    else if (info.value(u"id"_s).typeId() != QMetaType::QString)
        found << u"\"id\" is no QString: other plugins cannot address it"_s;
    else if (info.string(u"id"_s).isEmpty())
        found << u"\"id\" is empty: other plugins cannot address it"_s;
    if (!info.contains(u"name"_s))
        found << u"the info dictionary has no \"name\": its row has no title"_s;
    if (!info.contains(u"parent"_s))
        found
            << u"the info dictionary has no \"parent\": its row goes under a heading without title"_s;
    if (info.contains(u"view"_s) && info.value(u"view"_s).metaType() != QMetaType()
        && !info.value(u"view"_s).canConvert<QWidget *>())
        found << u"\"view\" is no QWidget: it gets no row and is never shown"_s;
    else if (!info.value<QWidget *>(u"view"_s))
        found << u"the info dictionary has no \"view\": it gets no row and is never shown"_s;
    for (const QString &key : {u"icon"_s, u"icon-selected"_s}) {
        if (info.contains(key) && info.value<QImage>(key).isNull())
            found << u"\"%1\" is no QImage, or an empty one: its row has no icon"_s.arg(key);
    }
    const auto responds = [plugin](const char *method) {
        return perform::responds(plugin, Selector(QString::fromLatin1(method)));
    };
    if (!qobject_cast<const mndPluginDelegate *>(plugin)
        && (dynamic_cast<const mndPluginDelegate *>(plugin) || responds("onViewShow")
            || responds("onViewHide") || responds("onAllPluginsLoaded"))) {
        found << u"what mndPluginDelegate has is never called: the class does not name it in "
                 "Q_INTERFACES"_s;
    }
    return found;
}

/// Whoever can write into a plugin runs code of his own as the user. What can be said against one
/// that comes with the application can be said against the application.
bool isTrusted(const Bundle &bundle, PluginLoadReport &report)
{
    if (bundle.path().startsWith(systemServices().mainBundle->path() + u'/'))
        return true;
    for (const QString &file :
         {bundle.path() + u"/Contents/Info.plist"_s, bundle.executablePath()}) {
        const WriteAccess::Finding finding = WriteAccess::of(file);
        if (!finding.refusal.isNull()) {
            report.problems = {u"others could have changed it: "_s + finding.refusal};
            return false;
        }
        if (!finding.remark.isNull() && report.problems.isEmpty())
            report.problems << u"others could have changed it: "_s + finding.remark;
    }
    return true;
}

QStringList addedBundles()
{
    QStringList paths;
    const QString folder = addedFolder();
    // Links are not followed, so that a folder of links in a circle is just a folder of links.
    const QDir directory(folder, u"*.bundle"_s, QDir::Name,
                         QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot | QDir::NoSymLinks
                             | QDir::CaseSensitive);
    for (const QFileInfo &entry : directory.entryInfoList()) {
        if (isFilePackage(entry) && !entry.completeBaseName().isEmpty())
            paths << QString(folder + u'/' + entry.fileName()).replace(u"//"_s, u"/"_s);
    }
    return paths;
}

} // namespace

bool mndPlugins::hasAddedBundles()
{
    return !addedBundles().isEmpty();
}

QStringList mndPlugins::pathsToLoad() const
{
    const QStringList own = systemServices().mainBundle->pathsForResources(u"bundle"_s);
    return m_quarantine && m_quarantine->bundledOnly() ? own : own + addedBundles();
}

/// Authors like to link what they build.
void mndPlugins::tellOfLinks()
{
    QDirIterator entries(addedFolder(), {u"*.bundle"_s}, QDir::AllEntries | QDir::System);
    while (entries.hasNext()) {
        PluginLoadReport report;
        report.path = entries.next();
        report.problems << u"it is a link, which is not followed: copy the bundle"_s;
        if (entries.fileInfo().isSymLink())
            m_observer->bundleHandled(report);
    }
}

void mndPlugins::loadAllPlugins()
{
    const QStringList paths = pathsToLoad();
    // What is left out stays unread.
    QStringList toRead = paths;
    toRead.removeIf([this](const QString &path) {
        PluginLoadReport report;
        return isLeftOut(path, report);
    });
    std::optional<BundleReadAhead> ahead;
    // Where one has taken the program down they come one after the other: should it be the reading
    // that does so, then the breadcrumb is to lie at the right one.
    const bool isCautious = m_quarantine && m_quarantine->crashes() > 0;
    if (toRead.size() >= manyBundles && !isCautious)
        ahead.emplace(toRead);
    m_ids.emplace();
    for (const Dictionary &record : std::as_const(_plugins))
        m_ids->insert(info(record).string(u"id"_s));
    for (const QString &path : paths) {
        if (m_quarantine && m_quarantine->isEndAskedFor())
            break;
        loadBundle(path, [&] { return ahead ? ahead->take(path) : ReadBundle::open(path); });
    }
    m_ids.reset();
    if (m_observer)
        tellOfLinks();
}

bool mndPlugins::loadPluginFromPath(const QString &path)
{
    return loadBundle(path, [&] { return ReadBundle::open(path); });
}

bool mndPlugins::loadBundle(const QString &path, const std::function<ReadBundle()> &read)
{
    PluginLoadReport report;
    report.path = path;
    QElapsedTimer timer;
    timer.start();
    if (m_quarantine)
        m_quarantine->enter(path, PluginQuarantine::Stage::Loading);
    try {
        report.result = !isLeftOut(path, report) && load(read(), report);
    } catch (...) {
        // Its code stays, and threads of it may go on.
        PluginModules::add(path, nullptr);
        const QString description = currentExceptionText();
        report.problems << u"it threw an exception: %1"_s.arg(description);
        report.message = initializationError(path, description);
    }
    if (m_quarantine)
        m_quarantine->leave(path);
    report.milliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    if (m_observer)
        m_observer->bundleHandled(report);
    return report.result;
}

/// As far as it can be told without reading anything of the bundle.
bool mndPlugins::isLeftOut(const QString &path, PluginLoadReport &report) const
{
    if (!m_quarantine)
        return false;
    const QFileInfo file(path);
    if (m_quarantine->isNamed({file.fileName(), file.completeBaseName()}))
        report.problems << u"left out, as asked"_s;
    else if ((report.leftOutAfterCrash = PluginQuarantine::isLeftOut(path)))
        report.problems << u"left out since it took Solvane down: a new build is tried again"_s;
    report.leftOut = !report.problems.isEmpty();
    return report.leftOut;
}

/// As far as it can be told before any of the bundle's code runs.
bool mndPlugins::isKeptOut(const Bundle &bundle, PluginLoadReport &report) const
{
    report.leftOut = m_quarantine
        && m_quarantine->isNamed({bundle.infoValue(u"CFBundleIdentifier"_s).toString()});
    if (report.leftOut)
        report.problems << u"left out, as asked"_s;
    return report.leftOut;
}

bool mndPlugins::load(const ReadBundle &read, PluginLoadReport &report)
{
    const auto &bundle = read.bundle;
    if (!bundle) {
        report.problems << bundle.error();
        return false;
    }
    BundleModule &module = *read.module;
    if (isKeptOut(*bundle.value(), report))
        return false;
    if (!isTrusted(*bundle.value(), report)) {
        systemServices().systemLog->write(
            u"%1 is not loaded: %2"_s.arg(report.path, report.problems.value(0)));
        return false;
    }
    if (!declaresPlugin(*bundle.value(), module, report.problems))
        return true;
    const OwnTime constructing(m_observer != nullptr);
    const auto made = module.makePrincipalObject();
    const double constructed = constructing.milliseconds();
    if (!made) {
        report.problems << made.error();
        return !module.isInUse();
    }
    return initialize(std::unique_ptr<QObject>(made.value()), constructed, report);
}

/// @param constructed what making the object took, in milliseconds.
bool mndPlugins::initialize(std::unique_ptr<QObject> object, double constructed,
                            PluginLoadReport &report)
{
    PluginModules::add(report.path, object->metaObject());
    auto *plugin = qobject_cast<mndPlugin *>(object.get());
    if (!plugin) {
        report.problems << u"not a plugin: its root object does not implement mndPlugin"_s;
        return true;
    }

    Dictionary parameters = Dictionary::make();
    parameters.setValue(u"bundle"_s, report.path);
    parameters.setValue(u"core"_s, QVariant::fromValue<QObject *>(m_core));
    const OwnTime initializing(m_observer != nullptr);
    const Dictionary info = plugin->pluginInitialize(parameters);
    const double initialized = initializing.milliseconds();
    if (info.isAbsent()) {
        report.problems << u"pluginInitialize: returned nothing"_s;
        return false;
    }
    report.id = info.string(u"id"_s);
    PluginModules::setId(report.path, report.id);
    report.name = info.string(u"name"_s);
    report.heading = info.string(u"parent"_s);
    if (info.contains(u"id"_s) && isTaken(report.id)) {
        report.problems << u"a plugin with the id \"%1\" is already loaded"_s.arg(report.id);
        return false;
    }
    if (m_quarantine && m_quarantine->isNamed({report.id})) {
        report.leftOut = true;
        report.problems << u"left out, as asked"_s;
        return false;
    }
    report.problems << remarks(info, object.get());
    if (m_quarantine) {
        m_bundles.insert(object.get(), report.path);
        m_neverShown.insert(object.get());
    }
    report.plugin = object.get();
    accept(info, std::move(object));
    report.accepted = true;
    if (m_observer) {
        m_observer->pluginCalled({report.plugin, u"making its object"_s, constructed, {}});
        m_observer->pluginCalled({report.plugin, u"pluginInitialize"_s, initialized, {}});
    }
    return true;
}

/// To look through all records for each new one would take longer than to load them.
bool mndPlugins::isTaken(const QString &id) const
{
    return (!m_ids || m_ids->contains(id)) && listContainsID(id);
}

void mndPlugins::accept(const Dictionary &info, std::unique_ptr<QObject> plugin)
{
    Dictionary record = Dictionary::make();
    record.setValue(u"dat"_s, QVariant::fromValue(info));
    recurseSubViews(info.value<QWidget *>(u"view"_s));
    record.setValue(u"obj"_s, QVariant::fromValue(plugin.get()));
    // What a plugin deletes behind the host's back is gone for the host too.
    QObject::connect(plugin.get(), &QObject::destroyed, &m_guard,
                     [record]() mutable { record.setValue(u"obj"_s, {}); });
    watchView(record);
    _plugins.append(record);
    if (m_ids)
        m_ids->insert(info.string(u"id"_s));
    plugin.release();
}
