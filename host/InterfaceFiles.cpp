#include "host/InterfaceFiles.h"

#include "platform/ui/DesktopServices.h"
#include "platform/ui/InterfaceFile.h"
#include "platform/ui/MainWindow.h"
#include "platform/ui/WindowFrameMemory.h"
#include "ui_About.h"
#include "ui_MainMenu.h"
#include "ui_Prefs.h"
#include "ui_slvFeedback.h"
#include "ui_Welcome.h"

using namespace Qt::StringLiterals;

namespace {

std::unique_ptr<QWidget> mainMenu()
{
    auto window = std::make_unique<MainWindow>();
    Ui::MainMenu designed;
    designed.setupUi(window.get());
    // The content keeps its place while the sidebar is hidden.
    QSizePolicy policy = designed.sourceList->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    designed.sourceList->setSizePolicy(policy);
    // On a small or much enlarged screen nothing of the window may lie outside.
    const QRect room = desktopServices().screen->visibleFrame(window.get());
    if (room.isValid()) {
        const QSize largest = room.size() - QSize(Screen::windowBorders, Screen::windowBorders);
        window->setMinimumSize(window->minimumSize().boundedTo(largest));
        window->resize(window->size().boundedTo(largest));
    }
    new WindowFrameMemory(window.get(), u"slvCore.window"_s);
    return window;
}

template <typename Design>
std::unique_ptr<QWidget> designed()
{
    auto window = std::make_unique<QWidget>();
    Design().setupUi(window.get());
    return window;
}

} // namespace

void addInterfaceFiles()
{
    InterfaceFile::add(u"About"_s, designed<Ui::About>);
    InterfaceFile::add(u"Prefs"_s, designed<Ui::Prefs>);
    InterfaceFile::add(u"Welcome"_s, designed<Ui::Welcome>);
    InterfaceFile::add(u"slvFeedback"_s, designed<Ui::slvFeedback>);
    InterfaceFile::add(u"MainMenu"_s, mainMenu);
}
