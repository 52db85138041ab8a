#include "BundleVersions.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <memory>
#include <plist/plist.h>

using namespace Qt::StringLiterals;

namespace {

/// A property list larger than this describes no bundle.
constexpr qint64 largestInfo = 1 << 20;

struct FreePlist
{
    void operator()(void *node) const { plist_free(node); }
};
using Plist = std::unique_ptr<void, FreePlist>;

Plist readInfo(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || file.size() > largestInfo || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray contents = file.readAll();
    plist_t node = nullptr;
    plist_from_memory(contents.constData(), uint32_t(contents.size()), &node);
    return Plist(node);
}

QString text(const Plist &info, const char *key)
{
    if (!info || plist_get_node_type(info.get()) != PLIST_DICT)
        return {};
    plist_t node = plist_dict_get_item(info.get(), key);
    if (!node || plist_get_node_type(node) != PLIST_STRING)
        return {};
    uint64_t length = 0;
    const char *value = plist_get_string_ptr(node, &length);
    return value ? QString::fromUtf8(value, qsizetype(length)).simplified() : QString();
}

} // namespace

std::vector<BundleVersion> readBundleVersions(const QString &own, const QString &added)
{
    std::vector<BundleVersion> versions;
    QStringList folders{own};
    if (QFileInfo(own).canonicalFilePath() != QFileInfo(added).canonicalFilePath())
        folders << added;
    for (const QString &folder : folders) {
        const auto bundles = QDir(folder).entryInfoList(
            {u"*.bundle"_s}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
        for (const QFileInfo &bundle : bundles) {
            const Plist info = readInfo(bundle.filePath() + u"/Contents/Info.plist"_s);
            const QString name = text(info, "CFBundleName");
            versions.push_back({name.isEmpty() ? bundle.completeBaseName() : name,
                                text(info, "CFBundleVersion"), folder != own});
        }
    }
    return versions;
}
