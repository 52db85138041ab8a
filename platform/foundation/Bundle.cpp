#include "platform/foundation/Bundle.h"

#include "platform/foundation/PropertyList.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isPlainFileName(const QString &name)
{
    return !name.isEmpty() && name != "."_L1 && name != ".."_L1 && !name.contains(u'/')
        && !name.contains(QChar(u'\0'));
}

} // namespace

Result<std::unique_ptr<Bundle>> Bundle::open(const QString &path)
{
    using Opened = Result<std::unique_ptr<Bundle>>;
    // An empty path would stand for the working folder.
    if (path.isEmpty() || !QFileInfo(path).isDir())
        return Opened::failure(u"\"%1\" is no folder"_s.arg(path));
    return Opened(std::make_unique<Bundle>(path));
}

QString Bundle::mainBundlePath()
{
    const QString folder = QCoreApplication::applicationDirPath();
    if (!folder.endsWith("/Contents/MacOS"_L1))
        return folder;
    return QDir::cleanPath(folder + u"/../.."_s);
}

Bundle::Bundle(const QString &path)
    : m_path(QDir::cleanPath(QDir::current().absoluteFilePath(path)))
{ }

void Bundle::readInfo() const
{
    const QString file = m_path + u"/Contents/Info.plist"_s;
    const Result<QVariant> read = PropertyList::read(file);
    if (!read)
        m_infoProblem = read.error();
    else if (read.value().typeId() != QMetaType::QVariantMap)
        m_infoProblem = file + u": it is no dictionary"_s;
    else
        m_info = read.value().toMap();
}

QVariantMap Bundle::infoDictionary() const
{
    std::call_once(m_infoRead, &Bundle::readInfo, this);
    return m_info;
}

QString Bundle::infoProblem() const
{
    std::call_once(m_infoRead, &Bundle::readInfo, this);
    return m_infoProblem;
}

QString Bundle::executablePath() const
{
    const QVariant name = infoValue(u"CFBundleExecutable"_s);
    if (name.typeId() != QMetaType::QString || !isPlainFileName(name.toString()))
        return {};
    return path() + u"/Contents/MacOS/"_s + name.toString();
}

QString Bundle::pathForResource(const QString &name, const QString &type) const
{
    const QString fileName = type.isEmpty() ? name : name + u'.' + type;
    if (name.isEmpty() || !isPlainFileName(fileName))
        return {};
    const QString found = resourcesPath() + u'/' + fileName;
    return QFileInfo::exists(found) ? found : QString();
}

QStringList Bundle::pathsForResources(const QString &type) const
{
    const QString suffix = u'.' + type;
    const QDir folder(resourcesPath());
    QStringList names = folder.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Unsorted);
    names.removeIf([&](const QString &name) { return !name.endsWith(suffix); });
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) {
        return QFile::encodeName(a) < QFile::encodeName(b);
    });
    for (QString &name : names)
        name = folder.filePath(name);
    return names;
}
