#include "platform/foundation/SystemServices.h"

SystemServices &systemServices()
{
    static SystemServices services;
    return services;
}

void storeSetting(const QString &key, const QVariant &value)
{
    systemServices().defaults->setValue(key, value);
    systemServices().defaults->synchronizeLater([key](bool written) {
        if (SystemLog *log = systemServices().systemLog; log && !written)
            log->write(QStringLiteral("The setting %1 could not be written.").arg(key));
    });
}
