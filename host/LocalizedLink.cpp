#include "host/LocalizedLink.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"

using namespace Qt::StringLiterals;

QString localizedLink(const QString &link, const QString &preferredLanguage, const Bundle &bundle)
{
    const QVariant declared = bundle.infoValue(u"CFBundleLocalizations"_s);
    const bool isList =
        declared.typeId() == QMetaType::QVariantList || declared.typeId() == QMetaType::QStringList;
    if (link.isNull() || !isList)
        return link;
    QStringList languages = declared.toStringList();
    languages.removeAll(u"en"_s);
    languages << u"zh-Hans"_s << u"zh-Hant"_s;
    if (preferredLanguage.isEmpty() || !languages.contains(preferredLanguage))
        return link;
    if (link.contains(u'?'))
        return QString(link).replace(u"?"_s, format(u"-%@?"_s, {preferredLanguage}));
    return format(u"%@-%@"_s, {link, preferredLanguage});
}
