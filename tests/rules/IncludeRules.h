#pragma once

#include <QByteArray>
#include <QSet>
#include <QString>
#include <QStringList>

/// Which file of the tree may include which: floors are built on those below, plugins on the public
/// headers alone, and public headers on nothing that is not public.
class IncludeRules
{
public:
    /// @param root the top of the source tree.
    /// @param publicHeaders paths from the root.
    IncludeRules(QString root, QStringList publicHeaders);

    /// One line for each quoted include of the file that breaks a rule; empty when all are right.
    /// @param file path from the root; it need not exist.
    QStringList violations(const QString &file, const QByteArray &content) const;

    /// Every header and source file of the floors and plugins, as paths from the root.
    QStringList files() const;

private:
    QString objection(const QString &file, const QString &included) const;

    QString m_root;
    QSet<QString> m_publicHeaders;
};
