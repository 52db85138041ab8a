#include "platform/foundation/RegularFile.h"

#include "platform/foundation/FilePath.h"
#include "platform/foundation/FilePlace.h"

#include <QFile>

#include <sys/stat.h>

#include <algorithm>

using namespace Qt::StringLiterals;

Result<QByteArray> RegularFile::read(const QString &path, qsizetype limit)
{
    const auto failure = [&](const QString &reason) {
        return Result<QByteArray>::failure(path + u": "_s + reason);
    };
    if (FilePath::encode(path).isEmpty())
        return failure(u"it is no file name"_s);
    const FilePlace place = FilePlace::of(path);
    // Opening a pipe waits for its writer unless told not to.
    const int descriptor = uninterrupted([&] {
        return ::openat(place.folder(), place.path(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    });
    if (descriptor < 0)
        return failure(qt_error_string());
    QFile file;
    if (!file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered,
                   QFile::AutoCloseHandle)) {
        ::close(descriptor);
        return failure(file.errorString());
    }
    struct stat status;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return failure(u"it is no regular file"_s);
    // The kernel's own files give their size as 0. Asking for as much as may be would have that
    // much memory mapped for every small file.
    const qint64 expected =
        std::clamp<qint64>(status.st_size, std::min<qint64>(4096, limit), limit);
    QByteArray data = file.read(expected + 1);
    if (data.size() > expected && expected < limit)
        data += file.read(limit + 1 - data.size());
    if (file.error() != QFileDevice::NoError)
        return failure(file.errorString());
    if (data.size() > limit)
        return failure(u"it is larger than %1 bytes"_s.arg(limit));
    return data;
}
