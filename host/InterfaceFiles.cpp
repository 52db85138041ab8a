#include "host/InterfaceFiles.h"

#include "platform/ui/InterfaceFile.h"
#include "platform/ui/MainWindow.h"
#include "ui_MainMenu.h"

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
    return window;
}

} // namespace

void addInterfaceFiles()
{
    InterfaceFile::add(u"MainMenu"_s, mainMenu);
}
