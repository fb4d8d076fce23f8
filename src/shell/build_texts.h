// The texts of building, running and debugging, in one place.
#pragma once

#include <QString>

namespace BuildText {

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// A build.
constexpr char started[] = "开始编译...";
constexpr char projectPath[] = "项目路径: %1";
constexpr char hasProject[] = "是否有项目: %1";
constexpr char yes[] = "是";
constexpr char no[] = "否";
constexpr char saving[] = "保存项目文件...";
constexpr char nothingToBuild[] = "没有可编译的内容：请先打开一个项目或源文件。";
constexpr char imageEnded[] =
    "已结束占用输出文件的进程: %1（若仍链接失败请检查任务管理器或杀毒软件）";
constexpr char configuration[] = "构建配置: [%1]（输出目录: build/%2/%1）";
constexpr char compiler[] = "编译器: %1";
constexpr char noTemporaryFile[] = "无法创建临时文件";
constexpr char compiling[] = "编译中...";
constexpr char succeeded[] = "编译成功";
constexpr char succeededLine[] = "编译成功！";
constexpr char failed[] = "编译失败";
constexpr char time[] = "编译耗时：%1 ms";
constexpr char failedTime[] = "编译失败，耗时：%1 ms";
constexpr char cancelled[] = "编译已取消";
constexpr char cancelling[] = "正在取消编译...";
constexpr char startingProgram[] = "正在启动程序...";
constexpr char moreIssues[] = "还有 %1 个问题未列出，请先修正以上问题。";

// A build that failed.
constexpr char noToolchainMark[] = "[VORELDESK_NO_TOOLCHAIN]";
constexpr char exitCodeMark[] = "Compilation failed, exit code:";
constexpr char processExitMark[] = "[process_exit]";
constexpr char noToolchain[] =
    "<b>未检测到内置编译工具链</b>（VorelDesk 根目录下无 <code>toolchain</code> "
    "文件夹）。<br><br>① 请打开官网下载 <b>toolchain.zip</b> 并解压到程序根目录，解压后应能看到 "
    "<code>toolchain</code> 文件夹。<br>② 或安装 <b>Visual Studio 2019 / 2022</b> 并勾选「使用 C++ "
    "的桌面开发」。";
constexpr char notCompleted[] = "编译未完成。";
constexpr char unknownError[] = "编译失败：未能识别具体错误。";
constexpr char unknownFailure[] = "编译失败。";
constexpr char seeErrorTab[] = "请查看底部「错误」标签页中的说明。";

// Cleaning.
constexpr char cleaning[] = "清理中...";
constexpr char cleaningFolders[] = "开始清理 build 目录（x86/x64，debug/release）";

// Running and debugging.
constexpr char isBuilding[] = "正在编译中，请等待...";
constexpr char isRunning[] = "当前活动项目已有程序在运行，请先停止或切换到其它项目。";
constexpr char stopped[] = "已停止当前活动项目的运行";
constexpr char nothingRuns[] = "当前活动项目没有正在运行的程序。";
constexpr char ended[] = "程序已结束，退出代码: %1";
constexpr char notStarted[] = "程序未能正常运行（未能启动、被终止或异常退出）。";
constexpr char noBreakpoints[] = "⚡ 调试模式：未设置断点，将以普通模式运行";
constexpr char breakpointTip[] = "💡 提示：在代码编辑器左侧行号区域点击即可设置断点";
constexpr char unchanged[] = "无修改且断点未变化，跳过编译，直接调试运行...";
constexpr char debugStarted[] = "🔴 调试模式启动，共 %1 个断点：";
constexpr char debugFile[] = "   📄 %1 → 行 %2";

} // namespace BuildText
