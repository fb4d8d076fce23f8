#include "shell/app_identity.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QGuiApplication>

QIcon AppIdentity::icon()
{
    const QString folder = QCoreApplication::applicationDirPath();
    for (const QString &name : {QStringLiteral("/voreldesk.ico"), QStringLiteral("/vl.ico")}) {
        const QIcon beside(folder + name);
        // A file that is no picture makes an icon without sizes.
        if (QFileInfo(folder + name).isFile() && !beside.availableSizes().isEmpty())
            return beside;
    }
    QIcon builtIn;
    for (const int size : {16, 32, 48, 64, 128, 256})
        builtIn.addFile(QStringLiteral(":/icons/vl_ide_v2_%1.png").arg(size));
    return builtIn;
}

void AppIdentity::apply()
{
    QCoreApplication::setOrganizationName(QStringLiteral("Vorel Studio"));
    QCoreApplication::setApplicationName(QStringLiteral("Vorel VorelDesk"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VOREL_VERSION));
    QGuiApplication::setApplicationDisplayName(
        QStringLiteral("Vorel VorelDesk 全中文可视化开发环境"));
    // By this name a Wayland desktop finds the icon of the windows.
    QGuiApplication::setDesktopFileName(QStringLiteral("voreldesk"));
    QGuiApplication::setWindowIcon(icon());
}
