#include "app/Snapshot.h"

#include "app/Printable.h"
#include "host/mndAppDelegate.h"

#include <QFileInfo>
#include <QPixmap>
#include <QTextStream>

int takeSnapshot(const mndAppDelegate &delegate, const QString &path)
{
    QTextStream out(stdout);
    QTextStream errors(stderr);
    for (const SourceListItem *heading : delegate.headings()) {
        out << printable(heading->title) << '\n';
        for (const SourceListItem *row : heading->children)
            out << "    " << printable(row->title) << '\n';
    }
    if (!delegate.window()) {
        errors << "solvane: there is no window to take a picture of\n";
        return 1;
    }
    // To open a pipe waits for its reader.
    const bool isInTheWay = QFileInfo::exists(path) && !QFileInfo(path).isFile();
    if (isInTheWay || !delegate.window()->grab().save(path)) {
        errors << "solvane: the picture could not be saved at \"" << path << "\""
               << (isInTheWay ? ": it is no file" : "") << '\n';
        return 1;
    }
    out << "Saved " << path << '\n';
    return 0;
}
