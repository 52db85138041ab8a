#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>

/// The contents of a small file, such as one of the kernel's, which give their size as 0.
/// Empty when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? file.readAll() : QByteArray();
}
