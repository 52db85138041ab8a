#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <QStringList>

#include <memory>

class QWidget;
class TouchBar;

/// One item of a Touch Bar.
struct TouchBarItem
{
    QString identifier;
    std::unique_ptr<QWidget> view;
    int visibilityPriority = 0; ///< where room is short, higher ones are the last to go
};

/// Builds the items of a bar, each time it comes to be shown. Main thread.
class TouchBarDelegate
{
public:
    virtual ~TouchBarDelegate() = default;
    /// Null for an identifier that the delegate does not know.
    virtual std::unique_ptr<TouchBarItem>
    touchBarMakeItemForIdentifier(TouchBar *bar, const QString &identifier) = 0;
};

#define TouchBarDelegate_iid "com.solvane.TouchBarDelegate/6"
Q_DECLARE_INTERFACE(TouchBarDelegate, TouchBarDelegate_iid)

/// A Touch Bar: identifiers of items, in order, and the delegate that builds them. It is a
/// description; TouchBarStrip shows it. Main thread.
class TouchBar : public QObject
{
    Q_OBJECT

public:
    /// @param delegate a QObject that implements TouchBarDelegate; not owned.
    TouchBar(QObject *delegate, QStringList identifiers)
        : m_delegate(delegate)
        , m_identifiers(std::move(identifiers))
    { }

    QObject *delegate() const { return m_delegate; }
    const QStringList &defaultItemIdentifiers() const { return m_identifiers; }
    /// Built by the delegate; null without one.
    std::unique_ptr<TouchBarItem> makeItem(const QString &identifier);

    /// Stands for the items of whatever has the keyboard inside the window; empty so far.
    static QString otherItemsProxy();

    /// Gives the window, or a view inside of one, a bar in place of the one it has. Null takes that
    /// away. The top-level window gets an event of the type below.
    static void install(QWidget *window, std::unique_ptr<TouchBar> bar);
    /// Owned by the window; null for none.
    static TouchBar *installed(const QWidget *window);
    static QEvent::Type installedEvent();

private:
    QPointer<QObject> m_delegate;
    QStringList m_identifiers;
};
