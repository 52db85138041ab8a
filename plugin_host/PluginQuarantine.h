#pragma once

#include "platform/foundation/FileDescriptor.h"

#include <QString>
#include <QStringList>

/// Keeps plugins out of a run: those the user named, those that do not come with the application in
/// a safe run, and those that took the program down.
///
/// A breadcrumb, a small file with the path of a bundle, lies on disk while a plugin's code is
/// loaded or its view is first shown. One that an earlier run has left names the culprit. Main
/// thread.
class PluginQuarantine
{
public:
    struct Options
    {
        bool bundledOnly = false; ///< a safe run: nothing of the user's own
        /// Ids, bundle identifiers or names of bundles with or without ".bundle".
        QStringList leftOut;
    };

    PluginQuarantine();
    explicit PluginQuarantine(Options options);
    ~PluginQuarantine();
    Q_DISABLE_COPY_MOVE(PluginQuarantine)

    /// Where the breadcrumb of the running user belongs, in the XDG state folder.
    static QString breadcrumbPath();

    /// Keeps breadcrumbs in this file from now on, unless another process does so already. False
    /// when there will be none.
    bool keepBreadcrumbs(const QString &file);
    /// Takes the breadcrumb away and keeps none from here on: an orderly end is nobody's fault.
    /// Done by the destructor, too.
    void end();
    /// The bundle that the run before ended in; null when it ended well.
    const QString &culprit() const { return m_culprit; }

    bool bundledOnly() const { return m_options.bundledOnly; }
    /// Whether the user named one of these for this run.
    bool isNamed(const QStringList &names);
    /// Those that the user named and nothing so far was.
    const QStringList &unknownNames() const { return m_unknown; }

    /// Leaves the bundle out of every later run, until its module changes.
    static void leaveOut(const QString &bundle, const QString &module);
    static bool isLeftOut(const QString &bundle, const QString &module);
    static bool isAnyLeftOut();

    /// The bundle's code may run from here on, until it is left or another one is entered.
    void enter(const QString &bundle);
    void leave(const QString &bundle);

private:
    void clear();

    Options m_options;
    QStringList m_unknown;
    QByteArray m_path;
    FileDescriptor m_file; ///< keeps the lock
    /// The file, mapped; PATH_MAX bytes, of which a text up to its end counts.
    char *m_crumb = nullptr;
    QString m_culprit;
    QString m_entered;
};
