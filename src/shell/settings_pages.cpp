#include "shell/settings_pages.h"

#include <QFontDatabase>

using namespace SettingRows;

namespace {

// In the whole range of the setting.
Number number(const Key<int> &key, const char *unit)
{
    return {&key, key.min, key.max, unit};
}

} // namespace

QVector<SettingRow> SettingsPages::editorRows()
{
    using namespace Setting::Editor;
    return {
        {QStringLiteral("字体与缩进"), Heading{}},
        {QStringLiteral("字体:"), FontFamily{&fontFamily, QString()}},
        {QStringLiteral("字号:"), number(fontSize, "磅")},
        {QStringLiteral("制表符宽度:"), number(tabWidth, "个字符")},
        {QStringLiteral("编写代码"), Heading{}},
        {QStringLiteral("代码补全模糊匹配（关闭则精确匹配）"), Check{&fuzzyMatch}},
        {QStringLiteral("新建事件处理函数时写入注释说明"), Check{&generateEventComments}},
        {QStringLiteral("背景"), Heading{}},
        {QStringLiteral("背景图片:"), Picture{&backgroundImage}},
        {QStringLiteral("图片透明度:"), Percent{&backgroundOpacity}},
    };
}

QVector<SettingRow> SettingsPages::compilerRows()
{
    using namespace Setting::Compiler;
    const QString systemFont = QFontDatabase::systemFont(QFontDatabase::FixedFont).family();
    return {
        {QStringLiteral("编译器"), Heading{}},
        {QStringLiteral("默认编译器:"),
         Choice{&defaultCompiler, {QStringLiteral("MSVC"), QStringLiteral("MinGW")}}},
        {QStringLiteral("MSVC 路径:"), Folder{&msvcPath}, true},
        {QStringLiteral("默认平台:"),
         Choice{&defaultArch, {QStringLiteral("x64 (64位)"), QStringLiteral("x86 (32位)")}}},
        {QStringLiteral("编译配置:"),
         Choice{&buildConfig, {QStringLiteral("Debug"), QStringLiteral("Release")}}},
        {QStringLiteral("静态链接运行库"), Check{&staticLink}},
        {QStringLiteral("错误信息"), Heading{}},
        {QStringLiteral("用中文显示错误信息"), Check{&chineseError}},
        {QStringLiteral("显示警告"), Check{&showWarnings}},
        {QStringLiteral("工具链错误:"),
         Index{&toolchainErrorMode,
               {QStringLiteral("自动（调试编译用 MSVC 原文，否则中文说明）"),
                QStringLiteral("始终中文说明"), QStringLiteral("始终 MSVC/MinGW 原文")}}},
        {QStringLiteral("输出面板"), Heading{}},
        {QStringLiteral("字体:"), FontFamily{&outputFontFamily, systemFont}},
        {QStringLiteral("字号:"), number(outputFontSize, "磅")},
    };
}

QVector<SettingRow> SettingsPages::generalRows()
{
    using namespace Setting::General;
    return {
        {QStringLiteral("保存"), Heading{}},
        {QStringLiteral("自动保存所有文件"), Check{&autoSaveEnabled}},
        {QStringLiteral("自动保存间隔:"), Number{&autoSaveInterval, 30, 3600, "秒"}},
        {QStringLiteral("新项目的文件夹:"), Folder{&Setting::Project::defaultPath}},
        {QStringLiteral("诊断"), Heading{}},
        {QStringLiteral("将错误记录到日志文件"), Check{&logErrorsToFile}},
        {QStringLiteral("文件关联（只在 Windows 上可用）"), Heading{}},
        {QStringLiteral("用 VorelDesk 打开 .vlproj 项目"), Check{&assocVlproj}, true},
        {QStringLiteral("用 VorelDesk 打开 .vc 源文件"), Check{&assocVc}, true},
        {QStringLiteral("用 VorelDesk 打开 .vui 窗口"), Check{&assocVui}, true},
    };
}
