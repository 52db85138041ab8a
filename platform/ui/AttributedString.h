#pragma once

#include <QColor>
#include <QImage>
#include <QMetaType>
#include <QString>

/// Text, or an attached image in the place of text, and how it is to be shown.
struct AttributedString
{
    QString text;
    QImage attachment; ///< its size in points is its size over its device pixel ratio
    bool underlined = false;
    QColor color; ///< invalid: the reader's own
    Qt::Alignment alignment = Qt::AlignLeft;
};

Q_DECLARE_METATYPE(AttributedString)
