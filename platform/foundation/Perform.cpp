#include "platform/foundation/Perform.h"

#include "platform/foundation/ExceptionText.h"
#include "platform/foundation/SystemServices.h"

#include <QMetaMethod>
#include <QObject>
#include <QStringList>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace perform {

namespace {

constexpr std::array<QLatin1StringView, 5> senderKeywords{
    "sourceList"_L1, "outlineView"_L1, "webView"_L1, "touchBar"_L1, "tableView"_L1};
constexpr qsizetype maximumArguments = 10;

QMetaMethod findMethod(const QObject *receiver, const Selector &selector)
{
    const QByteArray name = methodName(selector);
    const qsizetype count = selector.argumentCount();
    if (!receiver || name.isEmpty() || count > maximumArguments)
        return {};
    const QMetaObject *meta = receiver->metaObject();
    // From the end, so that a subclass's method is found before its base's.
    for (int i = meta->methodCount() - 1; i >= 0; --i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() != QMetaMethod::Signal && method.parameterCount() == count
            && method.name() == name) {
            return method;
        }
    }
    return {};
}

} // namespace

QByteArray methodName(const Selector &selector)
{
    const QStringList keywords = selector.name().split(u':');
    QString name = keywords.first();
    const bool namesOnlyTheSender =
        std::find(senderKeywords.begin(), senderKeywords.end(), name) != senderKeywords.end();
    if (namesOnlyTheSender && keywords.size() > 2 && !keywords[1].isEmpty())
        name += keywords[1].at(0).toUpper() + keywords[1].mid(1);
    // A leading double underscore is reserved to the language.
    if (name.startsWith("__"_L1))
        name.remove(0, 1);
    return name.toUtf8();
}

bool responds(const QObject *receiver, const Selector &selector)
{
    return findMethod(receiver, selector).isValid();
}

bool send(QObject *receiver, const Selector &selector, const QVariantList &arguments)
{
    const QMetaMethod method = findMethod(receiver, selector);
    if (!method.isValid() || arguments.size() < method.parameterCount())
        return false;

    QVariantList converted = arguments;
    std::array<void *, maximumArguments + 1> pointers{};
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QMetaType wanted = method.parameterMetaType(i);
        QVariant &argument = converted[i];
        if (wanted == QMetaType::fromType<QVariant>()) {
            pointers[i + 1] = &argument;
            continue;
        }
        if (!argument.isValid())
            argument = QVariant(wanted);
        else if (argument.metaType() != wanted && !argument.convert(wanted))
            return false;
        pointers[i + 1] = argument.data();
    }
    QVariant result(method.returnMetaType());
    pointers[0] = result.data();
    receiver->qt_metacall(QMetaObject::InvokeMetaMethod, method.methodIndex(), pointers.data());
    return true;
}

bool sendQuietly(QObject *receiver, const Selector &selector,
                 const QVariantList &arguments) noexcept
{
    try {
        return send(receiver, selector, arguments);
    } catch (...) {
        if (SystemLog *log = systemServices().systemLog) {
            log->write(u"%1 of %2 threw an exception: %3"_s.arg(
                selector.name(), QLatin1StringView(receiver->metaObject()->className()),
                currentExceptionText()));
        }
        return true;
    }
}

} // namespace perform
