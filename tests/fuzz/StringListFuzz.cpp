#include "Harness.h"

#include "helpers/mndStringList.h"
#include "platform/foundation/RealFileSystem.h"
#include "platform/foundation/SystemServices.h"

#include <QFile>
#include <QTemporaryDir>

/// A list reads what any file holds, and what it saves reads back as the same and one empty entry.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir folder;
    static RealFileSystem files;
    systemServices().fileSystem = &files;
    const QString path = folder.filePath(QStringLiteral("list"));
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(content) == content.size());
    file.close();

    mndStringList list;
    if (!list.loadFromFile(path)) {
        require(list.count() == 0);
        return 0;
    }
    require(list.count() == static_cast<quint64>(content.count('\n')) + 1);
    require(list.saveToFile(path));
    mndStringList again;
    require(again.loadFromFile(path));
    require(again.count() == list.count() + 1);
    for (quint64 i = 0; i < list.count(); ++i)
        require(again.stringAtIndex(i) == list.stringAtIndex(i));
    return 0;
}
