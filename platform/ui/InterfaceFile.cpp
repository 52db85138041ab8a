#include "platform/ui/InterfaceFile.h"

#include "platform/foundation/Perform.h"
#include "platform/ui/WebView.h"

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QAction>
#include <QApplication>
#include <QHash>
#include <QMenu>
#include <QMetaProperty>
#include <QPointer>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace {

QHash<QString, InterfaceFile::Builder> &files()
{
    static QHash<QString, InterfaceFile::Builder> known;
    return known;
}

void bindOutlets(QWidget *window, QObject *owner)
{
    const QMetaObject *meta = owner->metaObject();
    for (int i = QObject::staticMetaObject.propertyCount(); i < meta->propertyCount(); ++i) {
        const QMetaProperty property = meta->property(i);
        const QString name = QString::fromLatin1(property.name());
        QObject *object = name == "window"_L1 ? window : window->findChild<QObject *>(name);
        if (!object)
            continue;
        if (auto *menu = qobject_cast<QMenu *>(object);
            menu && property.metaType() == QMetaType::fromType<QAction *>()) {
            object = menu->menuAction();
        }
        property.write(owner, QVariant::fromValue(object));
    }
}

void sendAction(const Selector &action, QObject *owner, QObject *sender)
{
    QObject *target = perform::responds(owner, action) ? owner : qApp;
    QVariantList arguments;
    if (action.argumentCount() > 0)
        arguments << QVariant::fromValue(sender);
    perform::sendQuietly(target, action, arguments);
}

void bindActions(QWidget *window, QObject *owner)
{
    for (QObject *object : window->findChildren<QObject *>()) {
        const Selector action(object->property("action").toString());
        if (action.isEmpty())
            continue;
        const auto send = [action, owner, object] { sendAction(action, owner, object); };
        if (auto *item = qobject_cast<QAction *>(object))
            QObject::connect(item, &QAction::triggered, owner, send);
        else if (auto *button = qobject_cast<QAbstractButton *>(object))
            QObject::connect(button, &QAbstractButton::clicked, owner, send);
        else if (auto *slider = qobject_cast<QAbstractSlider *>(object))
            QObject::connect(slider, &QAbstractSlider::valueChanged, owner, send);
    }
}

void bindDelegates(QWidget *window, QObject *owner)
{
    for (WebView *page : window->findChildren<WebView *>()) {
        if (!page->property("delegate").toBool())
            continue;
        page->setUIDelegate(owner);
        page->setEditingDelegate(owner);
        page->setFrameLoadDelegate(owner);
    }
}

} // namespace

void InterfaceFile::add(const QString &name, const Builder &builder)
{
    files().insert(name, builder);
}

void InterfaceFile::remove(const QString &name)
{
    files().remove(name);
}

std::unique_ptr<QWidget> InterfaceFile::load(const QString &name, QObject *owner)
{
    const auto file = files().constFind(name);
    if (file == files().cend())
        return nullptr;
    std::unique_ptr<QWidget> window = (*file)();
    bindOutlets(window.get(), owner);
    bindActions(window.get(), owner);
    bindDelegates(window.get(), owner);
    return window;
}
