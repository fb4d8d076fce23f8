// The stages that end a build early because its executable is there already.
#include "driver/build_run.h"

#include "driver/build_messages.h"
#include "driver/output_files.h"
#include "driver/source_checks.h"

#include <QFile>

using BuildMessage::text;

BuildRecord BuildPipeline::Run::record() const
{
    return {OutputFiles::buildFolder(m_request), OutputFiles::executable(m_request)};
}

// Always false: the build is over.
bool BuildPipeline::Run::endUnchanged(const char *progress, const char *result)
{
    if (!begin(100, progress))
        return false;
    m_outcome.success = true;
    m_outcome.executable = OutputFiles::executable(m_request);
    completeOutput();
    m_outcome.output = text(result);
    return false;
}

bool BuildPipeline::Run::skipSameSource()
{
    m_resources = gatherProgramResources(m_request, OutputFiles::executable(m_request));
    m_hashes = BuildHash::ofBuild(m_text, m_request, m_debug);
    m_hashes.digest =
        BuildHash::digestOf({m_hashes.digest, resourceKey(m_resources.resources).toUtf8()});
    const BuildRecord known = record();
    const BuildRecord::Version version = known.version();
    if (version == BuildRecord::Version::Wrong) {
        m_listener.output(text(BuildMessage::newGenerator));
        QFile::remove(OutputFiles::executable(m_request));
        m_pipeline.forget();
    }
    const BuildRecord::Hashes stored = known.stored();
    const bool sameCode = stored.code == m_hashes.codeHash;
    const bool sameNormalized = stored.normalized == m_hashes.normalizedHash;
    if (version != BuildRecord::Version::Right || !(sameCode || sameNormalized) ||
        stored.inputs != m_hashes.inputsHash || !mayKeepExecutable(known))
        return true;
    // A new comment may hold a quotation mark that a whole build would refuse.
    if (!sameCode && checkQuotes(m_text).line > 0)
        return true;
    known.storeHashes(m_hashes);
    return sameNormalized ? endUnchanged(BuildMessage::sameButFormat, BuildMessage::skippedFormat)
                          : endUnchanged(BuildMessage::sameCode, BuildMessage::skippedCode);
}

// Asks what hashes of 32 bits cannot tell: is the executable really made of these inputs?
bool BuildPipeline::Run::mayKeepExecutable(const BuildRecord &known) const
{
    const bool otherMode = m_pipeline.m_lastDebugMode.value_or(m_debug.isOn) != m_debug.isOn;
    return !(BuildHash::countsDebugging() && otherMode) && known.isMadeOf(m_hashes);
}

// What the toolchain is told beside the program.
QByteArray BuildPipeline::Run::jobText() const
{
    const ToolchainJob job = toolchainJob();
    const QStringList parts{m_request.effectiveCompiler(),
                            QString::number(job.staticLink),
                            QString::number(job.splitRuntime),
                            job.linkLibraries.join(QLatin1Char('\n')),
                            job.includeFolders.join(QLatin1Char('\n')),
                            job.libraryFolders.join(QLatin1Char('\n')),
                            resourceKey(job.resources)};
    return parts.join(QLatin1Char('\0')).toUtf8();
}

bool BuildPipeline::Run::skipSameProgram()
{
    m_cleanedProgram = BuildHash::cleanedProgram(m_outcome.program.oneFile());
    const BuildRecord known = record();
    m_jobText = jobText();
    if (known.isMadeOf(m_cleanedProgram, m_jobText)) {
        storeHashes();
        return endUnchanged(BuildMessage::sameProgram, BuildMessage::skippedProgram);
    }
    known.storeSourceSize(m_hashes);
    return true;
}

bool BuildPipeline::Run::storeHashes()
{
    record().storeBuild(m_hashes, m_cleanedProgram, m_jobText);
    m_pipeline.m_lastDebugMode = m_debug.isOn;
    return true;
}

CompilerFastSkipSnapshot BuildPipeline::fastSkipSnapshot(const CompilerBuildRequest &request) const
{
    const CompilerBuildRequest known = request.normalized();
    CompilerFastSkipSnapshot snapshot;
    snapshot.executablePath = OutputFiles::executable(known);
    const BuildRecord record(OutputFiles::buildFolder(known), snapshot.executablePath);
    snapshot.executableExists = record.hasExecutable();
    if (record.version() == BuildRecord::Version::Right) {
        const BuildRecord::Hashes stored = record.stored();
        snapshot.codeHash = QString::fromLatin1(stored.code);
        snapshot.normalizedHash = QString::fromLatin1(stored.normalized);
        snapshot.inputsHash = QString::fromLatin1(stored.inputs);
    }
    return snapshot;
}
