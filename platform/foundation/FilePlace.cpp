#include "platform/foundation/FilePlace.h"

#include "platform/foundation/FilePath.h"

#include <climits>

namespace {

FileDescriptor openWay(int from, const QByteArray &path)
{
    return FileDescriptor(uninterrupted(
        [&] { return ::openat(from, path.constData(), O_PATH | O_DIRECTORY | O_CLOEXEC); }));
}

} // namespace

FilePlace FilePlace::of(const QString &path)
{
    FilePlace place;
    place.m_path = FilePath::encode(path);
    while (place.m_path.size() >= PATH_MAX) {
        const qsizetype slash = place.m_path.lastIndexOf('/', PATH_MAX - 2);
        FileDescriptor next;
        if (slash > 0)
            next = openWay(place.folder(), place.m_path.first(slash));
        if (!next.isOpen())
            return {};
        place.m_folder = std::move(next);
        qsizetype rest = slash;
        while (rest < place.m_path.size() && place.m_path[rest] == '/')
            ++rest;
        // Slashes alone are left where the path ends in them: the folder itself is meant.
        place.m_path = rest < place.m_path.size() ? place.m_path.sliced(rest) : QByteArray(".");
    }
    return place;
}

FilePlace FilePlace::inFolder(const QString &path)
{
    qsizetype end = path.size();
    while (end > 0 && path[end - 1] == u'/')
        --end;
    const qsizetype slash = end > 0 ? path.lastIndexOf(u'/', end - 1) : -1;
    const QByteArray name = FilePath::encode(QStringView(path).sliced(slash + 1, end - slash - 1));
    if (name.isEmpty() || name == "." || name == "..")
        return {};
    FilePlace place;
    place.m_folder = slash < 0 ? openWay(AT_FDCWD, ".") : [&] {
        const FilePlace folder = of(path.first(slash + 1));
        return openWay(folder.folder(), folder.m_path);
    }();
    if (place.m_folder.isOpen())
        place.m_path = name;
    return place;
}
