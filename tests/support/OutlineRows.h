#pragma once

#include "platform/ui/OutlineView.h"

/// "A(a b) B(c)": makes items at the top, below the root, and their children.
template <typename Make>
void growTree(const QString &tree, QObject *root, const Make &make)
{
    for (const QString &group : tree.split(u')', Qt::SkipEmptyParts)) {
        const QStringList parts = group.trimmed().split(u'(');
        QObject *top = make(parts[0], root);
        for (const QString &name : parts[1].split(u' ', Qt::SkipEmptyParts))
            make(name, top);
    }
}

/// The names of the rows, with the selected ones in brackets: "A [a] b B".
inline QString rowsOf(const OutlineView &view)
{
    QStringList names;
    for (int row = 0; row < view.numberOfRows(); ++row) {
        const QObject *item = view.itemAtRow(row);
        const QString name = item ? item->objectName() : u"?"_s;
        names << (view.isRowSelected(row) ? u"["_s + name + u"]"_s : name);
    }
    return names.join(u' ');
}

inline QPoint middleOfRow(const OutlineView &view, int row)
{
    return view.rectOfRow(row).center().toPoint();
}

inline void click(OutlineView &view, int row, Qt::KeyboardModifiers modifiers = {})
{
    QTest::mouseClick(view.viewport(), Qt::LeftButton, modifiers, middleOfRow(view, row));
}
