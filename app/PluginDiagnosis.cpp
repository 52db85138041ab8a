#include "app/PluginDiagnosis.h"

#include "app/Printable.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/PluginQuarantine.h"
#include "plugin_host/SidebarTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

using Row = std::array<QString, 5>;

QString milliseconds(double value)
{
    return QString::number(value, 'f', 1);
}

void printTable(const QList<Row> &rows, QTextStream &out)
{
    std::array<qsizetype, 5> widths{};
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    for (const Row &row : rows) {
        QString line;
        for (std::size_t i = 0; i < row.size(); ++i)
            line += row[i].leftJustified(widths[i] + 2);
        while (line.endsWith(u' '))
            line.chop(1);
        out << line << '\n';
    }
}

/// Whether its row does not come under one of the headings that are there without it.
bool isOfNoHeading(const PluginLoadReport &report, const SidebarTree::Headings &headings)
{
    constexpr qsizetype standardOnes = 5;
    const auto isTitle = [&](const SourceListItem *one) { return one->title == report.heading; };
    const auto known = headings.first(std::min(standardOnes, headings.size()));
    return report.accepted && !report.heading.isEmpty()
        && report.heading != SidebarTree::hiddenHeading()
        && std::none_of(known.begin(), known.end(), isTitle);
}

/// How long a plugin's threads and timers have to show what they do.
constexpr int afterwards = 250; // milliseconds

void letTimePass()
{
    QEventLoop moment;
    QTimer::singleShot(afterwards, &moment, &QEventLoop::quit);
    moment.exec();
}

/// Shows and hides the plugin's page as the host does, on a screen that is none.
void tryOut(mndPlugins &registry, const QObject *plugin)
{
    QWidget area;
    area.resize(540, 450);
    area.show();
    for (quint64 i = 0; i < registry.count(); ++i) {
        if (registry.pluginAtIndex(i).value<QObject *>(u"obj"_s) == plugin)
            registry.doDisplayMainViewForPluginAtIndex(i, &area);
    }
    area.grab();
    mndPlugins::removeSubviews(&area);
    registry.performSelectorOnAllDelegates(Selector(u"onViewHide"_s));
}

} // namespace

void PluginDiagnosis::bundleHandled(const PluginLoadReport &report)
{
    if (report.accepted)
        m_rows.insert({report.heading, report.name}, m_reports.size());
    m_reports << report;
}

void PluginDiagnosis::list(QTextStream &out) const
{
    QList<Row> rows{{u"ID"_s, u"NAME"_s, u"HEADING"_s, u"MS"_s, u"PATH"_s}};
    for (const PluginLoadReport &report : m_reports) {
        if (report.accepted) {
            rows << Row{printable(report.id), printable(report.name), printable(report.heading),
                        milliseconds(report.milliseconds), printable(report.path)};
        }
    }
    printTable(rows, out);
    for (const PluginLoadReport &report : m_reports) {
        QStringList said = report.problems;
        if (const QString shared = sharedRowOf(report); !shared.isNull())
            said << shared;
        if (!said.isEmpty())
            out << (report.accepted      ? "note: "
                        : report.leftOut ? "left out: "
                                         : "refused: ")
                << printable(report.path) << ": " << printable(said.join(u"; "_s)) << '\n';
    }
}

const PluginLoadReport *PluginDiagnosis::find(const QFileInfo &bundle) const
{
    // What is said of a link to the bundle is not said of the bundle.
    const auto isOfBundle = [&](const QFileInfo &reported) {
        return reported.absoluteFilePath() == bundle.absoluteFilePath()
            || (!reported.isSymLink()
                && reported.canonicalFilePath() == bundle.canonicalFilePath());
    };
    const auto found = std::find_if(m_reports.begin(), m_reports.end(), [&](const auto &report) {
        return !report.leftOut && isOfBundle(QFileInfo(report.path));
    });
    return found == m_reports.end() ? nullptr : &*found;
}

/// A new build of an installed plugin is no second one, but for those that come with the
/// application.
QString PluginDiagnosis::rivalOf(const PluginLoadReport &report) const
{
    const QString own = systemServices().mainBundle->path();
    const auto isRival = [&](const PluginLoadReport &other) {
        return &other != &report && other.accepted && !report.id.isEmpty() && other.id == report.id
            && (other.path.startsWith(own)
                || QFileInfo(other.path).fileName() != QFileInfo(report.path).fileName());
    };
    const auto found = std::find_if(m_reports.begin(), m_reports.end(), isRival);
    return found == m_reports.end() ? QString() : found->path;
}

QString PluginDiagnosis::sharedRowOf(const PluginLoadReport &report) const
{
    if (!report.accepted || report.name.isEmpty() || report.heading.isEmpty()
        || report.heading == SidebarTree::hiddenHeading())
        return {};
    const QList<qsizetype> rows = m_rows.values({report.heading, report.name});
    const auto found = std::find_if(rows.rbegin(), rows.rend(),
                                    [&](qsizetype row) { return m_reports[row].id != report.id; });
    if (found == rows.rend())
        return {};
    return u"its row \"%1\" below \"%2\" has the titles of that of %3: badges, icons and "
           "showPlugin reach only one of them"_s.arg(report.name, report.heading,
                                                     m_reports[*found].path);
}

/// In a registry of its own, so that a new build can be checked while an older one is installed.
mndPlugins &PluginDiagnosis::load(const QString &bundle, mndAppDelegate &delegate)
{
    mndPlugins &registry = *m_registries.emplace_back(std::make_unique<mndPlugins>(&delegate));
    registry.setObserver(this);
    registry.loadPluginFromPath(bundle);
    return registry;
}

QStringList PluginDiagnosis::problemsOfCalls(const QObject *plugin) const
{
    constexpr int longest = 50; // milliseconds
    QStringList problems;
    for (const PluginCall &call : m_calls) {
        if (call.plugin != plugin)
            continue;
        if (!call.exception.isNull())
            problems << u"%1 threw an exception: %2"_s.arg(call.name, call.exception);
        if (call.milliseconds > longest)
            problems << u"%1 took %2 ms: everybody waits, and %3 ms is the limit"_s.arg(
                call.name, milliseconds(call.milliseconds), QString::number(longest));
    }
    problems.removeDuplicates();
    return problems;
}

int PluginDiagnosis::check(const QString &path, mndAppDelegate &delegate,
                           PluginQuarantine &quarantine, QTextStream &out)
{
    const QFileInfo bundle(QDir::cleanPath(path));
    // The host comes to the end of its start, and tells its own plugins that all are loaded.
    letTimePass();
    const PluginLoadReport *report = bundle.exists() ? find(bundle) : nullptr;
    mndPlugins *registry = delegate.plugins();
    // Not the registry's own: what is left out elsewhere is checked all the same.
    quarantine.enter(bundle.absoluteFilePath());
    if (!report) {
        registry = &load(bundle.absoluteFilePath(), delegate);
        report = &m_reports.last();
        registry->performSelectorOnAllDelegates(Selector(u"onAllPluginsLoaded"_s));
    }
    if (report->plugin) {
        tryOut(*registry, report->plugin);
        // For the registry that is over as soon as the page has been painted.
        QCoreApplication::processEvents();
        quarantine.enter(bundle.absoluteFilePath());
        letTimePass();
    }
    quarantine.leave(bundle.absoluteFilePath());
    QStringList problems = report->problems + problemsOfCalls(report->plugin);
    if (const QString rival = report->accepted ? rivalOf(*report) : QString(); !rival.isNull())
        problems << u"\"%1\" is already the id of %2: one of them is refused"_s.arg(report->id,
                                                                                    rival);
    if (const QString shared = sharedRowOf(*report); !shared.isNull())
        problems << shared;
    if (isOfNoHeading(*report, delegate.headings()))
        problems << u"its heading \"%1\" is none of the host's: it gets one of its own"_s.arg(
            report->heading);
    if (bundle.isSymLink() && report->accepted)
        problems << u"it is a link: among the added plugins links are not followed"_s;
    const QString name = printable(bundle.fileName());
    for (const QString &problem : std::as_const(problems))
        out << name << ": " << printable(problem) << '\n';
    if (bundle.suffix() != "bundle"_L1)
        out << name << ": its name does not end in \".bundle\": it is never looked at\n";
    else if (problems.isEmpty())
        out << name << ": no problems found; \"" << printable(report->id) << "\" loads in "
            << milliseconds(report->milliseconds) << " ms\n";
    return report->accepted && problems.isEmpty() && bundle.suffix() == "bundle"_L1 ? 0 : 1;
}
