#include "helpers/appBundle.h"
#include "helpers/sharedHelpers.h"
#include "platform/foundation/PathExtension.h"
#include "platform/ui/DesktopServices.h"
#include "platform/ui/IconImage.h"

using namespace Qt::StringLiterals;

namespace {

AttributedString tableIcon(const QImage &image)
{
    AttributedString cell;
    cell.attachment = image;
    cell.alignment = Qt::AlignRight;
    return cell;
}

} // namespace

QString sharedHelpers::iconPathForApplication(const QString &path)
{
    appBundle bundles;
    if (pathExtension(path) == "app"_L1)
        return bundles.getIconPath(path);
    const QString application = bundles.getAppPathFromExecutablePath(path);
    return application.endsWith("app"_L1) ? bundles.getIconPath(application) : QString();
}

AttributedString sharedHelpers::tableViewIconForFile(const QString &path, int size)
{
    if (path.isEmpty())
        return tableIcon(desktopServices().workspace->iconForFileType(u"APPL"_s, size));
    return tableIcon(IconImage::read(path, size));
}

AttributedString sharedHelpers::tableViewIconForBundle(const QString &path, int size)
{
    return tableIcon(desktopServices().workspace->iconForFile(path, size));
}
