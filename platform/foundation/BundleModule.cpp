#include "platform/foundation/BundleModule.h"

#include "platform/foundation/ElfFile.h"
#include "platform/foundation/SharedObject.h"

#include <QCborMap>
#include <QCborValue>
#include <QFileInfo>
#include <QMap>
#include <QPointer>
#include <QtPlugin>
#include <QVersionNumber>

#include <dlfcn.h>

using namespace Qt::StringLiterals;

namespace {

using MakeObject = QObject *(*)();

/// What moc embeds: four bytes, the form's own version, Qt's and the processor's, and a map in CBOR
/// (RFC 8949) with numbers for keys. Qt's reader of it trusts its own compiler.
struct Embedded
{
    explicit Embedded(QByteArrayView note)
        : version(quint8(note[1]), quint8(note[2]))
    {
        QCborParserError error;
        const QCborValue value =
            QCborValue::fromCbor(note.sliced(headerSize).toByteArray(), &error);
        // A map that was cut off may end with a key, and to look into it reads beyond its end.
        isWhole = error.error == QCborError::NoError && value.isMap();
        if (isWhole)
            map = value.toMap();
    }

    static constexpr qsizetype headerSize = 4;
    bool isWhole = false;
    QCborMap map;
    QVersionNumber version;
};

enum EmbeddedKey : qint64 { interfaceKey = 2, metadataKey = 4 };

/// As Qt's own plugins: of the same major version, and no newer minor one.
bool isForThisQt(const QVersionNumber &version)
{
    return version.majorVersion() == QT_VERSION_MAJOR && version.minorVersion() <= QT_VERSION_MINOR;
}

/// The objects that were handed out, by the files of their modules.
struct Origin
{
    QString path;
    QPointer<QObject> object;
};

QMap<std::pair<dev_t, ino_t>, Origin> &origins()
{
    static QMap<std::pair<dev_t, ino_t>, Origin> known;
    return known;
}

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
    using Note = QPluginMetaData::ElfNoteHeader;
    const auto failure = [this](const QString &problem) {
        return Answer::failure(u"%1 is not a plugin module: %2"_s.arg(m_path, problem));
    };
    if (!QFileInfo(m_path).isFile())
        return Answer::failure(u"there is no module at %1"_s.arg(m_path));
    auto copy = ModuleCopy::of(m_path);
    if (!copy)
        return failure(copy.error());
    const QByteArrayView bytes = copy.value().bytes();
    if (const QString problem = ElfFile::problem(bytes); !problem.isNull())
        return failure(problem);
    const QByteArrayView owner(Note::NoteName, sizeof Note::NoteName);
    const QByteArrayView note = ElfFile::note(bytes, owner, Note::NoteType);
    if (note.size() < Embedded::headerSize)
        return failure(u"it has no metadata of a Qt plugin"_s);
    const Embedded embedded(note);
    if (!embedded.isWhole)
        return failure(u"its metadata is damaged"_s);
    Metadata result;
    result.interfaceId = embedded.map.value(interfaceKey).toString();
    result.apiVersion =
        static_cast<int>(embedded.map.value(metadataKey).toMap().value(u"api"_s).toInteger());
    result.qtVersion = embedded.version.toString();
    if (!isForThisQt(embedded.version))
        return failure(u"it was made for Qt %1, this is Qt %2"_s.arg(
            result.qtVersion, QLatin1StringView(qVersion())));
    m_copy = std::move(copy).value();
    return result;
}

Result<QObject *> BundleModule::makePrincipalObject()
{
    using Answer = Result<QObject *>;
    if (const auto known = metadata(); !known)
        return Answer::failure(known.error());
    if (!m_copy)
        return Answer::failure(u"its object was made already"_s);
    const ModuleCopy copy = std::move(*m_copy);
    m_copy.reset();
    Origin &origin = origins()[copy.original()];
    if (origin.object) {
        m_isInUse = true;
        return Answer::failure(u"its module is loaded already, from %1"_s.arg(origin.path));
    }
    const auto loaded = SharedObject::load(copy, m_path);
    if (!loaded)
        return Answer::failure(loaded.error());
    const auto make = reinterpret_cast<MakeObject>(::dlsym(loaded.value(), "qt_plugin_instance"));
    QObject *made = make ? make() : nullptr;
    if (!made)
        return Answer::failure(u"the module %1 makes no object"_s.arg(m_path));
    // Not before, since the constructor may load others.
    origins()[copy.original()] = {m_path, made};
    return made;
}
