#pragma once

#include "helpers/mndHelpers.h"

#include <QObject>

/// The helper service that plugins find under "SHARED.HELPERS". Any number would behave alike; the
/// host makes one. Any thread.
class sharedHelpers : public QObject, public mndHelpers
{
    Q_OBJECT
    Q_INTERFACES(mndHelpers)

public:
    Q_INVOKABLE sharedHelpers() = default;

    // mndHelpers
    Q_INVOKABLE int forcedDelayValue() override;
    Q_INVOKABLE void setForcedDelayValue(int seconds) override;
    Q_INVOKABLE bool secureQuickCleanValue() override;
    Q_INVOKABLE void setSecureQuickCleanValue(bool value) override;
    Q_INVOKABLE QString stringForNumber(const QVariant &number) override;
    Q_INVOKABLE QString stringForFileSize(quint64 size) override;
    Q_INVOKABLE void enumerateFilesAtPath(const QString &path, FileRecords *result) override;
    Q_INVOKABLE void enumerateFilesAtPathEx(const QString &path, FileRecords *result,
                                            QObject *delegate) override;
    Q_INVOKABLE int daysAgo(const Date &date) override;
    Q_INVOKABLE int minsAgo(const Date &date) override;
    Q_INVOKABLE QString stringForDaysAgo(const Date &date) override;
    Q_INVOKABLE QString iconPathForApplication(const QString &path) override;
    Q_INVOKABLE bool removeFileAtPath(const QString &path) override;
    Q_INVOKABLE bool secureRemoveFileAtPath(const QString &path) override;
    Q_INVOKABLE bool removeFileAtPathQuickClean(const QString &path) override;
    Q_INVOKABLE quint64 getFileSize(const QString &path) override;
    Q_INVOKABLE AttributedString tableViewIconForFile(const QString &path, int size) override;
    Q_INVOKABLE AttributedString tableViewIconForBundle(const QString &path, int size) override;
    Q_INVOKABLE QString anonymousUUID() override;
    Q_INVOKABLE QObject *getCore() override;
    Q_INVOKABLE QVariant jsonDecode(const QString &text) override;
    Q_INVOKABLE QString jsonEncode(const QVariant &object) override;

    /// One pass: the file gives way to a new one of the same name, at least as large, that is full
    /// of the value's low byte. False when a step failed; then there may be no file any more.
    Q_INVOKABLE bool _shredFile(const QString &path, int fillchar);
    /// Seven passes with random bytes, or one with zeros; then the file is removed in any case.
    Q_INVOKABLE bool shredFile(const QString &path, bool random7);
    /// The machine's serial number; "null" without one.
    Q_INVOKABLE QString serialNumber();
    Q_INVOKABLE quint32 _crc32(const QString &text);
};
