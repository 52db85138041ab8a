#include "app/Snapshot.h"

#include "host/mndAppDelegate.h"

#include <QPixmap>
#include <QTextStream>

int takeSnapshot(const mndAppDelegate &delegate, const QString &path)
{
    QTextStream out(stdout);
    QTextStream errors(stderr);
    for (const SourceListItem *heading : delegate.headings()) {
        out << heading->title << '\n';
        for (const SourceListItem *row : heading->children)
            out << "    " << row->title << '\n';
    }
    if (!delegate.window()) {
        errors << "solvane: there is no window to take a picture of\n";
        return 1;
    }
    if (!delegate.window()->grab().save(path)) {
        errors << "solvane: the picture could not be saved at " << path << '\n';
        return 1;
    }
    out << "Saved " << path << '\n';
    return 0;
}
