#pragma once

#include "platform/foundation/FileDescriptor.h"
#include "plugin_host/CrashWitness.h"

#include <QString>
#include <QStringList>

#include <functional>

/// Keeps plugins out of a run: those the user named, those that do not come with the application in
/// a safe run, and those that took the program down.
///
/// A breadcrumb, a small file, lies on disk for as long as the program runs. What is left of it by
/// a run that did not end in order tells the next one in whose code that happened: what the
/// CrashWitness saw, or else whose code was being started or ended. Main thread.
class PluginQuarantine
{
public:
    struct Options
    {
        bool bundledOnly = false; ///< a safe run: nothing of the user's own
        /// Ids, bundle identifiers or names of bundles with or without ".bundle".
        QStringList leftOut;
    };
    enum class Stage {
        Loading, ///< nothing else is done meanwhile
        Working,
    };

    PluginQuarantine();
    explicit PluginQuarantine(Options options);
    ~PluginQuarantine();
    Q_DISABLE_COPY_MOVE(PluginQuarantine)

    /// Where the breadcrumb of the running user belongs, in the XDG state folder.
    static QString breadcrumbPath();

    /// Keeps breadcrumbs in this file from now on, unless another process does so already, and has
    /// the process watched for crashes. False when there will be none.
    bool keepBreadcrumbs(const QString &file);
    /// Keeps no breadcrumb from here on: an orderly end is nobody's fault. The file goes, unless
    /// there is a culprit whom the user was not asked about. Done by the destructor, too.
    void end();
    /// The bundle that a run before ended in; null when it ended well. Told at every start until it
    /// is settled.
    const QString &culprit() const { return m_culprit; }
    /// How many runs have crashed, one after the other, up to this one.
    unsigned crashes() const { return m_crumb ? m_crumb->crashes : 0; }
    /// The user has decided about the culprit.
    /// @param isMended the reason for the crashes is gone, too.
    void settle(bool isMended);

    bool bundledOnly() const { return m_options.bundledOnly; }
    void setBundledOnly() { m_options.bundledOnly = true; }
    /// Whether the user named one of these for this run.
    bool isNamed(const QStringList &names);
    /// Those that the user named and nothing so far was.
    const QStringList &unknownNames() const { return m_unknown; }

    /// Whether it comes with the application. Such bundles are never left out for good.
    static bool isBundled(const QString &bundle);
    /// Leaves the bundle out of every later run, until its module changes.
    static void leaveOut(const QString &bundle, const QString &module);
    /// Nothing of the bundle is read to tell.
    static bool isLeftOut(const QString &bundle) { return leftOut().contains(bundle); }
    /// All that are left out and still there.
    static QStringList leftOut();
    /// Starts it again from the next run on.
    /// @param done told whether that was stored, later; may be null.
    static void takeBack(const QString &bundle, std::function<void(bool)> done = {});

    /// The bundle's code may run from here on, until it is left or another one is entered.
    void enter(const QString &bundle, Stage stage = Stage::Working);
    void leave(const QString &bundle);

    /// The end was asked for from outside. That this is heard in the middle of a bundle's loading
    /// means that its code handles events and does not return: it is the culprit.
    /// @param isInHostsLoop the host itself waits for an answer of the user.
    void endIsAskedFor(bool isInHostsLoop);
    bool isEndAskedFor() const { return m_isEndAskedFor; }

private:
    void clear();

    Options m_options;
    QStringList m_unknown;
    QByteArray m_path;
    FileDescriptor m_file;         ///< keeps the lock
    Breadcrumb *m_crumb = nullptr; ///< the file, mapped
    QString m_culprit;
    QString m_entered;
    Stage m_stage = Stage::Working;
    bool m_isEndAskedFor = false;
};
