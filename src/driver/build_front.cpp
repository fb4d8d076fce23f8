// The stages of a build up to the generated program.
#include "driver/build_run.h"

#include "driver/build_messages.h"
#include "driver/message_location.h"
#include "driver/output_files.h"
#include "driver/source_checks.h"
#include "driver/source_text.h"
#include "driver/structure_checks.h"
#include "frontend/bracket_check.h"
#include "frontend/header_check.h"
#include "frontend/program_context.h"
#include "frontend/semantic_checks.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

using BuildMessage::text;
using Severity = BuildDiagnostic::Severity;

namespace {

// What its globals are called elsewhere begins with "#".
const QString constantsFile = QStringLiteral("constants.vc");

// For whoever looks for the reason of a strange build.
void writeTrace(const CompilerBuildRequest &request)
{
    if (qEnvironmentVariableIsEmpty("VL_IDE_ENABLE_DEBUG_TRACE"))
        return;
    const QString folder = request.hasProject ? request.projectPath : QDir::tempPath();
    const QString trace = QStringLiteral("=== Compiler compile() ===\nm_parseHelper:nullptr\n"
                                         "m_projectPath:%1\n")
                              .arg(request.projectPath);
    OutputFiles::write(folder + QLatin1String("/vl_debug.txt"), trace.toUtf8());
}

bool isNativeBackend(const QString &backend)
{
    return backend == QLatin1String("win32") || backend == QLatin1String("vlwin");
}

} // namespace

bool BuildPipeline::Run::gather()
{
    if (!begin(10, BuildMessage::parsingSource) || !begin(14, BuildMessage::gatheringSource))
        return false;
    m_text = m_request.sourceText;
    m_lineMap = m_request.lineMap;
    if (m_text.isEmpty()) {
        MergedSource merged;
        if (m_request.hasProject) {
            merged = mergeProject(m_request.projectPath);
        } else {
            const QString name = m_request.activeFileName.isEmpty() ? m_request.sourceFile
                                                                    : m_request.activeFileName;
            merged = mergeSingleFile(m_request.sourceFile, name);
        }
        for (const BuildDiagnostic &error : qAsConst(merged.errors))
            report(error);
        m_text = merged.text;
        m_lineMap = merged.lineMap;
    }
    if (m_text.size() > maxMergedChars) {
        report({Severity::Error, QString(), 0,
                text(BuildMessage::sourceTooLarge).arg(m_text.size()).arg(maxMergedChars)});
    }
    return endIfErrors();
}

bool BuildPipeline::Run::checkHandlers()
{
    const QString firstFile = m_request.hasProject || m_request.activeFileName.isEmpty()
                                  ? QStringLiteral("main.vc")
                                  : m_request.activeFileName;
    const QStringList duplicates = findDuplicateHandlers(m_text, firstFile, m_lineMap);
    for (const QString &duplicate : duplicates) {
        m_listener.output(duplicate);
        report({Severity::Error, QString(), 0, duplicate});
    }
    return endIfErrors();
}

bool BuildPipeline::Run::checkQuotation()
{
    if (!begin(20, BuildMessage::lexing))
        return false;
    const SourceMessage unclosed = checkQuotes(m_text);
    if (unclosed.line > 0)
        reportMessages({unclosed});
    return endIfErrors();
}

bool BuildPipeline::Run::lex()
{
    const bool known = !m_pipeline.m_tokens.isEmpty() && m_pipeline.m_lexedText == m_text;
    if (known)
        return begin(25, BuildMessage::cachedTokens);
    m_pipeline.m_tokens = Lexer(m_text).tokenize();
    m_pipeline.m_lexedText = m_text;
    return true;
}

// A bracket has its partner in the same file, so each file is checked by itself. The parser's
// own messages about brackets tell where it gave up, these where the mistake is.
QList<SourceMessage> BuildPipeline::Run::bracketMessages() const
{
    const QList<Lexer::Token> &tokens = m_pipeline.m_tokens;
    if (m_lineMap.isEmpty())
        return checkBrackets(tokens);
    QList<SourceMessage> messages;
    if (bracketsMatch(tokens))
        return messages;
    QList<Lexer::Token> ofFile;
    auto token = tokens.cbegin();
    for (auto place = m_lineMap.cbegin(); place != m_lineMap.cend(); ++place) {
        while (token->type != Lexer::EndOfFile && token->line <= place.key())
            ofFile.append(*token++);
        const auto next = std::next(place);
        if (next != m_lineMap.cend() && next->file == place->file)
            continue;
        ofFile.append({Lexer::EndOfFile, QString(), place.key(), 1});
        messages += checkBrackets(ofFile);
        ofFile.clear();
    }
    return messages;
}

bool BuildPipeline::Run::parse()
{
    if (!begin(30, BuildMessage::parsing))
        return false;
    writeTrace(m_request);
    if (!m_parser.isValid()) {
        report({Severity::Error, QString(), 0, text(BuildMessage::noParser)});
        return endIfErrors();
    }
    // Classes of the last build may be gone; those of .vpp files are known wherever they are used.
    m_parser.reset(m_request.chineseError);
    if (m_request.hasProject)
        m_parser.preScan(m_request.projectPath);
    m_tree = m_parser.parse(m_pipeline.m_tokens);
    const QList<SourceMessage> messages = m_parser.messages();
    if (!messages.isEmpty()) {
        // Ahead of what the parser met: what made it stumble.
        QList<SourceMessage> causes = bracketMessages();
        if (causes.isEmpty())
            causes = checkHeaders(m_pipeline.m_tokens);
        reportMessages(causes);
    }
    reportMessages(messages);
    return endIfErrors();
}

QStringList BuildPipeline::Run::windowNames() const
{
    QStringList names;
    for (const CompilerWindowBuildSpec &window : m_request.windowSpecs) {
        names << window.name;
        for (const VL::DesignComponent &component : window.components)
            names << component.name();
    }
    return names;
}

bool BuildPipeline::Run::checkTree()
{
    reportMessages(checkStructure(m_tree.get(), windowNames()));
    if (!endIfErrors() || !begin(45, BuildMessage::checking))
        return false;
    if (!isNativeBackend(m_request.uiBackend))
        return true; // refused in a moment, with a better reason
    registerWindows();
    const auto isConstantsLine = [this](int line) {
        return QFileInfo(locate(m_lineMap, line).file).fileName() == constantsFile;
    };
    const auto context = m_pipeline.generator().programContext(isConstantsLine);
    const QList<SourceMessage> messages =
        checkSemantics(m_tree.get(), m_parser.classRegistry(), *context);
    reportMessages(messages);
    if (!m_errors.isEmpty())
        reportFurtherErrors(messages);
    return endIfErrors();
}

// What the generator alone would refuse, so that one build tells all; on lines of which nothing has
// been said.
void BuildPipeline::Run::reportFurtherErrors(const QList<SourceMessage> &told)
{
    QSet<int> toldLines;
    for (const SourceMessage &message : told) {
        if (!message.isWarning)
            toldLines.insert(message.line);
    }
    CodeGenerator &generator = m_pipeline.generator();
    generator.setClassRegistry(m_parser.classRegistry());
    generator.generate(m_tree.get());
    QStringList further;
    const QStringList errors = generator.errors();
    for (const QString &error : errors) {
        const int line = lineOfMessage(error);
        if (line > 0 && !toldLines.contains(line))
            further << error;
    }
    reportMessages(further, Severity::Error);
}

void BuildPipeline::Run::registerWindows()
{
    CodeGenerator &generator = m_pipeline.generator();
    generator.clear();
    generator.setUiBackend(m_request.uiBackend);
    generator.setUseBeautification(m_request.useBeautification);
    generator.setBeautificationScheme(m_request.beautificationScheme);
    generator.setMarksEveryStatement(m_debug.stopsAnywhere());
    bool any = false;
    for (const CompilerWindowBuildSpec &window : m_request.windowSpecs) {
        any = generator.registerWindow(window.name, window.filePath, window.components,
                                       window.isMain, window.isStartup) ||
              any;
    }
    if (any)
        return;
    if (m_request.hasProject || m_request.components.isEmpty())
        generator.registerImplicitWindow();
    else
        generator.setComponents(m_request.components);
}

bool BuildPipeline::Run::generate()
{
    if (!begin(50, BuildMessage::generating))
        return false;
    if (!isNativeBackend(m_request.uiBackend)) {
        report({Severity::Error, QString(), 0,
                text(BuildMessage::unknownBackend).arg(m_request.uiBackend)});
        return endIfErrors();
    }
    if (reuseProgram())
        return true;
    CodeGenerator &generator = m_pipeline.generator();
    generator.setClassRegistry(m_parser.classRegistry());
    m_outcome.program = generator.generate(m_tree.get());
    // Asked for now: the next generation starts its own list.
    const QStringList errors = generator.errors();
    const QStringList warnings = generator.warnings();
    const bool declaresClasses =
        m_outcome.program.programContains(QStringLiteral("struct VL_User_"));
    insertUserClasses(m_outcome.program,
                      declaresClasses ? QString() : generator.generateUserClasses(m_tree.get()));
    reportMessages(warnings, Severity::Warning);
    reportMessages(errors, Severity::Error);
    if (!endIfErrors())
        return false;
    keepProgram(warnings);
    return true;
}

// The program of the last build, if nothing has changed since; a build that writes no executable
// has no digest.
bool BuildPipeline::Run::reuseProgram()
{
    const KeptProgram &kept = m_pipeline.m_kept;
    if (m_hashes.digest.isEmpty() || kept.digest != m_hashes.digest || kept.source != m_text)
        return false;
    m_listener.output(text(BuildMessage::cachedProgram));
    m_outcome.program = kept.program;
    reportMessages(kept.warnings, Severity::Warning);
    return true;
}

void BuildPipeline::Run::keepProgram(const QStringList &warnings)
{
    if (!m_hashes.digest.isEmpty())
        m_pipeline.m_kept = {m_text, m_hashes.digest, m_outcome.program, warnings};
}
