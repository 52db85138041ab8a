#pragma once

#include <QString>

/// Who besides root and the user could have written a file.
namespace WriteAccess {

struct Finding
{
    QString refusal; ///< somebody else could, for certain; null when nobody
    QString remark;  ///< a group could that is not the user's own; null when none
};

/// Looks at the file and at every folder on the way to it, links followed. A folder in which
/// everybody may only touch what is theirs (the sticky bit, as in /tmp) is no way in; the group of
/// the user's name, which many systems give to each user, is the user. Any thread; what is not
/// there has no finding.
Finding of(const QString &path);

} // namespace WriteAccess
