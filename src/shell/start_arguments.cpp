#include "shell/start_arguments.h"

#include <QDir>
#include <QFileInfo>

namespace {

// The absolute path of a file that the program opens, or an empty text. A folder stands for the
// one project in it.
QString openableFile(const QString &argument)
{
    QFileInfo file(QDir::fromNativeSeparators(argument).trimmed());
    if (file.isDir()) {
        const QDir folder(file.filePath());
        const QFileInfoList projects =
            folder.entryInfoList({QStringLiteral("*.vlproj")}, QDir::Files);
        if (argument.trimmed().isEmpty() || projects.size() != 1)
            return {};
        file = projects.first();
    }
    const QString suffix = file.suffix().toLower();
    const bool isOurs = suffix == QLatin1String("vlproj") || suffix == QLatin1String("vc") ||
                        suffix == QLatin1String("vui");
    return isOurs && file.isFile() ? file.absoluteFilePath() : QString();
}

} // namespace

StartArguments readStartArguments(const QStringList &arguments)
{
    StartArguments result;
    for (const QString &argument : arguments.mid(1)) {
        if (argument == QLatin1String("--apply-update"))
            result.refusal = QStringLiteral(
                "此系统上没有 VorelDesk 的安装程序，不能在线更新；请用当初安装它的方式更新。");
        else if (result.fileToOpen.isEmpty())
            result.fileToOpen = openableFile(argument);
    }
    return result;
}
