// One build at work: the stages of BuildPipeline, in their order.
#pragma once

#include "driver/build_pipeline.h"
#include "driver/build_record.h"
#include "driver/parse_calls.h"
#include "driver/source_merger.h"

// A stage returns false when the build is over; the outcome then says how.
class BuildPipeline::Run
{
public:
    Run(BuildPipeline &pipeline, const CompilerBuildRequest &request, BuildListener &listener);

    BuildOutcome execute();

private:
    // build_run.cpp
    bool begin(int percent, const char *message);
    bool fail(const QStringList &errors);
    bool endIfErrors();
    void report(const BuildDiagnostic &diagnostic);
    void reportMessages(const QStringList &messages, BuildDiagnostic::Severity severity);
    void reportMessages(const QList<SourceMessage> &messages);

    // build_front.cpp
    bool gather();
    bool checkHandlers();
    bool checkQuotation();
    bool lex();
    bool parse();
    QList<SourceMessage> bracketMessages() const;
    bool checkTree();
    void reportFurtherErrors(const QList<SourceMessage> &told);
    bool generate();
    void registerWindows();
    QStringList windowNames() const;
    bool reuseProgram();
    void keepProgram(const QStringList &warnings);

    // build_skip.cpp
    bool skipSameSource();
    bool skipSameProgram();
    bool storeHashes();
    BuildRecord record() const;
    bool mayKeepExecutable(const BuildRecord &known) const;
    bool endUnchanged(const char *progress, const char *result);
    QByteArray jobText() const;

    // build_back.cpp
    bool finishProgram();
    bool prepareFolder();
    bool compile();
    ToolchainJob toolchainJob() const;
    void copyLibraryFiles();
    void completeOutput();
    bool reportToolchainFailure(const ToolchainResult &result, const QList<BuildDiagnostic> &told);

    BuildPipeline &m_pipeline;
    CompilerBuildRequest m_request;
    BuildListener &m_listener;
    const DebugOptions m_debug; // as the build began, whatever the shell sets meanwhile
    QString m_text;
    SourceLineMap m_lineMap;
    const ParseCalls m_parser;
    std::unique_ptr<Parser::ASTNode> m_tree;
    LibraryContribution m_libraryText;
    GatheredResources m_resources;
    BuildHashes m_hashes;
    QString m_cleanedProgram; // as the next build compares it
    QByteArray m_jobText;
    QStringList m_errors;
    int m_percent = 0;
    BuildOutcome m_outcome;
};
