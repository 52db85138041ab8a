#include "helpers/mndHelpers.h"
#include "host/LogFile.h"
#include "host/mndAppDelegate.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/MainThread.h"
#include "platform/foundation/StoredValue.h"
#include "platform/foundation/SystemServices.h"
#include "platform/ui/DesktopServices.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace {

QString extendedLoggingKey()
{
    return u"slvCore.elog"_s;
}

} // namespace

void mndAppDelegate::logPlace(const char *selector, int place, const std::optional<QString> &text)
{
    if (!_core)
        return;
    const QString className = QString::fromLatin1(metaObject()->className());
    const QString selectorName = QString::fromLatin1(selector);
    _core->log(text ? format(u"%@::%@:%d %@"_s, {className, selectorName, place, *text})
                    : format(u"%@::%@:%d"_s, {className, selectorName, place}));
}

QString mndAppDelegate::logFilePath() const
{
    return systemServices().account->home() + u"/Library/Logs/solvane.log"_s;
}

bool mndAppDelegate::extendedLoggingValue()
{
    return StoredValue::truth(systemServices().defaults->value(extendedLoggingKey()));
}

void mndAppDelegate::setExtendedLoggingValue(bool value)
{
    storeSetting(extendedLoggingKey(), value);
    const auto mark = [self = QPointer(this)] {
        if (self && self->miExtendedLoggingEnable)
            self->miExtendedLoggingEnable->setChecked(self->extendedLoggingValue());
    };
    if (MainThread::isCurrent())
        mark();
    else
        MainThread::runLater(mark);
}

void mndAppDelegate::log(const QString &message)
{
    if (!extendedLoggingValue())
        return;
    const QString line =
        LogFile::line(message, systemServices().clock->now(), systemServices().languages->locale());
    auto written = LogFile::Written::NotAtAll;
    try {
        auto *helpers = qobject_cast<mndHelpers *>(sharedObject(u"SHARED.HELPERS"_s));
        written = LogFile::write(logFilePath(), line, helpers);
    } catch (...) {
        // Helpers that fail are no reason to lose a line; it goes the way of any disk error.
    }
    if (written == LogFile::Written::NotAtAll)
        systemServices().systemLog->write(line);
    else if (written == LogFile::Written::ToANewFile && !extendedLoggingValue())
        QFile::remove(logFilePath()); // which the switch has removed while this line was on its way
}

void mndAppDelegate::onExtendedLoggingEnable(QObject *)
{
    const bool enabled = extendedLoggingValue();
    // A click has switched the mark already; it may only follow the value.
    if (miExtendedLoggingEnable)
        miExtendedLoggingEnable->setChecked(enabled);
    if (!enabled) {
        const auto answer = desktopServices().alertPanel->run(
            stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
            stringResource(u"SZ_EXTENDED_LOGGING_PROMPT"_s,
                           u"Extended logging generates a lot of data and may reduce the "
                           "performance of Solvane.  Please only enable this option if support has "
                           "asked you to do so for troubleshooting purposes."_s),
            stringResource(u"SZ_CANCEL"_s, u"Cancel"_s),
            stringResource(u"SZ_ENABLE"_s, u"Enable"_s));
        if (answer == AlertPanel::Default)
            return;
    }
    setExtendedLoggingValue(!enabled);
    QFile::remove(logFilePath());
    // Support reads first which version it is; and there is something to reveal.
    if (!enabled)
        logPlace("onExtendedLoggingEnable:", __LINE__, versionText());
}

void mndAppDelegate::onExtendedLoggingSend(QObject *)
{
    const QString path = logFilePath();
    const auto tell = [self = QPointer(this), path] {
        if (!self)
            return;
        // Where there is a log that no program opens, the user can at least find it.
        const QString place = QFile::exists(path) ? u"\n\n"_s + path : QString();
        desktopServices().alertPanel->run(
            self->stringResource(u"SZ_TITLE"_s, u"Solvane"_s),
            self->stringResource(u"SZ_NO_LOG"_s,
                                 u"There is currently no logfile available to view."_s)
                + place,
            u"OK"_s, {});
    };
    if (!desktopServices().workspace->openFile(path, tell))
        tell();
}
