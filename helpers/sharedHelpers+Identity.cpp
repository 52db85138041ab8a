#include "helpers/AnonymousIdentifier.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/SystemServices.h"

using namespace Qt::StringLiterals;

QString sharedHelpers::anonymousUUID()
{
    return AnonymousIdentifier::forSerialNumber(serialNumber());
}

QString sharedHelpers::serialNumber()
{
    try {
        return AnonymousIdentifier::serialNumber(systemServices().deviceTree->serialNumber());
    } catch (...) {
        systemServices().systemLog->write(u"error"_s);
        return u"-"_s;
    }
}

quint32 sharedHelpers::_crc32(const QString &text)
{
    return AnonymousIdentifier::checksum(text);
}
