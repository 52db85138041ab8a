#include "helpers/sharedHelpers.h"

#include "helpers/fileEnum.h"
#include "platform/foundation/StoredValue.h"
#include "platform/foundation/SystemServices.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {

const QString delayKey = u"slvCritical.delay"_s;
const QString secureKey = u"slvQuickClean.secure"_s;

constexpr int leastDelay = 2; // seconds
constexpr int mostDelay = 15;
constexpr int usualDelay = 10;

constexpr int randomPasses = 7;
constexpr int blockBits = 14;
constexpr qsizetype blockSize = 1 << blockBits;

FileSystem &files()
{
    return *systemServices().fileSystem;
}

/// Block by block, each on the disk before the next is written.
bool fill(FileWriter &file, const QByteArray &block, qint64 count)
{
    for (qint64 i = 0; i < count; ++i) {
        if (!file.write(block) || !file.synchronize())
            return false;
    }
    return file.close();
}

/// One pass. In between anybody who may write to the folder can put something in the file's place,
/// a link to another file for one: that must never be written to, so the file has to be a new one.
bool shred(HeldItem &item, int fillchar)
{
    // The item's own: of a link the link itself is replaced, and its target left alone.
    const auto attributes = item.attributes();
    if (!attributes || !attributes->size || !item.remove())
        return false;
    const QByteArray block(blockSize, static_cast<char>(fillchar));
    const std::unique_ptr<FileWriter> file = item.create(block);
    return file && fill(*file, block, (*attributes->size >> blockBits) + 1);
}

} // namespace

int sharedHelpers::forcedDelayValue()
{
    const int seconds = StoredValue::integer(systemServices().defaults->value(delayKey));
    return seconds >= leastDelay && seconds <= mostDelay ? seconds : usualDelay;
}

void sharedHelpers::setForcedDelayValue(int seconds)
{
    storeSetting(delayKey, std::clamp(seconds, leastDelay, mostDelay));
}

bool sharedHelpers::secureQuickCleanValue()
{
    return StoredValue::truth(systemServices().defaults->value(secureKey));
}

void sharedHelpers::setSecureQuickCleanValue(bool value)
{
    storeSetting(secureKey, value);
}

void sharedHelpers::enumerateFilesAtPath(const QString &path, FileRecords *result)
{
    fileEnum().enumAtPath(path, result);
}

void sharedHelpers::enumerateFilesAtPathEx(const QString &path, FileRecords *result,
                                           QObject *delegate)
{
    fileEnum().enumAtPathEx(path, result, delegate);
}

quint64 sharedHelpers::getFileSize(const QString &path)
{
    const auto attributes = files().attributes(path);
    return attributes ? static_cast<quint64>(attributes->size.value_or(0)) : 0;
}

bool sharedHelpers::removeFileAtPath(const QString &path)
{
    const auto item = files().hold(path);
    return item->remove() || item->removeTree();
}

bool sharedHelpers::removeFileAtPathQuickClean(const QString &path)
{
    return secureQuickCleanValue() ? secureRemoveFileAtPath(path) : removeFileAtPath(path);
}

bool sharedHelpers::secureRemoveFileAtPath(const QString &path)
{
    return shredFile(path, false);
}

bool sharedHelpers::shredFile(const QString &path, bool random7)
{
    // All passes and the removal at their end in one folder, whatever its path leads to by then.
    const auto item = files().hold(path);
    bool shredded = true;
    if (random7) {
        std::srand(static_cast<unsigned>(std::time(nullptr)));
        for (int pass = 0; shredded && pass < randomPasses; ++pass)
            shredded = shred(*item, std::rand());
    } else {
        shredded = shred(*item, 0);
    }
    // What a failed pass has left is of no use to anybody; there may be nothing, too.
    item->remove();
    return shredded;
}

bool sharedHelpers::_shredFile(const QString &path, int fillchar)
{
    return shred(*files().hold(path), fillchar);
}
