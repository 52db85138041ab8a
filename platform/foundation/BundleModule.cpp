#include "platform/foundation/BundleModule.h"

#include "platform/foundation/ElfFile.h"

#include <QFileInfo>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace {

/// Marks an object that was handed out with the path of its module. It goes with the object.
constexpr const char *originProperty = "_originOfPrincipalObject";

} // namespace

BundleModule::BundleModule(const QString &modulePath)
    : m_path(modulePath)
{ }

Result<BundleModule::Metadata> BundleModule::metadata()
{
    if (!m_metadata)
        m_metadata = readMetadata();
    return *m_metadata;
}

Result<BundleModule::Metadata> BundleModule::readMetadata()
{
    using Answer = Result<Metadata>;
    const QFileInfo file(m_path);
    if (!file.isFile())
        return Answer::failure(u"there is no module at %1"_s.arg(m_path));
    if (const QString problem = ElfFile::problem(m_path); !problem.isNull())
        return Answer::failure(u"%1 is not a plugin module: %2"_s.arg(m_path, problem));
    // Symbols are bound on loading: one that is missing must fail here, not in the middle of a
    // call.
    m_loader.setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    m_loader.setFileName(m_path);
    const QJsonObject embedded = m_loader.metaData();
    if (embedded.isEmpty()) {
        return Answer::failure(
            u"%1 is not a plugin module: %2"_s.arg(m_path, m_loader.errorString()));
    }
    Metadata result;
    result.interfaceId = embedded.value("IID"_L1).toString();
    result.apiVersion = embedded.value("MetaData"_L1).toObject().value("api"_L1).toInt();
    const int version = embedded.value("version"_L1).toInt();
    result.qtVersion =
        QVersionNumber(version >> 16, (version >> 8) & 0xff, version & 0xff).toString();
    return result;
}

Result<QObject *> BundleModule::makePrincipalObject()
{
    if (const auto known = metadata(); !known)
        return Result<QObject *>::failure(known.error());
    if (!m_loader.load())
        return Result<QObject *>::failure(m_loader.errorString());
    QObject *made = m_loader.instance();
    if (!made)
        return Result<QObject *>::failure(u"the module %1 makes no object"_s.arg(m_path));
    if (const QVariant origin = made->property(originProperty); origin.isValid()) {
        m_isInUse = true;
        return Result<QObject *>::failure(
            u"its module is loaded already, from %1"_s.arg(origin.toString()));
    }
    made->setProperty(originProperty, m_path);
    return made;
}
