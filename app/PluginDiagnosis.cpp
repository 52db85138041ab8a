#include "app/PluginDiagnosis.h"

#include "app/Printable.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/SystemServices.h"
#include "plugin_host/PluginQuarantine.h"
#include "plugin_host/SidebarTree.h"

#include <QDir>
#include <QFileInfo>

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

} // namespace

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
        if (!report.accepted)
            out << (report.leftOut ? "left out: " : "refused: ") << printable(report.path) << ": "
                << printable(report.problems.join(u"; "_s)) << '\n';
        else if (const QString shared = sharedRowOf(report); !shared.isNull())
            out << "note: " << printable(report.path) << ": " << printable(shared) << '\n';
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
    const auto isOfTheSameRow = [&](const PluginLoadReport &other) {
        return other.accepted && other.heading == report.heading && other.name == report.name
            && other.id != report.id;
    };
    const auto found = std::find_if(m_reports.begin(), m_reports.end(), isOfTheSameRow);
    if (!report.accepted || report.name.isEmpty() || report.heading.isEmpty()
        || report.heading == SidebarTree::hiddenHeading() || found == m_reports.end())
        return {};
    return u"its row \"%1\" below \"%2\" has the titles of that of %3: badges, icons and "
           "showPlugin reach only one of them"_s.arg(report.name, report.heading, found->path);
}

int PluginDiagnosis::check(const QString &path, QObject &core, PluginQuarantine &quarantine,
                           QTextStream &out)
{
    const QFileInfo bundle(QDir::cleanPath(path));
    const PluginLoadReport *report = bundle.exists() ? find(bundle) : nullptr;
    if (!report) {
        // In a registry of its own, so that a new build can be checked while an older one is
        // installed.
        auto &registry = m_registries.emplace_back(std::make_unique<mndPlugins>(&core));
        registry->setObserver(this);
        // Not the registry's own: what is left out elsewhere is checked all the same.
        quarantine.enter(bundle.absoluteFilePath());
        registry->loadPluginFromPath(bundle.absoluteFilePath());
        quarantine.leave(bundle.absoluteFilePath());
        report = &m_reports.last();
    }
    QStringList problems = report->problems;
    if (const QString rival = report->accepted ? rivalOf(*report) : QString(); !rival.isNull())
        problems << u"\"%1\" is already the id of %2: one of them is refused"_s.arg(report->id,
                                                                                    rival);
    if (const QString shared = sharedRowOf(*report); !shared.isNull())
        problems << shared;
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
