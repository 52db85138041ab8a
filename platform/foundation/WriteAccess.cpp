#include "platform/foundation/WriteAccess.h"

#include "platform/foundation/FilePath.h"

#include <grp.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <climits>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// Beyond what the system follows.
constexpr int mostLinks = 40;

template <typename Entry, typename Id, typename Call>
QString nameOf(Id id, Call call, char *Entry::*name)
{
    Entry entry = {};
    Entry *found = nullptr;
    std::vector<char> room(16384);
    return call(id, &entry, room.data(), room.size(), &found) == 0 && found
        ? QString::fromLocal8Bit(found->*name)
        : QString::number(id);
}

QString userName(uid_t user)
{
    return nameOf<passwd>(user, ::getpwuid_r, &passwd::pw_name);
}

QString groupName(gid_t group)
{
    return nameOf<struct group>(group, ::getgrgid_r, &::group::gr_name);
}

class Way
{
public:
    explicit Way(WriteAccess::Finding &finding)
        : m_finding(finding)
    { }

    /// @param path absolute.
    void follow(const QByteArray &path, int links)
    {
        for (qsizetype end = 1; end > 0 && m_finding.refusal.isNull();) {
            end = path.indexOf('/', end);
            const QByteArray part = end < 0 ? path : path.first(end++);
            struct stat status = {};
            if (::lstat(part.constData(), &status) != 0)
                return;
            look(part, status);
            if (S_ISLNK(status.st_mode) && links < mostLinks)
                followLink(part, links);
        }
    }

private:
    void followLink(const QByteArray &link, int links)
    {
        std::array<char, PATH_MAX> target{};
        const ssize_t size = ::readlink(link.constData(), target.data(), target.size());
        if (size <= 0)
            return;
        const QByteArray text(target.data(), size);
        follow(text.startsWith('/') ? text : link.first(link.lastIndexOf('/') + 1) + text,
               links + 1);
    }

    void look(const QByteArray &path, const struct stat &status)
    {
        const QString shown = FilePath::decode(path);
        if (status.st_uid != 0 && status.st_uid != ::geteuid())
            m_finding.refusal = u"%1 belongs to %2"_s.arg(shown, userName(status.st_uid));
        const bool onlyOwn = S_ISDIR(status.st_mode) && (status.st_mode & S_ISVTX) != 0;
        if (S_ISLNK(status.st_mode) || onlyOwn)
            return;
        if ((status.st_mode & S_IWOTH) != 0)
            m_finding.refusal = u"everybody may write %1"_s.arg(shown);
        else if ((status.st_mode & S_IWGRP) != 0 && !isOwnGroup(status.st_gid))
            m_finding.remark = u"the group %1 may write %2"_s.arg(groupName(status.st_gid), shown);
    }

    static bool isOwnGroup(gid_t group)
    {
        return group == 0 || groupName(group) == userName(::geteuid());
    }

    WriteAccess::Finding &m_finding;
};

} // namespace

WriteAccess::Finding WriteAccess::of(const QString &path)
{
    Finding finding;
    Way(finding).follow(FilePath::encode(path), 0);
    return finding;
}
