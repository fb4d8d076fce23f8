#include "codegen/generator_messages.h"

namespace GeneratorMessage {

const Text initialValueMissing{"第 %1 行：变量「%2」的初始化表达式缺失或无法解析。",
                               "变量「%1」的初始化表达式缺失或无法解析。"};
const Text arrayFromLiteral{"第%1行 %2 %3 不能赋值给 %4 %5 = %6", "%1 %2 不能赋值给 %3 %4 = %5"};
const Text dimensionsDiffer{"第 %1 行：数组「%2」声明为 %3，与初始化维度（%4）不一致。",
                            "数组「%1」声明为 %2，与初始化维度（%3）不一致。"};
const Text arrayWithoutValue{"第 %1 行：%2「%3」缺少初始化表达式。", "%1「%2」缺少初始化表达式。"};
const Text typeMismatch{"第%1行 %2 %3 类型不匹配 %4", "%1 %2 类型不匹配 %3"};
const Text undefinedCommand{"第%1行：未定义的命令或函数「%2」。\n%3",
                            "未定义的命令或函数「%1」。\n%2"};
const Text emptyArgument{"第%1行：%2() 第%3个参数不能为空：%4", "%1() 第%2个参数不能为空：%3"};
const Text missingArguments{"第%1行：%2() 缺少参数：%3", "%1() 缺少参数：%2"};
const Text tooManyArguments{"第%1行：%2() 参数过多：最多 %3 个，这里写了 %4 个",
                            "%1() 参数过多：最多 %2 个，这里写了 %3 个"};
const Text unknownProperty{"第%1行：「%2」（%3）没有属性「%4」。可用的名称如：%5",
                           "「%1」（%2）没有属性「%3」。可用的名称如：%4"};
const Text layoutHasNoWindow{
    "第%1行：「%2」是%3，程序运行时它只负责摆放里面的组件，没有可以使用的属性和方法。",
    "「%1」是%2，程序运行时它只负责摆放里面的组件，没有可以使用的属性和方法。"};
const Text propertyOnlyRead{"第%1行：属性「%2.%3」只能读取，不能赋值。",
                            "属性「%1.%2」只能读取，不能赋值。"};
const Text propertyOnlyWritten{"第%1行：属性「%2.%3」只能赋值，不能读取。",
                               "属性「%1.%2」只能赋值，不能读取。"};
const Text memberType{"第%1行：%2 需要“%3”类型的值，这里是“%4”。",
                      "%1 需要“%2”类型的值，这里是“%3”。"};
const Text unknownEvent{"第%1行：「%2」（%3）没有事件「%4」。可用的事件：%5",
                        "「%1」（%2）没有事件「%3」。可用的事件：%4"};
const Text tooManyEventParameters{"第%1行：事件函数「%2」最多有 %3 个参数，这里写了 %4 个。",
                                  "事件函数「%1」最多有 %2 个参数，这里写了 %3 个。"};
const Text balloonWithoutText{"第 %1 行：显示气球提示() 至少需要「内容」参数。",
                              "显示气球提示() 至少需要「内容」参数。"};
const Text balloonEmptyFirst{
    "第 %1 行：显示气球提示() 第一个参数为空时应省略写或填正文，或用单参数格式。",
    "显示气球提示() 第一个参数不可为空。"};
const Text argumentType{
    "第%1行：命令「%2」的第%3个参数类型不匹配\n 💡 期望类型：%4\n 💡 实际类型：%5\n 💡 %6",
    "命令「%1」的第%2个参数类型不匹配\n 💡 期望类型：%3\n 💡 实际类型：%4\n 💡 %5"};
const Text unknownMethod{
    "第 %1 行：类型「%2」中不存在成员方法「%3()」。请检查拼写或查阅对应支持库文档。",
    "类型「%1」中不存在成员方法「%2()」。请检查拼写或查阅对应支持库文档。"};
const Text emptyMethodArgument{"第 %1 行：%2.%3() 第 %4 个必填参数「%5」不能为空。",
                               "%1.%2() 第 %3 个必填参数「%4」不能为空。"};
const Text missingMethodArguments{"第 %1 行：%2.%3() 缺少参数：%4", "%1.%2() 缺少参数：%3"};
const Text timeCalcArguments{"第%1行 时间计算() 参数不能为空，至少需要：日期时间、数量",
                             "时间计算() 参数不能为空，至少需要：日期时间、数量"};
const Text noResultPrinted{"第%1行：\"%2()\" 命令无返回值，不能作为 输出 的参数",
                           "\"%1()\" 命令无返回值，不能作为 输出 的参数"};
const Text noVariableToChange{
    "第%1行：%2() 要改变的数组必须是变量，不能是算式或命令的结果。请先存入一个数组变量。",
    "%1() 要改变的数组必须是变量，不能是算式或命令的结果。请先存入一个数组变量。"};
const Text breakOutsideLoop{
    "第%1行：“跳出”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以跳出的循环。",
    "“跳出”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以跳出的循环。"};
const Text continueOutsideLoop{
    "第%1行：“继续”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以继续的循环。",
    "“继续”只能写在循环里（循环、计次循环、当、遍历）。这里没有可以继续的循环。"};
const Text missingCondition{"第%1行：“%2”后面的括号里缺少条件。", "“%1”后面的括号里缺少条件。"};
const Text missingLoopCount{"第%1行：“循环”后面的括号里缺少次数或条件。",
                            "“循环”后面的括号里缺少次数或条件。"};
const Text valueFromVoidFunction{
    "第%1行：函数「%2」没有写返回类型，不能返回值。请在参数括号后写上类型，例如：函数 %2() 整数 {",
    "函数「%1」没有写返回类型，不能返回值。请在参数括号后写上类型，例如：函数 %1() 整数 {"};
const Text functionDefinedTwice{"第%1行：函数「%2」重复定义（首次定义在第 %3 行）。",
                                "函数「%1」重复定义（首次定义在第 %2 行）。"};
const Text classNamesCollide{"第%1行：类「%2」与类「%3」的名称只差一个“类”字，请改用不同的名称。",
                             "类「%1」与类「%2」的名称只差一个“类”字，请改用不同的名称。"};
const Text classDefinedTwice{"第%1行：类「%2」重复定义（首次定义在第 %3 行）。",
                             "类「%1」重复定义（首次定义在第 %2 行）。"};
const Text globalDefinedTwice{"第%1行：全局变量「%2」重复定义（首次定义在第 %3 行）。",
                              "全局变量「%1」重复定义（首次定义在第 %2 行）。"};

const Text classUnavailable{
    "第%1行：支持库命令不可用：\n类型「%2」所在的支持库没有安装，不能声明变量「%3」。",
    "支持库命令不可用：\n类型「%1」所在的支持库没有安装，不能声明变量「%2」。"};

const Text commandUnavailable{"第%1行：命令「%2」在这个版本里还不能使用。",
                              "命令「%1」在这个版本里还不能使用。"};

const Text incompleteExpression{"第%1行：表达式不完整：“%2”后面缺少内容。",
                                "表达式不完整：“%1”后面缺少内容。"};

QString format(const Text &text, int line, const QStringList &arguments)
{
    const QString pattern = QString::fromUtf8(line > 0 ? text.withLine : text.withoutLine);
    const QStringList values =
        line > 0 ? QStringList(QString::number(line)) + arguments : arguments;
    // One pass: an argument may itself hold "%1".
    QString result;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        const int index = c == QLatin1Char('%') && i + 1 < pattern.size()
                              ? pattern.at(i + 1).digitValue() - 1
                              : -1;
        if (index >= 0 && index < values.size()) {
            result += values.at(index);
            ++i;
        } else {
            result += c;
        }
    }
    return result;
}

} // namespace GeneratorMessage
