#include "driver/cross_toolchain.h"

#include "driver/build_messages.h"
#include "driver/cross_build.h"

namespace {

using BuildMessage::text;

// The Debian package that holds the tools of a platform.
QString packageOf(const QString &platform)
{
    return platform == QLatin1String("x86") ? QStringLiteral("g++-mingw-w64-i686")
                                            : QStringLiteral("g++-mingw-w64-x86-64");
}

// One build, with the cache if it serves.
class CachedBuild
{
public:
    CachedBuild(const ToolchainJob &job, const QList<CppTools> &tools, const RuntimeCache &cache,
                BuildListener &listener)
        : m_job(job), m_tools(tools), m_cache(cache), m_listener(listener)
    {}

    ToolchainResult run();

private:
    PreparedRuntime prepare(int &tools);
    ToolchainResult build(CrossBuild::Form form, int tools, const PreparedRuntime &runtime);
    void warn(const QString &message);

    const ToolchainJob &m_job;
    const QList<CppTools> &m_tools;
    const RuntimeCache &m_cache;
    BuildListener &m_listener;
};

// The first tools that can make the runtime are taken.
PreparedRuntime CachedBuild::prepare(int &tools)
{
    PreparedRuntime runtime;
    for (tools = 0; tools < m_tools.size(); ++tools) {
        runtime = m_cache.prepare(m_job.program, m_tools.at(tools), m_job.isDebug, m_listener);
        if (runtime.state != PreparedRuntime::State::Unusable)
            return runtime;
    }
    tools = m_tools.size() - 1;
    return runtime;
}

ToolchainResult CachedBuild::build(CrossBuild::Form form, int tools, const PreparedRuntime &runtime)
{
    return CrossBuild(m_job, m_tools.at(tools), runtime, form, m_listener).run();
}

void CachedBuild::warn(const QString &message)
{
    m_listener.diagnostic({BuildDiagnostic::Severity::Warning, QString(), 0, message});
}

ToolchainResult CachedBuild::run()
{
    using Form = CrossBuild::Form;
    int tools = m_tools.size() - 1;
    PreparedRuntime runtime;
    if (!m_job.splitRuntime || m_job.program.runtimeSections().isEmpty())
        return build(Form::OneFile, tools, runtime);
    runtime = prepare(tools);
    if (runtime.state == PreparedRuntime::State::Ready) {
        ToolchainResult result = build(Form::Units, tools, runtime);
        if (!result.isToolFailure())
            return result;
        if (m_cache.verify(runtime)) {
            // The cut is at fault, or the program: as a whole it tells which.
            return build(Form::WholeProgram, tools, runtime);
        }
        warn(text(BuildMessage::cacheDamaged));
        runtime = prepare(tools);
        if (runtime.state == PreparedRuntime::State::Ready)
            return build(Form::Units, tools, runtime);
    }
    if (runtime.state == PreparedRuntime::State::Cancelled) {
        ToolchainResult result;
        result.cancelled = true;
        return result;
    }
    warn(text(BuildMessage::splitFailed).arg(runtime.error));
    return build(Form::OneFile, tools, PreparedRuntime());
}

} // namespace

CrossToolchain::CrossToolchain(bool fallsBack, const RuntimeCache &cache)
    : m_cache(cache), m_fallsBack(fallsBack)
{}

ToolchainResult CrossToolchain::build(const ToolchainJob &job, BuildListener &listener)
{
    if (m_fallsBack)
        listener.note(text(BuildMessage::usingMinGW));
    const QList<CppTools> tools = m_tools.isEmpty() ? CppTools::installed(job.platform) : m_tools;
    if (tools.isEmpty()) {
        ToolchainResult result;
        result.message = text(BuildMessage::toolMissing)
                             .arg(CppTools::prefixOf(job.platform) + QLatin1String("-g++"),
                                  packageOf(job.platform));
        return result;
    }
    return CachedBuild(job, tools, m_cache, listener).run();
}
