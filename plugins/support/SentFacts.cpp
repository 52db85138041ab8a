#include "SentFacts.h"

#include "plugins/common/Look.h"

#include <QCoreApplication>
#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

/// The application's folder, or the program's own where there is none.
QString applicationFolder()
{
    const QDir folder(QCoreApplication::applicationDirPath());
    const QString bundle = QDir::cleanPath(folder.filePath(u"../.."_s));
    return QFileInfo(bundle + u"/Contents/Info.plist"_s).isFile() ? bundle : folder.path();
}

} // namespace

std::vector<SentFact> readSentFacts(mndCore *core, const Texts &texts)
{
    if (!core)
        return {};
    const std::unique_ptr<QObject> object = core->newFactoryInstance(u"hardwareInfo"_s);
    auto *machine = qobject_cast<hardwareInfoProtocol *>(object.get());
    auto *helpers = qobject_cast<mndHelpers *>(core->sharedObject(u"SHARED.HELPERS"_s));
    if (!machine || !helpers)
        return {};
    const QString language = machine->osLanguage();
    const QString volume = u"/"_s;
    return {
        {texts(u"SZ_SUPPORT_IDENTIFIER"_s, u"Anonymous identifier"_s), helpers->anonymousUUID()},
        {texts(u"SZ_SUPPORT_SENT_LANGUAGE"_s, u"Language"_s),
         language.isNull() ? u"en"_s : language},
        {texts(u"SZ_SUPPORT_SENT_VERSION"_s, u"Version"_s), core->slvBundleVersionString()},
        {texts(u"SZ_SUPPORT_SENT_EDITION"_s, u"Edition"_s),
         core->mndEdition() == 2 ? u"WWW"_s : u"MAS"_s},
        {texts(u"SZ_SUPPORT_SENT_MODE"_s, u"Mode"_s), u"PRO"_s},
        {texts(u"SZ_SUPPORT_SENT_PROCESSOR"_s, u"Processors and MHz"_s),
         u"%1@%2"_s.arg(machine->cpuCount()).arg(machine->cpuSpeed())},
        {texts(u"SZ_SUPPORT_SENT_MEMORY"_s, u"Memory in MB"_s),
         QString::number(machine->ramSize())},
        {texts(u"SZ_SUPPORT_SENT_DISK"_s, u"Disk space, total and free"_s),
         u"%1:%2"_s
             .arg(helpers->stringForFileSize(machine->hdSize(volume)),
                  helpers->stringForFileSize(machine->hdFree(volume)))
             .remove(u' ')},
        {texts(u"SZ_SUPPORT_SENT_MODEL"_s, u"Model"_s), machine->modelName().remove(u' ')},
        {texts(u"SZ_SUPPORT_SENT_SYSTEM"_s, u"System"_s), machine->osVersion()},
        {texts(u"SZ_SUPPORT_SENT_PATH"_s, u"Where Solvane is"_s),
         QUrl::fromLocalFile(applicationFolder() + u'/').toString(QUrl::FullyEncoded)},
    };
}

SentFactsCard::SentFactsCard(mndCore *core, const Texts &texts)
{
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(18, 14, 18, 14);
    grid->setHorizontalSpacing(24);
    grid->setVerticalSpacing(9);
    grid->setColumnStretch(0, 2);
    grid->setColumnStretch(1, 3);
    grid->addWidget(
        look::makeText(
            texts(u"SZ_SUPPORT_SENT_INFO"_s,
                  u"Send feedback opens our feedback page in your browser, with these values "
                  "in its address. Only “Where Solvane is” can name you, if that is in your "
                  "home folder. Nothing else is sent."_s),
            look::secondaryText),
        0, 0, 1, 2);
    for (const SentFact &fact : readSentFacts(core, texts)) {
        const int row = grid->rowCount();
        auto *value =
            look::makeText(fact.value.isEmpty() ? u"\u2013"_s : fact.value, look::secondaryText);
        value->setTextInteractionFlags(Qt::TextSelectableByMouse);
        value->setAccessibleName(u"%1: %2"_s.arg(fact.name, value->text()));
        grid->addWidget(look::makeText(fact.name, look::text), row, 0);
        grid->addWidget(value, row, 1);
    }
}
