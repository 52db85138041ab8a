#include "app/TextScale.h"

#include "platform/ui/Application.h"
#include "platform/ui/DesktopServices.h"

#include <QFont>
#include <QScreen>

#include <algorithm>
#include <vector>

namespace {

/// While it lives, an application object that is made enlarges everything. Not for longer: programs
/// that this one starts look after themselves.
class Enlarged
{
public:
    explicit Enlarged(double factor)
        : m_before(qgetenv(variable))
    {
        const double asked = m_before.toDouble();
        qputenv(variable, QByteArray::number(asked > 0 ? asked * factor : factor));
    }
    ~Enlarged()
    {
        if (m_before.isNull())
            qunsetenv(variable);
        else
            qputenv(variable, m_before);
    }
    Q_DISABLE_COPY_MOVE(Enlarged)

private:
    static constexpr const char *variable = "QT_SCALE_FACTOR";
    QByteArray m_before;
};

/// Less is not worth that points are no whole pixels any more, which titles in menus are cut by.
constexpr double leastEnlargement = 1.1;

/// In points, as the desktop says: no font is looked for.
double sizeOf(const QFont &font)
{
    constexpr double pointsOfPixel = 72.0 / 96;
    return font.pixelSize() > 0 ? font.pixelSize() * pointsOfPixel : font.pointSizeF();
}

QSize roomForWindows()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry().size() : QSize();
}

} // namespace

double TextScale::factorFor(double textSize, const QSize &room)
{
    const double fitting =
        std::min(double(room.width() - Screen::windowBorders) / leastWindow.width(),
                 double(room.height() - Screen::windowBorders) / leastWindow.height());
    const double factor = std::min(textSize / largestText, fitting);
    return factor < leastEnlargement ? 1 : factor;
}

std::unique_ptr<Application>
TextScale::makeApplication(int &argc, char **argv,
                           const std::function<std::unique_ptr<Application>(int &, char **)> &make)
{
    // The toolkit takes out what it has read: its own arguments, and what the desktop calls the
    // start.
    constexpr const char *startName = "DESKTOP_STARTUP_ID";
    const QByteArray start = qgetenv(startName);
    const std::vector<char *> arguments(argv, argv + argc + 1);

    std::unique_ptr<Application> application = make(argc, argv);
    const double textSize = sizeOf(QApplication::font());
    if (textSize <= largestText)
        return application;
    if (const double factor = factorFor(textSize, roomForWindows()); factor > 1) {
        application.reset();
        if (!start.isNull())
            qputenv(startName, start);
        std::copy(arguments.begin(), arguments.end(), argv);
        argc = int(arguments.size()) - 1;
        const Enlarged enlarged(factor);
        application = make(argc, argv);
    }
    QFont font = QApplication::font();
    font.setPointSizeF(largestText);
    QApplication::setFont(font); // those of menus and alerts, too
    return application;
}
