#include "host/LanguageFile.h"

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Format.h"
#include "platform/foundation/PropertyList.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

LanguageFile LanguageFile::load(const Bundle &bundle, const QString &preferredLanguage)
{
    LanguageFile file;
    const auto pathOf = [&](const QString &language) {
        return bundle.pathForResource(language, u"strings"_s);
    };
    QString found = pathOf(preferredLanguage);
    if (found.isNull())
        found = pathOf(u"en"_s);
    if (found.isNull())
        return file;
    bool loaded = file.read(found);
    if (!loaded) {
        const QString english = pathOf(u"en"_s);
        loaded = !english.isNull() && english != found && file.read(english);
    }
    file.m_outcome = loaded ? Outcome::Loaded : Outcome::Unreadable;
    return file;
}

bool LanguageFile::read(const QString &path)
{
    const Result<QVariant> list = PropertyList::read(path);
    if (!list || list.value().typeId() != QMetaType::QVariantMap) {
        m_problems << (list ? path + u": it is no dictionary"_s : list.error());
        return false;
    }
    m_path = path;
    m_dictionary = list.value().toMap();
    return true;
}

QString LanguageFile::language() const
{
    return QFileInfo(m_path).completeBaseName();
}

std::optional<QString> LanguageFile::text(const QString &key) const
{
    const auto found = m_dictionary.constFind(key);
    if (found == m_dictionary.cend())
        return std::nullopt;
    return format(u"%@"_s, {found.value()});
}
