#pragma once

#include <QString>

#include <functional>
#include <memory>

class QObject;
class QWidget;

/// Interface files by name: windows that were designed and compiled into the program. Main thread.
class InterfaceFile
{
public:
    /// Makes the designed window, fresh on each call.
    using Builder = std::function<std::unique_ptr<QWidget>()>;

    /// Makes a file known. A second one of the same name replaces the first.
    static void add(const QString &name, const Builder &builder);
    static void remove(const QString &name);

    /// Makes the file's window and connects it with its owner:
    ///   - outlets: every property of the owner that is named like an object of the file gets it
    ///     ("window" gets the window itself; a menu goes into a QAction property as its entry);
    ///   - actions: an object with the dynamic property "action" sends that selector to the owner,
    ///     or to the application object when the owner does not answer it;
    ///   - delegates: a web view whose dynamic property "delegate" is true asks and tells the
    ///   owner.
    /// @return the window, the caller's; null when there is no file of that name.
    static std::unique_ptr<QWidget> load(const QString &name, QObject *owner);
};
