#include "driver/cross_build.h"

#include "driver/build_messages.h"
#include "driver/cpp_tokens.h"
#include "driver/output_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QThread>

namespace {

using BuildMessage::text;

// The linker writes here.
const QString kLinked = QStringLiteral("vl_linked.exe");
const QString kUnitSources = QStringLiteral("user_*.cpp");

constexpr int compilePercent = 80;
constexpr int linkPercent = 95;

QString sourceName(const ProgramUnit &unit)
{
    return unit.name + QLatin1String(".cpp");
}

} // namespace

CrossBuild::CrossBuild(const ToolchainJob &job, const CppTools &tools,
                       const PreparedRuntime &runtime, Form form, BuildListener &listener)
    : m_job(job),
      m_tools(tools),
      m_runtime(runtime),
      m_listener(listener),
      m_form(form),
      m_store(job.folder),
      m_resources(job.folder, job.resources, tools.resourceCompiler())
{
    if (form == Form::Units)
        m_units = cutIntoUnits(job.program, job.lineMap);
    else if (form == Form::WholeProgram)
        m_units = {wholeUnit(job.program)};
    else
        m_units = {{mainUnitName, job.program.oneFile()}};
}

QString CrossBuild::includeLine() const
{
    return m_form == Form::OneFile ? QString()
                                   : QStringLiteral("#include \"%1\"\n").arg(m_runtime.header);
}

bool CrossBuild::writeSources()
{
    dropStaleSources();
    for (const ProgramUnit &unit : qAsConst(m_units)) {
        const QByteArray source = (includeLine() + unit.text).toUtf8();
        if (!OutputFiles::write(inFolder(sourceName(unit)), source)) {
            m_result.message = text(BuildMessage::cannotWriteCode);
            return false;
        }
    }
    return true;
}

void CrossBuild::dropStaleSources() const
{
    QStringList current;
    for (const ProgramUnit &unit : m_units)
        current << sourceName(unit);
    QDir folder(m_job.folder);
    const QStringList sources = folder.entryList({kUnitSources}, QDir::Files);
    for (const QString &source : sources) {
        if (!current.contains(source))
            folder.remove(source);
    }
}

QStringList CrossBuild::compileArguments() const
{
    QStringList arguments = m_tools.unitFlags(m_job.isDebug);
    if (m_form != Form::OneFile)
        arguments << m_tools.precompiledArguments(m_runtime.includeFolder, m_runtime.header);
    for (const QString &folder : m_job.includeFolders)
        arguments << QStringLiteral("-I") << folder;
    return arguments << QStringLiteral("-c");
}

// One command for each unit whose object is not there yet.
QList<ToolCommand> CrossBuild::compileCommands()
{
    const QStringList arguments = compileArguments();
    QList<ToolCommand> commands;
    for (const ProgramUnit &unit : qAsConst(m_units)) {
        const QString object = m_store.objectName(
            unit.name, QStringList{m_runtime.key, cppCodeOnly(unit.text)} + arguments);
        m_objects << object;
        if (m_form != Form::OneFile && m_store.has(object))
            continue;
        m_made << object;
        commands << ToolCommand{m_tools.compiler(),
                                arguments + QStringList{sourceName(unit), QStringLiteral("-o"),
                                                        ObjectStore::unfinished(object)},
                                m_job.folder};
    }
    return commands;
}

ToolWatch CrossBuild::watch(const QString &message, int percent, int percentEnd, int steps)
{
    ToolWatch watch;
    watch.goOn = [=](qint64) {
        const int seconds = int(m_elapsed.elapsed() / 1000);
        const int now = percent + (percentEnd - percent) * m_done / qMax(1, steps);
        m_listener.progress(now, seconds > 0 ? text(BuildMessage::waitingForTool).arg(seconds)
                                             : message);
        return !m_listener.isCancelled();
    };
    return watch;
}

// The resources are compiled beside the units.
bool CrossBuild::compile()
{
    if (!m_resources.prepare()) {
        m_result.message = m_resources.error();
        return false;
    }
    QList<ToolCommand> commands = compileCommands();
    if (m_resources.mustRun())
        commands << m_resources.command();
    ToolWatch progress =
        watch(text(BuildMessage::callingTool), compilePercent, linkPercent, commands.size());
    progress.finished = [this](int) { ++m_done; };
    if (!commands.isEmpty())
        m_listener.progress(compilePercent, text(BuildMessage::callingTool));
    const QList<ToolRun> runs = runTools(commands, QThread::idealThreadCount(), progress);
    // Whatever was made is kept, also when something else failed.
    bool kept = true;
    for (int i = 0; i < m_made.size(); ++i)
        kept = (!runs.at(i).succeeded() || m_store.finish(m_made.at(i))) && kept;
    const bool hasResources = !m_resources.mustRun() || m_resources.finish(runs.last());
    if (!takeRuns(runs.mid(0, m_made.size()), commands))
        return false;
    if (!hasResources)
        return refuseResources(runs.last());
    if (!kept)
        m_result.message = text(BuildMessage::noOutput).arg(inFolder(m_made.last()));
    return kept;
}

bool CrossBuild::refuseResources(const ToolRun &run)
{
    m_listener.output(run.output);
    m_result.cancelled = run.end == ToolRun::End::Cancelled;
    m_result.message = m_resources.error();
    return false;
}

// False when one of the runs failed; that one is reported. Once a run fails the others are ended.
bool CrossBuild::takeRuns(const QList<ToolRun> &runs, const QList<ToolCommand> &commands)
{
    for (int i = 0; i < runs.size(); ++i) {
        const ToolRun &run = runs.at(i);
        if (!run.output.isEmpty())
            m_listener.output(run.output);
        const bool bystander = run.end == ToolRun::End::Cancelled && i + 1 < runs.size();
        if (!run.succeeded() && !bystander) {
            noteToolFailure(m_result, run, commands.at(i).program, m_elapsed.elapsed(), m_listener);
            return false;
        }
        m_said += run.output;
    }
    return true;
}

bool CrossBuild::link()
{
    QStringList objects = m_objects;
    objects << ResourceBuild::object();
    if (!m_runtime.archive.isEmpty())
        objects << m_runtime.archive;
    const ToolCommand command = m_tools.linkCommand(m_job.folder, objects, kLinked,
                                                    m_job.libraryFolders, m_job.linkLibraries);
    const QStringList inputs =
        QStringList{m_runtime.key, resourceKey(m_job.resources), command.program} +
        command.arguments;
    if (m_made.isEmpty() && m_store.isLinked(m_job.executable, inputs))
        return true;
    const ToolRun run =
        runTool(command, watch(text(BuildMessage::linking), linkPercent, linkPercent, 1));
    if (!takeRuns({run}, {command}) || !putInPlace())
        return false;
    m_store.noteLinked(m_job.executable, inputs);
    return true;
}

bool CrossBuild::putInPlace()
{
    const QString linked = inFolder(kLinked);
    if (!QFileInfo::exists(linked)) {
        m_result.message = text(BuildMessage::noOutput).arg(m_job.executable);
        return false;
    }
    if (OutputFiles::replace(linked, m_job.executable))
        return true;
    m_result.message =
        text(BuildMessage::cannotReplaceExecutable).arg(QDir::toNativeSeparators(m_job.executable));
    return false;
}

ToolchainResult CrossBuild::run()
{
    m_elapsed.start();
    const bool compiled = writeSources() && compile();
    m_result.success = compiled && link();
    if (m_form == Form::Units && m_result.success)
        m_store.keepOnly(m_objects);
    else if (m_form == Form::OneFile || (compiled && m_result.isToolFailure()))
        m_store.keepOnly({}); // nothing that does not link is worth keeping
    m_store.dropUnfinished();
    QFile::remove(inFolder(kLinked));
    if (m_result.success)
        m_result.toolOutput = m_said;
    if (m_result.toolOutput.isEmpty())
        return m_result;
    for (const ProgramUnit &unit : qAsConst(m_units))
        m_result.compiledTexts << CompiledText{sourceName(unit), includeLine() + unit.text};
    return m_result;
}
