// The texts of the build driver, in one place.
#pragma once

#include <QCoreApplication>
#include <QString>

namespace BuildMessage {

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

// Progress.
constexpr char parsingSource[] = "解析源代码...";
constexpr char gatheringSource[] = "准备源码与工程输入...";
constexpr char lexing[] = "词法分析...";
constexpr char cachedTokens[] = "使用缓存的词法分析结果...";
constexpr char parsing[] = "语法分析...";
constexpr char checking[] = "语法检查...";
constexpr char generating[] = "正在生成可执行程序的中间代码...";
constexpr char compiling[] = "编译中...";
constexpr char runningToolchain[] = "正在使用所选工具链编译...";
constexpr char callingTool[] = "正在调用本机构建工具...";
constexpr char linking[] = "正在链接程序...";
constexpr char waitingForTool[] = "正在编译...（已等待 %1 秒）";
constexpr char preparingRuntime[] = "首次使用，正在编译运行库（%1/%2）...";
constexpr char preparingHeader[] = "首次使用，正在准备运行库声明...";
constexpr char compiled[] = "编译成功";
constexpr char succeeded[] = "成功: %1";

// Builds that need not be done.
constexpr char sameButFormat[] = "Only whitespace/format changes, skip compilation";
constexpr char sameCode[] = "Code unchanged, skip compilation";
constexpr char sameProgram[] = "生成码未变，跳过编译";
constexpr char skippedFormat[] = "Skip compilation: only whitespace or format changes, use cache";
constexpr char skippedCode[] = "Incremental compilation: code unchanged, use cache";
constexpr char skippedProgram[] = "生成码无变化，使用已有 exe";
constexpr char cachedProgram[] = "★ 使用缓存的生成代码（代码未变化）";
constexpr char newGenerator[] = "★ 编译器版本已更新，清除旧缓存并重新编译";

// Faults of the input.
constexpr char sourceTooLarge[] =
    "合并源码过大（%1 字符，上限约 %2），请删减工程或使用 64 位 VorelDesk。";
constexpr char fileMissing[] = "找不到文件：%1";
constexpr char fileIsFolder[] = "“%1”是文件夹，不是源文件";
constexpr char fileNotRegular[] = "“%1”不是普通文件，无法作为源文件读取";
constexpr char fileUnreadable[] = "无法读取文件：%1（%2）";
constexpr char fileEmpty[] = "源文件是空的：%1";
constexpr char fileTooLarge[] =
    "源文件过大（%1 MB）：%2。单文件上限约 %3 MB；请拆分或误用二进制勿放入 source。";
constexpr char fileUtf16[] = "源文件不是 UTF-8 编码（检测到 UTF-16）：%1。请另存为 UTF-8 后重试。";
constexpr char fileNul[] =
    "第%1行：文件中含有空字符（NUL），不是文本文件或编码有误，请另存为 UTF-8。";
constexpr char fileNotUtf8[] =
    "第%1行：文件不是有效的 UTF-8 文本，请用编辑器另存为 UTF-8 编码后重试。";
constexpr char projectWithoutSource[] = "工程中没有源文件：%1";
constexpr char blockWithoutBrace[] = "第 %1 行：「类型」名称后缺少「{」";
constexpr char textBehindBlock[] = "第 %1 行：「类型」闭合「}」后不应再有内容";
constexpr char duplicateHandler[] =
    "%1(%2): 事件处理函数重复：%3.%4（首次定义在 %5 第 %6 行，请删除重复项）";
constexpr char missingDoubleQuote[] = "第 %1 行：缺少右双引号";
constexpr char missingSingleQuote[] = "第 %1 行：缺少右单引号";
constexpr char noParser[] = "内部错误：语法分析器未初始化";
constexpr char nestedFunction[] = "错误: 不能在函数内部定义函数 '%1'。请将函数定义移到外";
constexpr char unknownWindow[] = "错误: 事件函数“%1”引用的窗口“%2”在项目中不存在。";
constexpr char unknownBackend[] = "界面后端“%1”暂不支持编译，请在工程设置中改用 win32 或 vlwin。";
constexpr char librariesUnavailable[] = "支持库命令不可用：\n";

// Output files.
constexpr char cannotWriteCode[] = "无法写入生成代码文件，请检查输出目录权限与磁盘空间";
constexpr char cannotMakeFolder[] = "无法创建输出目录：%1，请检查目录权限与磁盘空间";
constexpr char cannotReplaceExecutable[] =
    "无法写入可执行文件：%1。若程序正在运行，请先停止它；否则请检查输出目录权限与磁盘空间。";

// Toolchain.
constexpr char usingMinGW[] = "当前系统不是 Windows，已改用 MinGW 交叉编译器代替 MSVC。";
constexpr char cancelled[] = "编译已取消";
constexpr char toolMissing[] = "未找到构建工具 %1。请安装软件包：sudo apt install %2";
constexpr char toolNotStarted[] = "无法启动构建工具：%1（%2）";
constexpr char toolStalled[] = "编译超时（%1 秒），本机构建已中止";
constexpr char toolCrashed[] =
    "编译失败：工具链进程异常结束（退出码 %1）。请检查工程与编译环境后重试。";
constexpr char toolExit[] = "[process_exit] code=%1";
constexpr char toolFailed[] = "本机构建失败，退出代码: %1";
constexpr char noOutput[] = "编译器返回成功但输出文件未生成：%1";
constexpr char splitFailed[] = "运行库缓存不可用（%1），已改为整体编译，耗时较长。";
constexpr char cacheDamaged[] = "运行库缓存已损坏，正在重新生成。";
constexpr char busyCache[] = "另一个编译正在准备运行库，等待其完成...";

} // namespace BuildMessage
