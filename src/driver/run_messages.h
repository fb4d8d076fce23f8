// The texts of running programs, in one place.
#pragma once

#include <QString>

namespace RunMessage {

inline QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

constexpr char notStarted[] = "无法启动程序：%1（%2）";
constexpr char outputLeftOut[] = "…（输出过多，省略了 %1 个字符）\n";
constexpr char noExecutable[] = "找不到可执行文件：%1，请先编译。";
constexpr char noWine[] =
    "未找到 wine，无法运行 Windows 程序。请安装软件包：sudo apt install wine64";
constexpr char noWine32[] =
    "未找到 32 位的 wine，无法运行 x86 程序。请安装软件包：sudo dpkg --add-architecture i386 && "
    "sudo apt update && sudo apt install wine32";
constexpr char noDisplay[] =
    "没有可用的显示（DISPLAY 未设置），也未找到 Xvfb。请安装软件包：sudo apt install xvfb";
constexpr char displayFailed[] = "无法启动虚拟显示 Xvfb：%1";
constexpr char preparingPrefix[] = "首次运行：正在准备运行环境，约需十秒...";
constexpr char prefixFailed[] = "无法准备运行环境：%1（%2）";
constexpr char prefixForeign[] =
    "运行环境目录不属于当前用户：%1，请用 VOREL_WINEPREFIX 指定其他目录。";

} // namespace RunMessage
