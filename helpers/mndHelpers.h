#pragma once

#include "platform/foundation/Date.h"
#include "platform/foundation/FileRecord.h"
#include "platform/ui/AttributedString.h"

#include <QString>
#include <QtPlugin>
#include <QVariant>

#include <stdexcept>

/// Raised by what an object declares but does not have.
class UnknownSelector : public std::logic_error
{
public:
    using std::logic_error::logic_error;
};

/// The helper service, shared under "SHARED.HELPERS". It holds no state: every method may be called
/// from any thread and works on the caller's; what is marked [wait] waits for the main thread, as
/// in mndCore. Failures are told by the answer alone.
///
/// Paths are written as FilePath writes them, so that names that are no UTF-8 survive.
class mndHelpers
{
public:
    virtual ~mndHelpers() = default;

    virtual int forcedDelayValue() = 0;                ///< seconds, 2 to 15
    virtual void setForcedDelayValue(int seconds) = 0; ///< [wait] kept within 2 to 15
    virtual bool secureQuickCleanValue() = 0;
    virtual void setSecureQuickCleanValue(bool value) = 0; ///< [wait]

    /// The number as the user's locale groups it; null for an invalid value.
    virtual QString stringForNumber(const QVariant &number) = 0;
    /// "1022 bytes", "1.0 KB", "1.5 MB", "5120.0 GB". A unit is 1024 of the one below and is
    /// reached at 1023 of them.
    virtual QString stringForFileSize(quint64 size) = 0;

    /// Appends a record for everything in the folder's whole tree that is no folder, depth first.
    /// Links are reported, never followed. A null result is allowed.
    virtual void enumerateFilesAtPath(const QString &path, FileRecords *result) = 0;
    /// The delegate is sent "onFileFound:" with each record, on the calling thread, once the record
    /// is in the result; records come in groups of up to some hundred. Null, or without that
    /// method: nothing is sent.
    virtual void enumerateFilesAtPathEx(const QString &path, FileRecords *result,
                                        QObject *delegate) = 0;

    /// Whole days, and minutes, since the date; 0 for a date to come. Absent: since 2001-01-01 UTC.
    virtual int daysAgo(const Date &date) = 0;
    virtual int minsAgo(const Date &date) = 0;
    /// "Never", "Today", "Yesterday", "1 day ago" or "12 days ago", in the user's language.
    virtual QString stringForDaysAgo(const Date &date) = 0;

    /// The icon file of the application that the path is, or lies in; empty when it names none,
    /// null when there is no application.
    virtual QString iconPathForApplication(const QString &path) = 0;

    /// Removes a file, a link, or a folder with all it holds. What cannot be removed stays, mounted
    /// volumes too: then false, and everything else has gone.
    virtual bool removeFileAtPath(const QString &path) = 0;
    /// Removes the file and fills a new one of its name and size, block by block, which goes as
    /// well. A folder has to be empty. False when any step failed: the path may be gone all the
    /// same.
    virtual bool secureRemoveFileAtPath(const QString &path) = 0;
    /// One of the two, by secureQuickCleanValue().
    virtual bool removeFileAtPathQuickClean(const QString &path) = 0;
    /// Bytes; 0 when unknown.
    virtual quint64 getFileSize(const QString &path) = 0;

    /// A square icon for a table's cell, its edge in points: an image file's picture, and a file's
    /// or bundle's own icon. Aligned to the right. A null or empty image path gives an
    /// application's usual icon; there is no attachment for a file that is no image, and for sizes
    /// below 1. Sizes above 1024 count as 1024. [wait]
    virtual AttributedString tableViewIconForFile(const QString &path, int size) = 0;
    virtual AttributedString tableViewIconForBundle(const QString &path, int size) = 0;

    /// "anon-" and 34 to 40 hexadecimal digits: the same on every call, telling nothing else.
    virtual QString anonymousUUID() = 0;
    /// The host, to be cast to mndCore; null when there is none.
    virtual QObject *getCore() = 0;

    /// The text of an array or an object (RFC 8259) as QVariantList or QVariantMap; invalid for
    /// anything else. In it null is QVariant::fromValue(nullptr), which is valid. Integers are
    /// qlonglong, from 2^63 qulonglong, and beyond 64 bits, as all other numbers, double.
    virtual QVariant jsonDecode(const QString &text) = 0;
    /// Compact text; null for what JSON cannot say.
    virtual QString jsonEncode(const QVariant &object) = 0;

    /// Only declared: the host has them, the helper service raises UnknownSelector.
    virtual bool extendedLoggingValue() { throw UnknownSelector("extendedLoggingValue"); }
    virtual void setExtendedLoggingValue(bool)
    {
        throw UnknownSelector("setExtendedLoggingValue:");
    }
};

#define mndHelpers_iid "com.solvane.mndHelpers/6"
Q_DECLARE_INTERFACE(mndHelpers, mndHelpers_iid)
