#include "VersionList.h"

#include "plugins/common/ElidedLabel.h"
#include "plugins/common/Look.h"

#include <QGridLayout>

#include <iterator>

using namespace Qt::StringLiterals;

VersionList::VersionList(Texts texts, std::vector<Line> program)
    : m_texts(texts)
    , m_program(std::move(program))
    , m_grid(new QGridLayout(this))
{
    m_grid->setContentsMargins(18, 14, 18, 14);
    m_grid->setHorizontalSpacing(12);
    m_grid->setVerticalSpacing(9);
    // Identifiers are long and wanted whole.
    m_grid->setColumnStretch(0, 1);
    show(m_program);
}

void VersionList::setPlugins(const std::vector<BundleVersion> &plugins)
{
    std::vector<Line> lines = m_program;
    for (const BundleVersion &plugin : plugins) {
        const QString name = plugin.added
            ? m_texts(u"SZ_SUPPORT_ADDED"_s, u"%1 (added)"_s, {plugin.name})
            : plugin.name;
        lines.push_back({name, plugin.version.isEmpty() ? u"\u2013"_s : plugin.version});
    }
    show(lines);
}

void VersionList::show(const std::vector<Line> &lines)
{
    while (QLayoutItem *item = m_grid->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_lines = lines;
    int row = 0;
    for (const Line &line : lines) {
        // Our own words may take two lines; the name of a plugin may be one long one.
        auto *name = row < std::ssize(m_program) ? new QLabel : new ElidedLabel;
        name->setTextFormat(Qt::PlainText);
        name->setWordWrap(row < std::ssize(m_program));
        name->setText(line.name);
        look::alignToLayout(name);
        auto *version = new ElidedLabel;
        version->setText(line.version);
        version->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        version->setAccessibleName(u"%1: %2"_s.arg(line.name, line.version));
        look::setTextColor(version, look::secondaryText);
        m_grid->addWidget(name, row, 0);
        m_grid->addWidget(version, row, 1);
        ++row;
    }
}

QString VersionList::plainText() const
{
    QString text;
    for (const Line &line : m_lines)
        text += line.name + u": "_s + line.version + u'\n';
    return text;
}
