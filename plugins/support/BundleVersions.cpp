#include "BundleVersions.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

static QString text(const QVariantMap &info, const QString &key)
{
    const QVariant value = info.value(key);
    return value.typeId() == QMetaType::QString ? value.toString().simplified() : QString();
}

std::vector<BundleVersion> readBundleVersions(appBundleInfoProtocol *reader, const QString &own,
                                              const QString &added)
{
    std::vector<BundleVersion> versions;
    QStringList folders{own};
    if (QFileInfo(own).canonicalFilePath() != QFileInfo(added).canonicalFilePath())
        folders << added;
    for (const QString &folder : folders) {
        const auto bundles = QDir(folder).entryInfoList(
            {u"*.bundle"_s}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase);
        for (const QFileInfo &bundle : bundles) {
            const QVariantMap info =
                reader ? reader->getManifest(bundle.filePath()) : QVariantMap();
            const QString name = text(info, u"CFBundleName"_s);
            versions.push_back({name.isEmpty() ? bundle.completeBaseName() : name,
                                text(info, u"CFBundleVersion"_s), folder != own});
        }
    }
    return versions;
}
