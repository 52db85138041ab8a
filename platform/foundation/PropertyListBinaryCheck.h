#pragma once

#include <QByteArray>
#include <QString>

/// Looks over the binary form of a property list before libplist reads it. In this form objects
/// refer to each other by number, so that a hundred bytes can stand for more values than fit any
/// memory, or for a tree without end; libplist builds and frees what they stand for recursively.
namespace PropertyListBinaryCheck {

/// Null when every object lies inside the data and the whole expands within the limits; else what
/// is wrong.
QString problem(const QByteArray &data);

} // namespace PropertyListBinaryCheck
