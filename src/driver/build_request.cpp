#include "driver/build_request.h"

#include "driver/build_listener.h"

CompilerBuildRequest CompilerBuildRequest::normalized() const
{
    CompilerBuildRequest request = *this;
    const QString config = buildConfig.trimmed().toLower();
    request.buildConfig =
        config == QLatin1String("debug") ? QStringLiteral("debug") : QStringLiteral("release");
    request.platform = platform.trimmed().toLower() == QLatin1String("x86") ? QStringLiteral("x86")
                                                                            : QStringLiteral("x64");
    if (uiBackend.isEmpty())
        request.uiBackend = QStringLiteral("win32");
    if (beautificationScheme < 0 || beautificationScheme > 5)
        request.beautificationScheme = 3;
    return request;
}

QString CompilerBuildRequest::effectiveCompiler() const
{
    if (!compilerType.isEmpty())
        return compilerType;
    return defaultCompiler.isEmpty() ? QStringLiteral("MSVC") : defaultCompiler;
}

bool CompilerBuildRequest::wantsMinGW() const
{
    return effectiveCompiler().compare(QLatin1String("MinGW"), Qt::CaseInsensitive) == 0;
}

void registerBuildMetaTypes()
{
    qRegisterMetaType<CompilerWindowBuildSpec>("CompilerWindowBuildSpec");
    qRegisterMetaType<CompilerBuildRequest>("CompilerBuildRequest");
    qRegisterMetaType<CompilerFastSkipSnapshot>("CompilerFastSkipSnapshot");
    qRegisterMetaType<CompilerDebugBreakpointsMap>("CompilerDebugBreakpointsMap");
    qRegisterMetaType<BuildDiagnostic>("BuildDiagnostic");
}
