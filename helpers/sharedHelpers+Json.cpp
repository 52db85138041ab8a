#include "helpers/Json.h"
#include "helpers/sharedHelpers.h"

QVariant sharedHelpers::jsonDecode(const QString &text)
{
    return Json::decoded(text);
}

QString sharedHelpers::jsonEncode(const QVariant &object)
{
    return Json::encoded(object);
}
