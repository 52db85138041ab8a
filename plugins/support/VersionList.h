#pragma once

#include "BundleVersions.h"

#include "plugins/common/Card.h"
#include "plugins/common/Texts.h"

class QGridLayout;

/// A card with a name and a version per line: first the program's own lines, then the plugins.
class VersionList : public Card
{
public:
    struct Line
    {
        QString name;
        QString version;
    };

    /// @param program the lines about the program itself.
    VersionList(Texts texts, std::vector<Line> program);

    void setPlugins(const std::vector<BundleVersion> &plugins);

    /// All lines as plain text, one a line, for a message to the support.
    QString plainText() const;

private:
    void show(const std::vector<Line> &lines);

    Texts m_texts;
    std::vector<Line> m_program;
    std::vector<Line> m_lines;
    QGridLayout *m_grid;
};
