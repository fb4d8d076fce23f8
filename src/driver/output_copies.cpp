#include "driver/output_copies.h"

#include "driver/output_files.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>

#include <filesystem>

namespace OutputCopies {

namespace {

const char resourceSynced[] = "已同步工程 resource 到输出目录（与 exe 同级）:";
const char resourceFailed[] = "[警告] 无法复制 resource\\";
const char moreFailed[] = "[警告] 另有 %1 个资源文件无法复制";
const char libraryCopied[] = "已复制扩展库 DLL 到输出目录: %1";
const char libraryFailed[] = "[警告] 无法复制扩展库 DLL: %1";
const char engineCopied[] = "★ QuickJS 运行库已从 %1 复制到 Vorel 项目 build 目录（%2 个 DLL）：%3";
const char engineFolder[] = "   build 目录（exe 所在）：%1";

const QString kTemporary = QStringLiteral(".vl_copy.tmp");
constexpr int longestFailureList = 20;
// Links to folders may lead round in circles that multiply; no real project has as many.
constexpr int mostFollowedLinks = 200;

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

bool isLink(const QFileInfo &info)
{
    return info.isSymbolicLink() || info.isJunction();
}

// Whether `path` is `folder` or lies in it; both canonical.
bool isWithin(const QString &path, const QString &folder)
{
    return path == folder ||
           path.startsWith(folder.endsWith(QLatin1Char('/')) ? folder : folder + QLatin1Char('/'));
}

std::filesystem::path native(const QString &path)
{
    return std::filesystem::u8path(path.toUtf8().constData());
}

bool isSame(const QFileInfo &from, const QFileInfo &to)
{
    return to.isFile() && !isLink(to) && from.size() == to.size() &&
           from.lastModified() == to.lastModified();
}

// Makes `to` a copy of the file `from`, size and time included; it is whole at every moment. A link
// that stands at `to` is replaced, never written through.
bool copyFile(const QFileInfo &from, const QString &to)
{
    const QString temporary = QFileInfo(to).path() + QLatin1Char('/') + kTemporary;
    QFile::remove(temporary);
    const std::filesystem::path source = native(from.filePath());
    const std::filesystem::path target = native(temporary);
    std::error_code error;
    const auto time = std::filesystem::last_write_time(source, error);
    if (!error && std::filesystem::copy_file(source, target, error) && !error)
        std::filesystem::last_write_time(target, time, error);
    // Write protection would keep the next build from replacing the copy on some hosts.
    if (!error) {
        std::filesystem::permissions(target, std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add, error);
    }
    if (!error && OutputFiles::replace(temporary, to))
        return true;
    QFile::remove(temporary);
    return false;
}

// An ordinary folder at `path`, made if there is none. A link gives way: what lies behind it is not
// the build's.
bool ensureFolder(const QString &path)
{
    const QFileInfo info(path);
    if (isLink(info) && !QFile::remove(path))
        return false;
    return QDir().mkpath(path);
}

// One copy of a tree.
class TreeCopy
{
public:
    TreeCopy(const QString &project, const QString &output)
        : m_project(QFileInfo(project).canonicalFilePath()),
          m_output(QFileInfo(output).canonicalFilePath())
    {
        m_built = m_output;
        if (isWithin(m_output, m_project)) {
            const QString inside = m_output.mid(m_project.size() + 1);
            m_built = m_project + QLatin1Char('/') + inside.section(QLatin1Char('/'), 0, 0);
        }
    }

    QStringList run();

private:
    void copyFolder(const QString &from, const QString &to, const QString &name);
    void copyEntry(const QFileInfo &entry, const QString &to, const QString &name);
    bool mayFollow(const QFileInfo &link);
    void fail(const QString &name);

    QString m_project;
    QString m_output;
    QString m_built;       // the folder right under the project that holds the output of all builds
    QSet<QString> m_above; // the folders on the way to the current one, canonical
    QStringList m_failures;
    int m_files = 0;
    int m_failed = 0;
    int m_followed = 0;
};

void TreeCopy::fail(const QString &name)
{
    if (++m_failed <= longestFailureList)
        m_failures << text(resourceFailed) + QDir::toNativeSeparators(name);
}

// Not links that leave the project, nor those to folders that hold or are what is being copied or
// built: the copy would grow from build to build.
bool TreeCopy::mayFollow(const QFileInfo &link)
{
    const QString target = link.canonicalFilePath();
    if (target.isEmpty() || !isWithin(target, m_project))
        return false;
    if (!link.isDir())
        return link.isFile();
    return !m_above.contains(target) && !isWithin(target, m_built) && !isWithin(m_built, target) &&
           ++m_followed <= mostFollowedLinks;
}

void TreeCopy::copyEntry(const QFileInfo &entry, const QString &to, const QString &name)
{
    // Pipes, devices and the like have no content to copy.
    const bool isUnusable = isLink(entry) ? !mayFollow(entry) : !entry.isDir() && !entry.isFile();
    if (isUnusable) {
        fail(name);
    } else if (entry.isDir()) {
        copyFolder(entry.filePath(), to, name);
    } else {
        ++m_files;
        if (!isSame(entry, QFileInfo(to)) && !copyFile(entry, to))
            fail(name);
    }
}

void TreeCopy::copyFolder(const QString &from, const QString &to, const QString &name)
{
    const QString canonical = QFileInfo(from).canonicalFilePath();
    if (m_above.contains(canonical) || !ensureFolder(to))
        return fail(name);
    m_above.insert(canonical);
    const QFileInfoList entries = QDir(from).entryInfoList(
        QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo &entry : entries) {
        const QString path =
            name.isEmpty() ? entry.fileName() : name + QLatin1Char('/') + entry.fileName();
        copyEntry(entry, to + QLatin1Char('/') + entry.fileName(), path);
    }
    m_above.remove(canonical);
}

QStringList TreeCopy::run()
{
    const QFileInfo source(m_project + QLatin1String("/resource"));
    if (m_project.isEmpty() || m_output.isEmpty() || !source.isDir())
        return {};
    const QString target = m_output + QLatin1String("/resource");
    copyEntry(source, target, QString());
    QStringList lines;
    if (m_files > 0)
        lines << text(resourceSynced) + QLatin1Char(' ') + QDir::toNativeSeparators(target);
    lines += m_failures;
    if (m_failed > m_failures.size())
        lines << text(moreFailed).arg(m_failed - m_failures.size());
    return lines;
}

bool copyInto(const QFileInfo &file, const QString &folder, const QString &name)
{
    const QString to = folder + QLatin1Char('/') + name;
    return file.isFile() && (isSame(file, QFileInfo(to)) || copyFile(file, to));
}

void removeFiles(const QString &folder, const QStringList &patterns)
{
    QDir dir(folder);
    const QStringList names = dir.entryList(patterns, QDir::Files | QDir::System | QDir::Hidden);
    for (const QString &name : names)
        dir.remove(name);
}

} // namespace

QStringList copyProjectResources(const QString &projectFolder, const QString &outputFolder)
{
    return TreeCopy(projectFolder, outputFolder).run();
}

QStringList copyLibraries(const QStringList &libraries, const QString &outputFolder)
{
    QStringList lines;
    for (const QString &library : libraries) {
        const QFileInfo file(library);
        const char *line =
            copyInto(file, outputFolder, file.fileName()) ? libraryCopied : libraryFailed;
        lines << text(line).arg(file.fileName());
    }
    return lines;
}

QStringList copyScriptEngine(const QString &root, const QString &outputFolder)
{
    if (root.isEmpty())
        return {};
    QStringList copied;
    for (const char *sub : {"/lib/quickjs", "/lib", "/runtime", "/bin"}) {
        const QDir folder(root + QLatin1String(sub));
        const QFileInfoList files =
            folder.entryInfoList({QStringLiteral("*.dll")}, QDir::Files, QDir::Name);
        for (const QFileInfo &file : files) {
            // The first folder that has it wins.
            if (copied.contains(file.fileName(), Qt::CaseInsensitive) ||
                !copyInto(file, outputFolder, file.fileName()))
                continue;
            copied << file.fileName();
            const bool hasOtherName =
                file.fileName().compare(QLatin1String("libquickjs.dll"), Qt::CaseInsensitive) == 0;
            if (hasOtherName && copyInto(file, outputFolder, QStringLiteral("quickjs.dll")))
                copied << QStringLiteral("quickjs.dll");
        }
    }
    if (copied.isEmpty())
        return {};
    return {text(engineCopied)
                .arg(QDir::toNativeSeparators(root), QString::number(copied.size()),
                     copied.join(QStringLiteral(", "))),
            text(engineFolder).arg(QDir::toNativeSeparators(outputFolder))};
}

void removeIntermediates(const QString &buildFolder, const QString &outputFolder)
{
    removeFiles(buildFolder,
                {QStringLiteral("*.rc"), QStringLiteral("*.exp"), QStringLiteral("*.lib"),
                 QStringLiteral("*.o"), QStringLiteral("*.bat"), QStringLiteral("*.a"),
                 QStringLiteral("*.ilk"), QStringLiteral("*.pdb")});
    removeFiles(outputFolder,
                {QStringLiteral("*.exp"), QStringLiteral("*.lib"), QStringLiteral("*.manifest")});
}

} // namespace OutputCopies
