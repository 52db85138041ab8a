#pragma once

#include "aux_windows/mndTextField.h"
#include "platform/ui/WindowController.h"

#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTabWidget>

/// The window that leads the user of a confined edition to the choice of the home folder: a page
/// that greets, and a page that asks. Main thread.
class Welcome : public WindowController
{
    Q_OBJECT
    Q_PROPERTY(QTabWidget *tvWelcomeMain MEMBER tvWelcomeMain)
    Q_PROPERTY(mndTextField *lblExit MEMBER lblExit)
    Q_PROPERTY(QLabel *lblWelcomeTitle MEMBER lblWelcomeTitle)
    Q_PROPERTY(QLabel *lblWelcomeDesc MEMBER lblWelcomeDesc)
    Q_PROPERTY(QPushButton *btnNext MEMBER btnNext)
    Q_PROPERTY(QLabel *lblWelcomePrompt MEMBER lblWelcomePrompt)
    Q_PROPERTY(QLabel *lblWelcomePromptDesc MEMBER lblWelcomePromptDesc)
    Q_PROPERTY(QPushButton *btnSelect MEMBER btnSelect)

public:
    /// Loads the interface file. Most never see it, and to lay it out takes the fonts: until
    /// somebody asks, there is no window.
    /// @return whether there is one now.
    bool load();
    /// Runs as a sheet of the main window and returns when it is hidden. Asked again meanwhile, it
    /// waits for the same end.
    /// @return whether it was hidden; not when the program ends, and not without a window.
    bool show();
    void hide();

    Q_INVOKABLE void btnNextClicked(QObject *sender = nullptr);
    Q_INVOKABLE void btnSelectClicked(QObject *sender = nullptr);
    /// A button of the Touch Bar, by its title.
    Q_INVOKABLE void tbPressed(const QString &title);
    /// The user refuses: ends the program.
    Q_INVOKABLE void exit();

private:
    void localize();

    QPointer<QTabWidget> tvWelcomeMain;
    QPointer<mndTextField> lblExit;
    QPointer<QLabel> lblWelcomeTitle;
    QPointer<QLabel> lblWelcomeDesc;
    QPointer<QPushButton> btnNext;
    QPointer<QLabel> lblWelcomePrompt;
    QPointer<QLabel> lblWelcomePromptDesc;
    QPointer<QPushButton> btnSelect;
};
