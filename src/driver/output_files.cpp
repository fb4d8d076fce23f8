#include "driver/output_files.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

#include <filesystem>

namespace OutputFiles {

namespace {

// A file that is on disk under its own name; unsaved text has none.
bool isSingleFile(const CompilerBuildRequest &request)
{
    return !request.hasProject && request.sourceText.isEmpty() && !request.sourceFile.isEmpty();
}

QString absolutePath(const QString &path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? info.absoluteFilePath() : canonical;
}

QString temporaryRoot()
{
    const QString root = QStandardPaths::writableLocation(QStandardPaths::TempLocation) +
                         QLatin1String("/VL_IDE_Build");
    // The folder for temporary files may be everybody's: another user's folder is not ours.
    const QFileInfo info(root);
    const bool foreign = info.exists() && (!info.isDir() || !info.isWritable());
    return foreign ? root + QLatin1Char('-') + QFileInfo(QDir::homePath()).fileName() : root;
}

} // namespace

QString buildRoot(const CompilerBuildRequest &request)
{
    if (request.hasProject)
        return QDir(request.projectPath).absolutePath() + QLatin1String("/build");
    if (!isSingleFile(request))
        return temporaryRoot();
    const QByteArray hash = QCryptographicHash::hash(absolutePath(request.sourceFile).toUtf8(),
                                                     QCryptographicHash::Sha256);
    return temporaryRoot() + QLatin1Char('/') + QString::fromLatin1(hash.toHex().left(16));
}

QString buildFolder(const CompilerBuildRequest &request)
{
    return buildRoot(request) + QLatin1Char('/') + request.platform + QLatin1Char('/') +
           request.buildConfig;
}

QString executable(const CompilerBuildRequest &request)
{
    QString name = QStringLiteral("program");
    if (request.hasProject)
        name = QFileInfo(absolutePath(request.projectPath)).fileName();
    else if (isSingleFile(request))
        name = QFileInfo(request.sourceFile).completeBaseName();
    if (name.isEmpty())
        name = QStringLiteral("program");
    return buildFolder(request) + QLatin1Char('/') + name + QLatin1String(".exe");
}

bool write(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}

bool replace(const QString &from, const QString &to)
{
    if (QFileInfo(to).isDir())
        return false;
    // Replaces atomically; fails, and changes nothing, while Windows runs the old file.
    std::error_code error;
    std::filesystem::rename(std::filesystem::u8path(from.toUtf8().constData()),
                            std::filesystem::u8path(to.toUtf8().constData()), error);
    return !error;
}

Removal removeTree(const QString &folder)
{
    Removal result;
    const QFileInfo self(folder);
    if (self.isSymLink() || !self.isDir())
        return result;
    const QFileInfoList entries = QDir(folder).entryInfoList(QDir::AllEntries | QDir::System |
                                                             QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        if (entry.isDir() && !entry.isSymLink()) {
            const Removal inside = removeTree(entry.filePath());
            result.removed += inside.removed;
            result.failed += inside.failed;
        } else if (QFile::remove(entry.filePath())) {
            ++result.removed;
        } else {
            ++result.failed;
        }
    }
    QDir().rmdir(folder);
    return result;
}

Removal clean(const CompilerBuildRequest &request)
{
    const QString root = buildRoot(request);
    Removal result;
    if (QFileInfo(root).isSymLink())
        return result;
    for (const char *platform : {"/x86", "/x64"}) {
        const QString folder = root + QLatin1String(platform);
        if (QFileInfo(folder).isSymLink())
            continue;
        for (const char *config : {"/debug", "/release"}) {
            const Removal one = removeTree(folder + QLatin1String(config));
            result.removed += one.removed;
            result.failed += one.failed;
        }
        QDir().rmdir(folder);
    }
    QDir().rmdir(root);
    return result;
}

} // namespace OutputFiles
