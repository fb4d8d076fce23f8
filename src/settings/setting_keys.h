// Every setting with its group, key, default and range. A new setting is one line here.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <limits>

// A setting of the type T; `fallback` stands where the file holds no value or none that is valid.
// All texts are UTF-8.
template <typename T>
struct Key;

template <>
struct Key<bool>
{
    const char *group;
    const char *name;
    bool fallback;
};

template <>
struct Key<int>
{
    const char *group;
    const char *name;
    int fallback;
    int min = std::numeric_limits<int>::min();
    int max = std::numeric_limits<int>::max();
};

template <>
struct Key<QString>
{
    const char *group;
    const char *name;
    const char *fallback;
    const char *choices = nullptr;      // the valid texts with ";" between; null: any text
    const Key<QString> *like = nullptr; // a setting whose value is the default of this one
    QString (*computed)() = nullptr;    // a default that depends on the machine
};

// Never has a default but an empty one.
template <>
struct Key<QByteArray>
{
    const char *group;
    const char *name;
};

// Never has a default but an empty one. An empty group: the key stands outside of all groups.
template <>
struct Key<QStringList>
{
    const char *group;
    const char *name;
};

namespace Setting {

// The user's documents folder + "/Vorel_sources".
QString defaultProjectFolder();

namespace Editor {
inline constexpr Key<QString> fontFamily{"Editor", "fontFamily", "Consolas"};
inline constexpr Key<int> fontSize{"Editor", "fontSize", 12, 6, 72}; // points
inline constexpr Key<int> tabWidth{"Editor", "tabWidth", 4, 1, 16};  // characters
// Completion matches fuzzily; off: by exact prefix.
inline constexpr Key<bool> fuzzyMatch{"Editor", "fuzzyMatch", false};
// A new event handler receives its comment block.
inline constexpr Key<bool> generateEventComments{"Editor", "generateEventComments", false};
// What the next start applies, and what is in use.
inline constexpr Key<QString> defaultColorScheme{"Editor", "defaultColorScheme", "VS Code 暗色"};
inline constexpr Key<QString> colorScheme{"Editor", "colorScheme", "", nullptr,
                                          &defaultColorScheme};
// A picture under the editor's text; empty: none.
inline constexpr Key<QString> backgroundImage{"Editor", "editorBackgroundImage", ""};
inline constexpr Key<int> backgroundOpacity{"Editor", "editorBackgroundOpacity", 40, 0, 100};
} // namespace Editor

namespace Compiler {
inline constexpr Key<bool> chineseError{"Compiler", "chineseError", true};
inline constexpr Key<int> toolchainErrorMode{"Compiler", "toolchainErrorMode", 0, 0};
inline constexpr Key<QString> defaultCompiler{"Compiler", "defaultCompiler", "MSVC", "MSVC;MinGW"};
inline constexpr Key<QString> msvcPath{"Compiler", "msvcPath", ""};
inline constexpr Key<bool> showWarnings{"Compiler", "showWarnings", true};
inline constexpr Key<bool> optimizeBuild{"Compiler", "optimizeBuild", false};
// Empty: the system's fixed font.
inline constexpr Key<QString> outputFontFamily{"Compiler", "outputFontFamily", ""};
inline constexpr Key<int> outputFontSize{"Compiler", "outputFontSize", 10, 6, 72}; // points
inline constexpr Key<QString> buildConfig{"Compiler", "buildConfig", "release", "debug;release"};
inline constexpr Key<bool> staticLink{"Compiler", "staticLink", false};
// What the tool bar and a new project start with.
inline constexpr Key<QString> defaultArch{"Compiler", "defaultArch", "x64", "x64;x86"};
} // namespace Compiler

namespace General {
inline constexpr Key<bool> autoSaveEnabled{"General", "autoSaveEnabled", false};
inline constexpr Key<int> autoSaveInterval{"General", "autoSaveInterval", 300, 1, 86400}; // seconds
inline constexpr Key<bool> logErrorsToFile{"General", "logErrorsToFile", true};
// The file associations that the user wants.
inline constexpr Key<bool> assocVc{"General", "assocVc", false};
inline constexpr Key<bool> assocVui{"General", "assocVui", false};
inline constexpr Key<bool> assocVlproj{"General", "assocVlproj", false};
// The version whose changelog has been shown.
inline constexpr Key<QString> changelogWelcomeShown{"General", "changelogWelcomeShown", ""};
} // namespace General

namespace Project {
// The folder in which a new project starts.
inline constexpr Key<QString> defaultPath{"Project", "defaultPath", "",
                                          nullptr,   nullptr,       defaultProjectFolder};
} // namespace Project

namespace MainWindow {
inline constexpr Key<QByteArray> geometry{"MainWindow", "geometry"};
inline constexpr Key<QByteArray> state{"MainWindow", "state"};
// `state` is of use only with the layout of docks it was saved with.
inline constexpr Key<int> dockLayoutVersion{"MainWindow", "dockLayoutVersion", 0, 0};
inline constexpr Key<int> windowWidth{"MainWindow", "windowWidth", 1280, 320, 32767};
inline constexpr Key<int> windowHeight{"MainWindow", "windowHeight", 800, 240, 32767};
} // namespace MainWindow

inline constexpr Key<QStringList> recentFiles{"RecentFiles", "files"};
inline constexpr Key<QStringList> recentProjects{"", "RecentProjects"};

// The colours of the editor, in the order of `colors` below.
enum class Color
{
    Keyword,
    Function,
    String,
    Number,
    Comment,
    Constant,
    Component,
    Variable,
    UserFunction,
    MemberEvent,
    Operator,
    Background,
    Text,
    CurrentLine,
    BracketMatch,
    LineNumber,
    CompletionCommand,
    CompletionMethod,
    CompletionVariable,
    CompletionGlobalVariable,
    CompletionConstant,
    CompletionGlobalConstant,
    Count,
};

// A colour of the group "Editor"; values are "#rrggbb".
struct ColorKey
{
    Color color;
    const char *name;
    const char *button; // its name in colour tables
    const char *fallback;
    const char *label; // how a dialog calls it
};

inline constexpr ColorKey colors[] = {
    {Color::Keyword, "color_keyword", "keyword", "#569CD6", "关键字:"},
    {Color::Function, "color_function", "function", "#DCDCAA", "内置命令:"},
    {Color::String, "color_string", "string", "#CE9178", "字符串:"},
    {Color::Number, "color_number", "number", "#B5CEA8", "数字:"},
    {Color::Comment, "color_comment", "comment", "#6A9955", "注释:"},
    {Color::Constant, "color_constant", "constant", "#BD93F9", "常量:"},
    {Color::Component, "color_component", "component", "#9CDCFE", "组件:"},
    {Color::Variable, "color_variable", "variable", "#9CDCFE", "变量:"},
    {Color::UserFunction, "color_userFunction", "userFunction", "#C586C0", "自定义函数:"},
    {Color::MemberEvent, "color_memberEvent", "memberEvent", "#D7BA7D", "事件/成员:"},
    {Color::Operator, "color_operator", "operator", "#D4D4D4", "运算符:"},
    {Color::Background, "color_background", "background", "#1E1E1E", "背景色:"},
    {Color::Text, "color_text", "text", "#D4D4D4", "文本颜色:"},
    {Color::CurrentLine, "color_currentLine", "currentLine", "#282828", "当前行高亮:"},
    {Color::BracketMatch, "color_bracketMatch", "bracketMatch", "#FFD700", "括号匹配:"},
    {Color::LineNumber, "color_lineNumber", "lineNumber", "#858585", "行号颜色:"},
    {Color::CompletionCommand, "completion_color_command", "completionCommand", "#569CD6",
     "命令/函数:"},
    {Color::CompletionMethod, "completion_color_method", "completionMethod", "#78DCE8", "方法:"},
    {Color::CompletionVariable, "completion_color_variable", "completionVariable", "#9CDCFE",
     "变量:"},
    {Color::CompletionGlobalVariable, "completion_color_global_variable",
     "completionGlobalVariable", "#4FC1FF", "全局变量(#):"},
    {Color::CompletionConstant, "completion_color_constant", "completionConstant", "#CE9178",
     "常量:"},
    {Color::CompletionGlobalConstant, "completion_color_global_constant",
     "completionGlobalConstant", "#82E0C7", "全局常量(#):"},
};

inline constexpr int colorCount = static_cast<int>(Color::Count);
static_assert(sizeof(colors) / sizeof(colors[0]) == std::size_t(colorCount));

constexpr const ColorKey &colorKey(Color color)
{
    return colors[static_cast<int>(color)];
}

} // namespace Setting
