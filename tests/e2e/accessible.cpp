/// accessible PID - prints what assistive technology sees of a process, one showing object a line:
/// role, x, y, width, height (screen), states, name; separated by tabs. Ends with 1 and prints
/// nothing when the process has not joined the accessibility bus (yet).

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QRect>
#include <QStringList>
#include <QTextStream>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// From the accessibility bus's own numbering (AtspiStateType).
constexpr std::pair<int, const char *> stateNames[] = {
    {1, "active"}, {4, "checked"},   {8, "enabled"},  {12, "focused"},
    {16, "modal"}, {23, "selected"}, {25, "showing"},
};

constexpr int answerTimeout = 2000; // milliseconds

struct Reference
{
    QString service;
    QString path;
};

class Reader
{
public:
    explicit Reader(const QDBusConnection &bus)
        : m_bus(bus)
    { }

    QVariantList call(const Reference &object, const QString &interface, const QString &method,
                      const QVariantList &arguments = {}) const
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(object.service, object.path, interface, method);
        message.setArguments(arguments);
        const QDBusMessage answer = m_bus.call(message, QDBus::Block, answerTimeout);
        return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments() : QVariantList();
    }

    QList<Reference> children(const Reference &object) const
    {
        const QVariantList answer = call(object, m_accessible, u"GetChildren"_s);
        QList<Reference> found;
        if (answer.isEmpty())
            return found;
        const auto list = answer.first().value<QDBusArgument>();
        list.beginArray();
        while (!list.atEnd()) {
            Reference child;
            QDBusObjectPath path;
            list.beginStructure();
            list >> child.service >> path;
            list.endStructure();
            child.path = path.path();
            found << child;
        }
        list.endArray();
        return found;
    }

    QString role(const Reference &object) const
    {
        return call(object, m_accessible, u"GetRoleName"_s).value(0).toString();
    }

    QString name(const Reference &object) const
    {
        const QVariantList answer =
            call(object, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {m_accessible, u"Name"_s});
        return answer.value(0).value<QDBusVariant>().variant().toString();
    }

    QStringList states(const Reference &object) const
    {
        const QVariantList answer = call(object, m_accessible, u"GetState"_s);
        const auto words = qdbus_cast<QList<uint>>(answer.value(0));
        QStringList names;
        for (const auto &[bit, name] : stateNames) {
            if (words.value(0) & (1U << bit))
                names << QString::fromLatin1(name);
        }
        return names;
    }

    QRect extents(const Reference &object) const
    {
        constexpr uint screenCoordinates = 0;
        const QVariantList answer =
            call(object, u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {screenCoordinates});
        return answer.isEmpty() ? QRect() : qdbus_cast<QRect>(answer.first());
    }

private:
    QDBusConnection m_bus;
    const QString m_accessible = u"org.a11y.atspi.Accessible"_s;
};

void print(const Reader &reader, const Reference &object, QTextStream &out)
{
    const QStringList states = reader.states(object);
    if (!states.contains("showing"_L1))
        return;
    const QRect place = reader.extents(object);
    out << reader.role(object) << '\t' << place.x() << '\t' << place.y() << '\t' << place.width()
        << '\t' << place.height() << '\t' << states.join(u',') << '\t'
        << reader.name(object).simplified() << '\n';
    for (const Reference &child : reader.children(object))
        print(reader, child, out);
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const uint pid = QCoreApplication::arguments().value(1).toUInt();
    const Reader session(QDBusConnection::sessionBus());
    const QVariantList address =
        session.call({u"org.a11y.Bus"_s, u"/org/a11y/bus"_s}, u"org.a11y.Bus"_s, u"GetAddress"_s);
    if (address.isEmpty())
        return 1;
    const QDBusConnection bus =
        QDBusConnection::connectToBus(address.first().toString(), u"accessibility"_s);
    if (!bus.isConnected())
        return 1;

    const Reader reader(bus);
    QTextStream out(stdout);
    const auto applications =
        reader.children({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s});
    for (const Reference &one : applications) {
        if (bus.interface()->servicePid(one.service).value() != pid)
            continue;
        print(reader, one, out);
        return 0;
    }
    return 1;
}
