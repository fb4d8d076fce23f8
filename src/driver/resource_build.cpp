#include "driver/resource_build.h"

#include "driver/output_files.h"
#include "driver/resource_script.h"
#include "driver/toolchain_diagnostics.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace {

const char noCompiler[] = "未找到资源编译程序 windres，请安装软件包 binutils-mingw-w64。";
const char cannotWrite[] = "无法写入资源文件：%1，请检查输出目录权限与磁盘空间";
const char cannotRead[] = "无法读取资源文件：%1";
const char compileFailed[] = "界面资源编译失败";
const char compileFailedBecause[] = "界面资源编译失败：%1";

const QString kHash = QStringLiteral("rc.hash");
const QString kCache = QStringLiteral(".obj_cache");
// The compiler writes here; only a whole object takes the place of the old one.
const QString kUnfinished = QStringLiteral(".obj_cache/app_resource.new.o");

// Whether every resource compiler opens a file of this name as it stands in the script.
bool isPlainPath(const QString &path)
{
    static const QString signs = QStringLiteral("/._-+: ");
    return !path.startsWith(QLatin1Char(':')) && std::all_of(path.begin(), path.end(), [](QChar c) {
        return c.unicode() < 128 && (c.isLetterOrNumber() || signs.contains(c));
    });
}

bool isObject(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray machine = file.read(2);
    return machine == QByteArray("\x64\x86") || machine == QByteArray("\x4c\x01");
}

QByteArray readAll(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

ResourceBuild::ResourceBuild(const QString &folder, const ProgramResources &resources,
                             const QString &resourceCompiler)
    : m_folder(folder),
      m_resources(resources),
      m_compiler(resourceCompiler),
      m_hash(QByteArray::number(qHash(resourceKey(resources).toUtf8())))
{}

QString ResourceBuild::object()
{
    return QStringLiteral(".obj_cache/app_resource.o");
}

bool ResourceBuild::fail(const char *message, const QString &detail)
{
    const QString text = QString::fromUtf8(message);
    m_error = text.contains(QLatin1String("%1")) ? text.arg(detail) : text;
    return false;
}

bool ResourceBuild::isCurrent() const
{
    return readAll(inFolder(kHash)).trimmed() == m_hash && isObject(inFolder(object()));
}

bool ResourceBuild::write(const QString &name, const QByteArray &bytes)
{
    return OutputFiles::write(inFolder(name), bytes) ||
           fail(cannotWrite, QDir::toNativeSeparators(inFolder(name)));
}

// Gives the file a name that can stand in the script: embedded files and unusual paths are copied.
bool ResourceBuild::makeReadable(ResourceFile &file, const QString &plainName)
{
    if (file.path.isEmpty() || isPlainPath(file.path))
        return true;
    QFile source(file.path);
    if (!source.open(QIODevice::ReadOnly))
        return fail(cannotRead, QDir::toNativeSeparators(file.path));
    const QString copy = kCache + QLatin1Char('/') + plainName;
    if (!write(copy, source.readAll()))
        return false;
    file.path = copy;
    return true;
}

bool ResourceBuild::writeInput()
{
    if (!QDir(m_folder).mkpath(kCache))
        return fail(cannotWrite, QDir::toNativeSeparators(inFolder(kCache)));
    ProgramResources readable = m_resources;
    if (!makeReadable(readable.icon, QStringLiteral("app_icon.ico")))
        return false;
    for (DesignBitmap &bitmap : readable.bitmaps) {
        if (!makeReadable(bitmap.file, QStringLiteral("vl_cm_%1.bmp").arg(bitmap.id)))
            return false;
    }
    return write(manifestName(), manifestText()) &&
           write(resourceScriptName(),
                 encodeScript(resourceScript(readable), ScriptEncoding::Utf8));
}

bool ResourceBuild::prepare()
{
    if (isCurrent())
        return true;
    if (m_compiler.isEmpty())
        return fail(noCompiler);
    // From here to the end of a successful run the old object counts for nothing: should this build
    // die in between, no later one can take a new object for an old one.
    const QString hash = inFolder(kHash);
    if (QFileInfo::exists(hash) && !QFile::remove(hash))
        return fail(cannotWrite, QDir::toNativeSeparators(hash));
    if (!writeInput())
        return false;
    // Plain names only: the resource compiler hands them to a shell for preprocessing.
    m_command = {m_compiler,
                 {QStringLiteral("-c"), QStringLiteral("65001"), QStringLiteral("-O"),
                  QStringLiteral("coff"), QStringLiteral("-i"), resourceScriptName(),
                  QStringLiteral("-o"), kUnfinished},
                 m_folder};
    return true;
}

bool ResourceBuild::finish(const ToolRun &run)
{
    const QString unfinished = inFolder(kUnfinished);
    if (!run.succeeded() || !isObject(unfinished)) {
        QFile::remove(unfinished);
        if (run.end == ToolRun::End::Cancelled)
            return false;
        const QStringList told = translateToolErrors(run.output);
        if (!told.isEmpty())
            m_error = told.join(QLatin1Char('\n'));
        else if (!run.error.isEmpty())
            fail(compileFailedBecause, run.error);
        else
            fail(compileFailed);
        return false;
    }
    if (!OutputFiles::replace(unfinished, inFolder(object()))) {
        QFile::remove(unfinished);
        return fail(cannotWrite, QDir::toNativeSeparators(inFolder(object())));
    }
    // Without it the next build makes the object again, which harms nobody.
    OutputFiles::write(inFolder(kHash), m_hash);
    return true;
}
