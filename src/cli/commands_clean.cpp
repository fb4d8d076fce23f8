// vorelc clean.
#include "cli/cli_command.h"
#include "cli/project_input.h"
#include "driver/output_files.h"

int runClean(const CliOptions &options)
{
    const ProjectInput input = readProjectInput(options);
    if (!input.error.isEmpty()) {
        Console::error(input.error);
        return ExitCode::failed;
    }
    const OutputFiles::Removal removal = OutputFiles::clean(input.request.normalized());
    Console::result(QString::number(removal.removed));
    if (removal.failed == 0)
        return ExitCode::done;
    Console::error(QStringLiteral("有 %1 个文件无法删除，请检查权限，或先停止正在运行的程序")
                       .arg(removal.failed));
    return ExitCode::failed;
}
