#include "platform/ui/RealDesktopServices.h"

#include "platform/ui/FileIcons.h"
#include "platform/ui/KeyLetters.h"
#include "platform/ui/Mnemonics.h"
#include "platform/ui/NamedImage.h"

#include <QApplication>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QUrl>
#include <QWidget>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {

constexpr int alertWidth = 420;

/// The desktop's program that opens an address. It may turn into the browser itself: it is watched,
/// but lives on when this program ends, and what becomes of it after a while is the browser's end.
class Opener : public QProcess
{
public:
    Opener(const QString &program, const QUrl &address)
        : QProcess(qApp)
    {
        setProgram(program);
        setArguments({QString::fromUtf8(address.toEncoded())});
        setProcessChannelMode(ForwardedChannels);
        setStandardInputFile(nullDevice());
        // Keys that interrupt this program in a terminal are not meant for a browser.
        setChildProcessModifier([] { ::setsid(); });
    }
    // One that runs no more, as far as this object knows, is not killed with it.
    ~Opener() override { setProcessState(NotRunning); }
    Q_DISABLE_COPY_MOVE(Opener)

    void begin(const std::function<void()> &failed)
    {
        const auto end = [this, failed](bool opened) {
            deleteLater();
            if (!opened && failed && !m_watch.hasExpired(longestAttempt))
                failed();
        };
        connect(
            this, &QProcess::finished, this,
            [end](int code, ExitStatus status) { end(status == NormalExit && code == 0); },
            Qt::QueuedConnection);
        connect(
            this, &QProcess::errorOccurred, this,
            [end](ProcessError error) {
                if (error == FailedToStart)
                    end(false);
            },
            Qt::QueuedConnection);
        m_watch.start();
        start();
    }

private:
    static constexpr int longestAttempt = 30000; // milliseconds

    QElapsedTimer m_watch;
};

} // namespace

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
    QPushButton *safe = box.addButton(mnemonics::literal(defaultButton), QMessageBox::RejectRole);
    QPushButton *other = alternate.isNull()
        ? nullptr
        : box.addButton(mnemonics::literal(alternate), QMessageBox::DestructiveRole);
    box.setDefaultButton(safe);
    box.setEscapeButton(safe);
    // As wide as a sentence; left alone it breaks addresses.
    if (auto *grid = qobject_cast<QGridLayout *>(box.layout()))
        grid->addItem(new QSpacerItem(alertWidth, 0), grid->rowCount(), 0, 1, grid->columnCount());
    keyLetters::assign(&box);
    box.exec();
    return other && box.clickedButton() == other ? Alternate : Default;
}

bool XdgWorkspace::openUrl(const QString &url, const std::function<void()> &failed)
{
    const QUrl address(url, QUrl::StrictMode);
    if (!address.isValid() || address.isRelative())
        return false;
    const QString opener = QStandardPaths::findExecutable(u"xdg-open"_s);
    if (opener.isEmpty())
        return QDesktopServices::openUrl(address);
    (new Opener(opener, address))->begin(failed);
    return true;
}

bool XdgWorkspace::openFile(const QString &path, const std::function<void()> &failed)
{
    return QFileInfo::exists(path)
        && openUrl(QString::fromUtf8(QUrl::fromLocalFile(path).toEncoded()), failed);
}

QString FileDialogOpenPanel::chooseFolder(const QString &title, const QString &folder)
{
    QFileDialog dialog(QApplication::activeWindow(), title, folder);
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setViewMode(QFileDialog::List);
    dialog.setOptions(QFileDialog::ShowDirsOnly | QFileDialog::ReadOnly
                      | QFileDialog::DontUseNativeDialog);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QImage XdgWorkspace::iconForFile(const QString &path, int size)
{
    return FileIcons::ofFile(path, size);
}

QImage XdgWorkspace::iconForFileType(const QString &type, int size)
{
    return FileIcons::ofType(type, size);
}

QRect WindowSystemScreen::visibleFrame(const QWidget *window) const
{
    const QScreen *screen = window ? window->screen() : QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}
