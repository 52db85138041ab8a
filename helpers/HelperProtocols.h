#pragma once

#include "platform/foundation/Date.h"
#include "platform/foundation/Dictionary.h"
#include "platform/foundation/FileRecord.h"
#include "platform/ui/TableViewDataSource.h"

#include <QStringList>
#include <QVariant>

/// What the objects can do that mndCore::newFactoryInstance() makes by name: cast the object to the
/// interface named here. One thread at a time may use an object; nothing throws unless it says so.

/// "fileEnum": walks folders, as mndHelpers::enumerateFilesAtPath() describes.
class fileEnumProtocol
{
public:
    virtual ~fileEnumProtocol() = default;
    virtual void enumAtPath(const QString &path, FileRecords *result) = 0;
    virtual void enumAtPathEx(const QString &path, FileRecords *result, QObject *delegate) = 0;
};

/// "mndStringList": an ordered list of strings, such as a whitelist of paths. It can be a table's
/// data source.
class mndStringListProtocol : public TableViewDataSource
{
public:
    static constexpr quint64 notFound = ~quint64(0);

    /// Answers the new count. A null string is no entry and changes nothing.
    virtual quint64 addString(const QString &string) = 0;
    virtual void insert(const QString &string) = 0;           ///< addString()
    virtual quint64 indexOfString(const QString &string) = 0; ///< notFound when there is none
    /// Throws std::out_of_range.
    virtual QString stringAtIndex(quint64 index) = 0;
    virtual quint64 count() = 0;
    virtual void clear() = 0;
    /// Removes the entries that share the string's very text in memory; an equal text of another
    /// origin removes nothing, and neither does a null string.
    virtual void removeString(const QString &string) = 0;
    /// Throws std::out_of_range.
    virtual void removeStringAtIndex(int index) = 0;

    /// One line an entry, each ended by a line feed, in UTF-8. A file of that path is replaced,
    /// or a link itself. False when it could not be written, when an entry is no Unicode, and when
    /// there would be more than 128 MiB; then the file stays as it was. In a folder that takes no
    /// new entries the file itself is written over: only a disk that fails in the middle of that
    /// leaves half of it. Waits for the disk.
    virtual bool saveToFile(const QString &path) = 0;
    /// Replaces the entries; what was saved comes back with one empty entry more. False for a
    /// missing file, which changes nothing, and for one that is unreadable, no UTF-8, or larger
    /// than 128 MiB, which leaves the list empty.
    virtual bool loadFromFile(const QString &path) = 0;
    /// Appends the texts stored under the key: in a StringArray, QStringList or QVariantList.
    virtual void loadFromDic(const Dictionary &dictionary, const QString &key) = 0;
    /// Stores the list's own array, a StringArray, under the key: later changes show through.
    virtual void saveToDic(Dictionary dictionary, const QString &key) = 0;

    virtual bool isBundleType(const QString &path) = 0;                               ///< false
    virtual bool isSameOrPartOfBundle(const QString &entry, const QString &path) = 0; ///< equal
    virtual bool isWhitelisted(const QString &path) = 0; ///< whether an entry equals the path
};

/// "hardwareInfo": facts about the machine.
class hardwareInfoProtocol
{
public:
    virtual ~hardwareInfoProtocol() = default;
    virtual QString modelName() = 0; ///< maker and model, at most 255 bytes; null when unknown
    virtual QString osVersion() = 0; ///< for a person: the system's name and version
    /// The tag of the language the user reads first; null when there is none.
    virtual QString osLanguage() = 0;
    virtual int cpuCount() = 0; ///< 1 when unknown
    virtual int cpuSpeed() = 0; ///< MHz; 0 when unknown
    virtual int ramSize() = 0;  ///< megabytes; 0 when unknown
    /// Bytes of the volume that holds the path, and those of them that the user can fill; 0 when
    /// unknown. A volume that does not answer keeps the caller waiting.
    virtual quint64 hdSize(const QString &path) = 0;
    virtual quint64 hdFree(const QString &path) = 0;
};

/// "appBundle": what an application's folder ("Name.app") says about it. A value that is missing,
/// or no text, is an empty string.
class appBundleProtocol
{
public:
    virtual ~appBundleProtocol() = default;
    virtual QString getManifestPath(const QString &bundle) = 0;
    virtual QString getIconPath(const QString &bundle) = 0;
    virtual QString getAppName(const QString &bundle) = 0;
    /// Named as the folder where the manifest names no program. The bundle's own path where the
    /// manifest gives something that is no text.
    virtual QString getExecutablePath(const QString &bundle) = 0;
    virtual QString getInfoString(const QString &bundle) = 0;
    virtual QString getBundleID(const QString &bundle) = 0;
    virtual QString getShortVersion(const QString &bundle) = 0;
    /// The first part of the path that ends in ".app", absolute.
    virtual QString getAppPathFromExecutablePath(const QString &executable) = 0;
};

/// "appBundle" as well: all that the folder of an application or a plugin ("Name.bundle") says.
class appBundleInfoProtocol
{
public:
    virtual ~appBundleInfoProtocol() = default;
    /// The Info.plist in any form of property list, as Solvane itself reads it: texts are QString,
    /// booleans bool, integers qlonglong or qulonglong, reals double, dates QDateTime in UTC, data
    /// QByteArray, arrays QVariantList, dictionaries QVariantMap. Empty when it cannot be read, and
    /// when it is larger than 32 MiB, deeper than 512 levels or of more than 200,000 values.
    virtual QVariantMap getManifest(const QString &bundle) = 0;
};

/// "loginItems": what starts with the user's session (XDG Desktop Application Autostart, user
/// level).
class loginItemsProtocol
{
public:
    virtual ~loginItemsProtocol() = default;
    virtual QStringList loginItems() = 0; ///< files of the entries, in the order of their names
    /// The entry that starts Solvane; null when there is none.
    virtual QString mainBundleLoginItemCopy() = 0;
    /// Writes Solvane's entry, which starts it hidden, in the place of one with the same file name.
    virtual void addMainBundleToLoginItems() = 0;
    virtual void removeMainBundleFromLoginItems() = 0; ///< the first one only
    virtual bool launchOnLogin() = 0;
    virtual void setLaunchOnLogin(bool value) = 0;
};

Q_DECLARE_INTERFACE(fileEnumProtocol, "com.solvane.fileEnum/6")
Q_DECLARE_INTERFACE(mndStringListProtocol, "com.solvane.mndStringList/6")
Q_DECLARE_INTERFACE(hardwareInfoProtocol, "com.solvane.hardwareInfo/6")
Q_DECLARE_INTERFACE(appBundleProtocol, "com.solvane.appBundle/6")
Q_DECLARE_INTERFACE(appBundleInfoProtocol, "com.solvane.appBundleInfo/6")
Q_DECLARE_INTERFACE(loginItemsProtocol, "com.solvane.loginItems/6")
