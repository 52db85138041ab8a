#include "tests/rules/IncludeRules.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

// From the roof down. Each may include itself and whatever stands after it.
const std::array floors{u"app/"_s,
                        u"host/"_s,
                        u"aux_windows/"_s,
                        u"helpers/"_s,
                        u"plugin_host/"_s,
                        u"sourcelist/"_s,
                        u"platform/webview/"_s,
                        u"platform/ui/"_s,
                        u"platform/foundation/"_s};

/// Position of the file's floor; the number of floors for a file outside them.
auto floorOf(const QString &file)
{
    return std::find_if(floors.begin(), floors.end(),
                        [&](const QString &floor) { return file.startsWith(floor); });
}

/// "plugins/name/" of a plugin's file, "sdk/" of what plugin authors are given; null for any other.
QString pluginFolder(const QString &file)
{
    static const QRegularExpression pattern(u"^(plugins/[^/]+|sdk)/"_s);
    return pattern.match(file).captured();
}

bool isGenerated(const QString &included)
{
    static const QRegularExpression pattern(uR"(^(ui_\w+\.h|moc_\w+\.cpp|\w+\.moc)$)"_s);
    return pattern.match(included).hasMatch();
}

} // namespace

IncludeRules::IncludeRules(QString root, QStringList publicHeaders)
    : m_root(std::move(root))
    , m_publicHeaders(publicHeaders.begin(), publicHeaders.end())
{ }

QStringList IncludeRules::violations(const QString &file, const QByteArray &content) const
{
    static const QRegularExpression include(uR"~(^[ \t]*#[ \t]*include[ \t]*"([^"]*)")~"_s,
                                            QRegularExpression::MultilineOption);
    QStringList result;
    const QString text = QString::fromUtf8(content);
    for (auto matches = include.globalMatch(text); matches.hasNext();) {
        const QString included = matches.next().captured(1);
        const QString reason = objection(file, included);
        if (!reason.isNull())
            result += u"%1 includes \"%2\": %3"_s.arg(file, included, reason);
    }
    return result;
}

QString IncludeRules::objection(const QString &file, const QString &included) const
{
    if (isGenerated(included))
        return {};
    const QString folder = file.left(file.lastIndexOf(u'/') + 1);
    const QString plugin = pluginFolder(file);

    if (m_publicHeaders.contains(file))
        return m_publicHeaders.contains(included) ? QString() : u"it is not a public header"_s;
    if (!plugin.isNull()) {
        const bool own = included.startsWith(plugin) || included.startsWith(u"plugins/common/"_s)
            || QFileInfo::exists(m_root + u'/' + folder + included);
        const bool allowed =
            own || included == u"SolvanePlugin.h"_s || m_publicHeaders.contains(included);
        return allowed ? QString() : u"plugins see the public headers and their own files"_s;
    }
    if (!included.contains(u'/'))
        return u"headers are named from the top of the tree"_s;

    const auto from = floorOf(file);
    const auto to = floorOf(included);
    if (to == floors.end())
        return u"it stands on no floor"_s;
    return to < from ? u"it stands on a higher floor"_s : QString();
}

QStringList IncludeRules::files() const
{
    QStringList folders{u"plugins"_s, u"sdk"_s};
    for (const QString &floor : floors)
        folders += floor.chopped(1);

    QStringList result;
    for (const QString &folder : folders) {
        QDirIterator files(m_root + u'/' + folder, {u"*.h"_s, u"*.cpp"_s}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext())
            result += files.next().mid(m_root.size() + 1);
    }
    return result;
}
