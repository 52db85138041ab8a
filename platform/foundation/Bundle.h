#pragma once

#include "platform/foundation/Result.h"

#include <QStringList>
#include <QVariant>

#include <memory>
#include <mutex>

/// A folder Name.app or Name.bundle with Contents/Info.plist, Contents/MacOS and
/// Contents/Resources.
///
/// Virtual where a test may put a bundle of its own in place of the program's. Any thread. What the
/// disk holds is looked up at each call, except the information dictionary.
class Bundle
{
public:
    /// Fails when the path is no folder. The folder's content is not looked at.
    static Result<std::unique_ptr<Bundle>> open(const QString &path);

    /// The bundle the running program lives in; for a program outside of one, its own folder.
    static QString mainBundlePath();

    /// Of any path: a bundle without its folder has no information and no resources.
    explicit Bundle(const QString &path);
    virtual ~Bundle() = default;
    Bundle(const Bundle &) = delete;
    Bundle &operator=(const Bundle &) = delete;

    /// Absolute and clean, without a slash at the end.
    virtual QString path() const { return m_path; }

    /// The content of Info.plist, read at the first call. Empty when it is missing or unreadable.
    virtual QVariantMap infoDictionary() const;
    /// Why infoDictionary() is empty, for a person; null when Info.plist could be read.
    virtual QString infoProblem() const;
    /// Invalid when there is no such entry.
    QVariant infoValue(const QString &key) const { return infoDictionary().value(key); }

    /// Contents/MacOS/<CFBundleExecutable>, whether or not it exists. Null when the entry is
    /// missing, or is no plain file name.
    QString executablePath() const;

    virtual QString resourcesPath() const { return m_path + QStringLiteral("/Contents/Resources"); }
    /// The resource of that name and type at the top level ("en", "strings" for en.strings; the
    /// type may be empty). Null when there is none, and for names that are no plain file name:
    /// they may come from user settings and never lead out of the folder.
    virtual QString pathForResource(const QString &name, const QString &type) const;
    /// All resources of the type at the top level, sorted by name in byte order. Hidden ones do
    /// not count.
    virtual QStringList pathsForResources(const QString &type) const;

private:
    void readInfo() const;

    const QString m_path;
    mutable std::once_flag m_infoRead;
    mutable QVariantMap m_info;
    mutable QString m_infoProblem;
};
