#include "plugins/common/Texts.h"

QString Texts::fill(const QString &text, const QStringList &arguments)
{
    QString filled;
    filled.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const int digit = text[i] == u'%' && i + 1 < text.size() ? text[i + 1].unicode() - u'0' : 0;
        if (digit >= 1 && digit <= 9 && digit <= arguments.size()) {
            filled += arguments[digit - 1];
            ++i;
        } else {
            filled += text[i];
        }
    }
    return filled;
}
