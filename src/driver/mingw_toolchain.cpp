#include "driver/mingw_toolchain.h"

#include "driver/build_messages.h"
#include "driver/gcc_command.h"
#include "driver/mingw_script.h"
#include "driver/output_files.h"
#include "driver/resource_build.h"
#include "driver/tool_process.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTextCodec>

#include <algorithm>

namespace {

using BuildMessage::text;

const char version[] = "★★★ 编译器版本: 2026-01-24-v5 ★★★";
const char folderTold[] = "MinGW 路径: %1";
const char notFound[] = "未找到";
const char compilerTold[] = "g++ 路径: %1 (存在: %2)";
const char noCompiler[] = "未找到本机构建工具。\n\n请运行 tools/copy_mingw.bat 复制随附工具，\n"
                          "或确保本机已安装 g++ 并已加入系统 PATH。";
const char workFolderTold[] = "编译目录: %1";
const char sourceHasChinese[] = "源文件路径包含中文字符，复制到编译目录...";
const char copiedTo[] = "已复制到: %1";
const char copyFailed[] = "警告: 无法复制文件，尝试使用原路径";
const char outputHasChinese[] = "输出路径包含中文字符: %1";
const char usingTemporary[] = "使用临时输出路径: %1";
const char noScript[] = "无法创建临时构建脚本";
const char scriptHeading[] = "=== 编译脚本内容 ===\n";
const char scriptPath[] = "编译脚本路径: %1";
const char copyingBack[] = "从临时目录复制exe到目标位置...";
const char copyBackError[] = "错误: 无法复制exe到目标位置";
const char copyBackFailed[] = "无法复制exe到目标位置: %1";
const char outputPath[] = "输出文件路径: %1";
const char outputExists[] = "文件存在检查: %1";
const char outputMissing[] = "⚠ 警告: 编译器返回成功但输出文件未生成！";
const char outputReasons[] = "  可能原因: 1.中文路径问题 2.链接错误被忽略 3.路径不存在";
const char outputFolderMissing[] = "  ✗ 输出目录不存在: %1";
const char outputFolderError[] = "输出目录不存在: %1";

QString yesNo(bool value)
{
    return value ? QStringLiteral("是") : QStringLiteral("否");
}

bool isAscii(const QString &path)
{
    return std::all_of(path.begin(), path.end(), [](QChar c) { return c.unicode() < 128; });
}

QString foundMinGw()
{
    const QStringList path =
        qEnvironmentVariable("PATH").split(QDir::listSeparator(), Qt::SkipEmptyParts);
    return findMinGw(mingwSearchFolders(QCoreApplication::applicationDirPath(), path),
                     [](const QString &folder) {
                         return QFileInfo::exists(folder + QLatin1String("/g++.exe"));
                     });
}

void removeFiles(const QString &folder, const QStringList &patterns)
{
    QDir dir(folder);
    const QStringList names = dir.entryList(patterns, QDir::Files);
    for (const QString &name : names)
        dir.remove(name);
}

// One build by script.
class ScriptBuild
{
public:
    ScriptBuild(const ToolchainJob &job, BuildListener &listener) : m_job(job), m_listener(listener)
    {}

    ToolchainResult run();

private:
    void say(const char *message, const QString &argument = QString());
    bool findTools();
    bool writeSource();
    bool makeResources();
    void choosePaths();
    bool writeScript();
    bool runScript();
    bool takeOutput();

    const ToolchainJob &m_job;
    BuildListener &m_listener;
    ToolchainResult m_result;
    MinGwScript m_script;
    QString m_scriptFile;
};

void ScriptBuild::say(const char *message, const QString &argument)
{
    const QString line = text(message);
    m_listener.output(line.contains(QLatin1String("%1")) ? line.arg(argument) : line);
}

bool ScriptBuild::findTools()
{
    say(version);
    m_script.binFolder = foundMinGw();
    say(folderTold, m_script.binFolder.isEmpty() ? text(notFound) : m_script.binFolder);
    if (m_script.binFolder.isEmpty()) {
        m_result.message = text(noCompiler);
        return false;
    }
    m_script.compiler = m_script.binFolder + QLatin1String("/g++.exe");
    m_script.resourceCompiler = m_script.binFolder + QLatin1String("/windres.exe");
    m_listener.output(
        text(compilerTold).arg(m_script.compiler, yesNo(QFileInfo::exists(m_script.compiler))));
    return true;
}

bool ScriptBuild::writeSource()
{
    m_script.source = m_job.folder + QLatin1String("/main.cpp");
    const QString program = m_job.program.oneFile();
    m_result.compiledTexts = {{QStringLiteral("main.cpp"), program}};
    if (OutputFiles::write(m_script.source, program.toUtf8()))
        return true;
    m_result.message = text(BuildMessage::cannotWriteCode);
    return false;
}

// The object is named by its path on the command line of the program.
bool ScriptBuild::makeResources()
{
    ResourceBuild resources(m_job.folder, m_job.resources, m_script.resourceCompiler);
    ToolWatch watch;
    watch.goOn = [this](qint64) { return !m_listener.isCancelled(); };
    bool made = resources.prepare();
    if (made && resources.mustRun()) {
        const ToolRun run = runTool(resources.command(), watch);
        m_listener.output(run.output);
        made = resources.finish(run);
    }
    m_result.cancelled = !made && m_listener.isCancelled();
    m_result.message = resources.error();
    const QString object = m_job.folder + QLatin1Char('/') + ResourceBuild::object();
    const QString plain = m_script.folder + QLatin1String("/app_resource.o");
    if (made && !isAscii(object))
        QFile::copy(object, plain);
    m_script.archives << (isAscii(object) ? object : plain);
    return made;
}

// The tools do not open every path that Windows does: what is not ASCII goes through the working
// folder.
void ScriptBuild::choosePaths()
{
    m_script.folder = QStandardPaths::writableLocation(QStandardPaths::TempLocation) +
                      QLatin1String("/VL_IDE_Build");
    QDir().mkpath(m_script.folder);
    say(workFolderTold, m_script.folder);
    removeFiles(m_script.folder, {QStringLiteral("*.o"), QStringLiteral("*.res")});
    if (!isAscii(m_script.source)) {
        say(sourceHasChinese);
        const QString copy = m_script.folder + QLatin1String("/main.cpp");
        QFile::remove(copy);
        if (QFile::copy(m_script.source, copy)) {
            m_script.source = copy;
            say(copiedTo, copy);
        } else {
            say(copyFailed);
        }
    }
    // The new program takes the old one's place only when it is whole.
    m_script.output = m_job.folder + QLatin1String("/vl_linked.exe");
    if (!isAscii(m_script.output)) {
        say(outputHasChinese, m_job.executable);
        m_script.output = m_script.folder + QLatin1String("/vl_temp_output.exe");
        say(usingTemporary, m_script.output);
    }
    QFile::remove(m_script.output);
}

bool ScriptBuild::writeScript()
{
    m_script.staticLink = m_job.staticLink;
    m_script.includeFolders = m_job.includeFolders;
    m_script.libraryFolders = m_job.libraryFolders;
    m_script.libraries = m_job.linkLibraries;
    m_script.extraFlags = GccCommand::compileFlags(m_job.isDebug) + GccCommand::linkFlags() +
                          GccCommand::libraryFlags({});
    m_scriptFile = m_script.folder + QLatin1String("/mingw_compile.bat");
    const QString script = mingwScriptText(m_script);
    const QTextCodec *codec = QTextCodec::codecForName("GBK");
    if (!OutputFiles::write(m_scriptFile, codec ? codec->fromUnicode(script) : script.toUtf8())) {
        m_result.message = text(noScript);
        return false;
    }
    m_listener.output(text(scriptHeading) + script);
    say(scriptPath, m_scriptFile);
    return true;
}

bool ScriptBuild::runScript()
{
    qint64 waited = 0;
    ToolWatch watch;
    watch.goOn = [&](qint64 milliseconds) {
        waited = milliseconds;
        const int seconds = int(milliseconds / 1000);
        m_listener.progress(qMin(90, 70 + seconds / 6),
                            seconds > 0 ? text(BuildMessage::waitingForTool).arg(seconds)
                                        : text(BuildMessage::callingTool));
        return !m_listener.isCancelled();
    };
    // By its bare name: the shell takes a path apart at "&" and the like.
    const ToolRun run = runTool({QStringLiteral("cmd.exe"),
                                 {QStringLiteral("/c"), QFileInfo(m_scriptFile).fileName()},
                                 m_script.folder},
                                watch);
    m_listener.output(run.output);
    if (run.succeeded())
        m_result.toolOutput = run.output;
    else
        noteToolFailure(m_result, run, QStringLiteral("cmd.exe"), waited, m_listener);
    return run.succeeded();
}

bool ScriptBuild::takeOutput()
{
    const bool exists = QFileInfo::exists(m_script.output);
    say(outputPath, m_script.output);
    say(outputExists, yesNo(exists));
    const QString folder = QFileInfo(m_job.executable).path();
    if (!exists) {
        say(outputMissing);
        say(outputReasons);
        m_result.message = text(BuildMessage::noOutput).arg(m_job.executable);
        if (!QFileInfo::exists(folder)) {
            say(outputFolderMissing, folder);
            m_result.message = text(outputFolderError).arg(folder);
        }
        return false;
    }
    say(copyingBack);
    // Beside the target first: only a rename within one volume is atomic.
    const QString beside = m_job.executable + QLatin1String(".new");
    QFile::remove(beside);
    const bool moved =
        QFile::copy(m_script.output, beside) && OutputFiles::replace(beside, m_job.executable);
    QFile::remove(beside);
    QFile::remove(m_script.output);
    if (moved) {
        say(copiedTo, m_job.executable);
        return true;
    }
    say(copyBackError);
    m_result.message = text(copyBackFailed).arg(m_job.executable);
    return false;
}

ToolchainResult ScriptBuild::run()
{
    if (!findTools() || !writeSource())
        return m_result;
    choosePaths();
    m_result.success = makeResources() && writeScript() && runScript() && takeOutput();
    return m_result;
}

} // namespace

ToolchainResult MinGwToolchain::build(const ToolchainJob &job, BuildListener &listener)
{
    return ScriptBuild(job, listener).run();
}
