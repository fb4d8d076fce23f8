#include "driver/toolchain.h"

#include "driver/build_messages.h"
#include "driver/cross_toolchain.h"
#include "driver/mingw_toolchain.h"

using BuildMessage::text;

void noteToolFailure(ToolchainResult &result, const ToolRun &run, const QString &tool,
                     qint64 waited, BuildListener &listener)
{
    switch (run.end) {
    case ToolRun::End::NotStarted:
        result.message = text(BuildMessage::toolNotStarted).arg(tool, run.error);
        break;
    case ToolRun::End::Crashed:
        listener.output(text(BuildMessage::toolExit).arg(run.exitCode));
        result.message = text(BuildMessage::toolCrashed).arg(run.exitCode);
        break;
    case ToolRun::End::Stalled:
        result.message = text(BuildMessage::toolStalled).arg(waited / 1000);
        break;
    case ToolRun::End::Cancelled:
        result.cancelled = true;
        break;
    case ToolRun::End::Finished:
        result.toolOutput = run.output;
        result.message = text(BuildMessage::toolFailed).arg(run.exitCode);
        break;
    }
}

std::unique_ptr<Toolchain> Toolchain::forHost(bool wantsMinGW)
{
#ifdef Q_OS_WIN
    Q_UNUSED(wantsMinGW)
    return std::make_unique<MinGwToolchain>();
#else
    return std::make_unique<CrossToolchain>(!wantsMinGW);
#endif
}
