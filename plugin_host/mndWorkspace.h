#pragma once

#include <QString>
#include <QtPlugin>

#include <functional>

/// The desktop's own way of opening things, which tells when it could not: the shared object
/// "SHARED.WORKSPACE", which lives as long as the program. Main thread.
class mndWorkspace
{
public:
    virtual ~mndWorkspace() = default;

    /// Opens an address in the user's program for it.
    /// @return false when nothing could be started to open it.
    /// @param failed called later, once at most, when what was started could not open it either.
    ///        May be empty. What it refers to may be gone by then: guard it, as by a QPointer.
    virtual bool openUrl(const QString &url, const std::function<void()> &failed) = 0;
    /// As openUrl(); false for a file that does not exist, too.
    virtual bool openFile(const QString &path, const std::function<void()> &failed) = 0;
};

#define mndWorkspace_iid "com.solvane.mndWorkspace/6"
Q_DECLARE_INTERFACE(mndWorkspace, mndWorkspace_iid)
