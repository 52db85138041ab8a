#include "platform/ui/RealDesktopServices.h"

#include "platform/ui/NamedImage.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QUrl>
#include <QWidget>

using namespace Qt::StringLiterals;

AlertPanel::Answer MessageBoxAlertPanel::run(const QString &title, const QString &message,
                                             const QString &defaultButton, const QString &alternate)
{
    QMessageBox box(QMessageBox::Warning, title, title, QMessageBox::NoButton,
                    QApplication::activeWindow());
    box.setInformativeText(message);
    box.setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint
                       | Qt::WindowCloseButtonHint);
    box.setIconPixmap(NamedImage::pixmap(u"solvane"_s, {48, 48}, box.devicePixelRatioF()));
    box.setTextFormat(Qt::PlainText);
    QPushButton *safe = box.addButton(defaultButton, QMessageBox::RejectRole);
    QPushButton *other =
        alternate.isNull() ? nullptr : box.addButton(alternate, QMessageBox::DestructiveRole);
    box.setDefaultButton(safe);
    box.setEscapeButton(safe);
    box.exec();
    return other && box.clickedButton() == other ? Alternate : Default;
}

bool XdgWorkspace::openUrl(const QString &url)
{
    const QUrl address(url, QUrl::StrictMode);
    return address.isValid() && !address.isRelative() && QDesktopServices::openUrl(address);
}

bool XdgWorkspace::openFile(const QString &path)
{
    return QFileInfo::exists(path) && QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

QRect WindowSystemScreen::visibleFrame(const QWidget *window) const
{
    const QScreen *screen = window ? window->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}
