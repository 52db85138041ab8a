#pragma once

#include "helpers/HelperProtocols.h"

#include <QObject>

/// What starts with the user's session: the entries in the user's own autostart folder. What the
/// disk holds is looked up at each call; what fails, fails silently and changes nothing. Any
/// thread.
class LoginItemList : public QObject, public loginItemsProtocol
{
    Q_OBJECT
    Q_INTERFACES(loginItemsProtocol)

public:
    /// Finds the folder, and leaves making it to whoever adds an entry. Where there can be no such
    /// folder, the list is null: it is empty and stays so.
    LoginItemList();

    // loginItemsProtocol
    Q_INVOKABLE QStringList loginItems() override;
    Q_INVOKABLE QString mainBundleLoginItemCopy() override;
    Q_INVOKABLE void addMainBundleToLoginItems() override;
    Q_INVOKABLE void removeMainBundleFromLoginItems() override;
    Q_INVOKABLE bool launchOnLogin() override;
    Q_INVOKABLE void setLaunchOnLogin(bool value) override;

private:
    const QString loginItemsListRef; ///< the folder; null without one
};

/// The list under the name that plugins ask for, which is also a method's: a class cannot have a
/// method of its own name, but it can inherit one.
class loginItems : public LoginItemList
{
    Q_OBJECT

public:
    Q_INVOKABLE loginItems() = default;
};
