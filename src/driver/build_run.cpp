#include "driver/build_run.h"

#include "driver/build_messages.h"
#include "driver/message_location.h"

#include <algorithm>

using BuildMessage::text;

BuildPipeline::BuildPipeline()
    : m_ownHelper(std::make_unique<ParseHelper>()), m_helper(m_ownHelper.get())
{
    m_toolchains = [](const CompilerBuildRequest &request) {
        return Toolchain::forHost(request.wantsMinGW());
    };
}

BuildOutcome BuildPipeline::run(const CompilerBuildRequest &request, BuildListener &listener)
{
    return Run(*this, request.normalized(), listener).execute();
}

void BuildPipeline::forget()
{
    m_lexedText.clear();
    m_tokens.clear();
    m_kept = {};
    m_lastDebugMode.reset();
}

CodeGenerator &BuildPipeline::generator()
{
    if (!m_generator)
        m_generator = std::make_unique<CodeGenerator>();
    return *m_generator;
}

BuildPipeline::Run::Run(BuildPipeline &pipeline, const CompilerBuildRequest &request,
                        BuildListener &listener)
    : m_pipeline(pipeline),
      m_request(request),
      m_listener(listener),
      m_debug(pipeline.m_debug),
      m_parser(pipeline.m_helper)
{}

BuildOutcome BuildPipeline::Run::execute()
{
    using Stage = bool (Run::*)();
    struct Step
    {
        Stage run;
        bool isForExecutable; // writes, or spares the executable's making
    };
    static const Step steps[] = {{&Run::gather, false},
                                 {&Run::checkHandlers, false},
                                 {&Run::skipSameSource, true},
                                 {&Run::checkQuotation, false},
                                 {&Run::lex, false},
                                 {&Run::parse, false},
                                 {&Run::checkTree, false},
                                 {&Run::generate, false},
                                 {&Run::finishProgram, false},
                                 {&Run::prepareFolder, true},
                                 {&Run::skipSameProgram, true},
                                 {&Run::compile, true},
                                 {&Run::storeHashes, true}};

    const bool wantsExecutable = m_request.goal == BuildGoal::Executable;
    for (const Step &step : steps) {
        if ((wantsExecutable || !step.isForExecutable) && !(this->*step.run)())
            return m_outcome;
    }
    if (wantsExecutable) {
        completeOutput();
        m_outcome.output = text(BuildMessage::succeeded).arg(m_outcome.executable);
        m_listener.progress(100, text(BuildMessage::compiled));
    }
    m_outcome.success = true;
    return m_outcome;
}

// Announces a stage; false when the build is no longer wanted.
bool BuildPipeline::Run::begin(int percent, const char *message)
{
    if (m_listener.isCancelled()) {
        m_outcome.cancelled = true;
        return fail({text(BuildMessage::cancelled)});
    }
    m_percent = percent;
    m_listener.progress(percent, text(message));
    return true;
}

bool BuildPipeline::Run::fail(const QStringList &errors)
{
    m_outcome.output = errors.join(QLatin1Char('\n'));
    return false;
}

bool BuildPipeline::Run::endIfErrors()
{
    return m_errors.isEmpty() || fail(m_errors);
}

void BuildPipeline::Run::report(const BuildDiagnostic &diagnostic)
{
    if (diagnostic.severity == BuildDiagnostic::Severity::Error)
        m_errors << diagnostic.text;
    m_listener.diagnostic(diagnostic);
}

// What is known of a message's place is what its text tells.
void BuildPipeline::Run::reportMessages(const QStringList &messages,
                                        BuildDiagnostic::Severity severity)
{
    QList<SourceMessage> placed;
    for (const QString &message : messages) {
        const bool isWarning = severity == BuildDiagnostic::Severity::Warning;
        placed << SourceMessage{lineOfMessage(message), 0, QString(), message, isWarning};
    }
    reportMessages(placed);
}

// Messages name merged lines; the user is told lines of files.
void BuildPipeline::Run::reportMessages(const QList<SourceMessage> &messages)
{
    const bool hasColumns =
        std::any_of(messages.begin(), messages.end(),
                    [](const SourceMessage &message) { return message.column > 0; });
    const QVector<QStringRef> lines =
        hasColumns ? m_text.splitRef(QLatin1Char('\n')) : QVector<QStringRef>();
    for (const SourceMessage &message : messages) {
        BuildDiagnostic diagnostic;
        diagnostic.severity = message.isWarning ? BuildDiagnostic::Severity::Warning
                                                : BuildDiagnostic::Severity::Error;
        const SourceLocation place = locate(m_lineMap, message.line);
        const bool isPlaced = !place.file.isEmpty();
        diagnostic.file = place.file;
        diagnostic.line = isPlaced ? place.line : message.line;
        diagnostic.text =
            isPlaced ? withFileLines(message.text, place.file, m_lineMap) : message.text;
        if (!isPlaced && message.isWarning)
            diagnostic.file = m_request.activeFileName;
        diagnostic.column = message.column;
        diagnostic.nearText = writtenText(lines.value(message.line - 1), message);
        report(diagnostic);
    }
}
