// The tables behind parser_messages.h and the frames around a sentence.
#include "frontend/parser_messages.h"

#include "frontend/parser_limits.h"

namespace {

struct Sentence
{
    ParserMessage message;
    const char16_t *text;
};

constexpr Sentence sentences[] = {
    {ParserMessage::ExpectedOpenParen, u"Expected '('"},
    {ParserMessage::ExpectedCloseParen, u"Expected ')'"},
    {ParserMessage::ExpectedOpenBrace, u"Expected '{'"},
    {ParserMessage::ExpectedCloseBrace, u"Expected '}'"},
    {ParserMessage::ExpectedCloseBracket, u"Expected ']'"},
    {ParserMessage::ExpectedColon, u"Expected ':'"},
    {ParserMessage::MissingOpenParen, u"期望 '('"},
    {ParserMessage::MissingCloseParen, u"期望 ')'"},
    {ParserMessage::MissingOpenBrace, u"期望 '{'"},
    {ParserMessage::MissingCloseBrace, u"期望 '}'"},
    {ParserMessage::MissingCloseBracket, u"期望 ']'"},
    {ParserMessage::MissingSemicolon, u"期望 ';'"},
    {ParserMessage::MissingComma, u"期望 ','"},
    {ParserMessage::MissingVariableName, u"期望变量名"},
    {ParserMessage::MissingIndexVariable, u"期望索引变量名"},
    {ParserMessage::MissingElementVariable, u"期望元素变量名"},
    {ParserMessage::MissingArrayName, u"期望数组名"},
    {ParserMessage::MissingParameterName, u"期望参数名"},
    {ParserMessage::MissingClassName, u"期望类名"},
    {ParserMessage::MissingPropertyType, u"期望属性类型"},
    {ParserMessage::MissingPropertyName, u"期望属性名"},
    {ParserMessage::MissingMethodName, u"期望方法名"},
    {ParserMessage::MissingInstanceName, u"类实例声明需要变量名"},
    {ParserMessage::NotAClassMember, u"类体内应为 属性 或 方法"},
    {ParserMessage::KeywordAsVariable, u"'%1' 是关键字，不可以作为变量名使用"},
    {ParserMessage::BracketAfterVariable,
     u"第 %1 行：%2 类型不能使用 [] ，正确的数组定义语法是：数组 %3[] = [...]"},
    {ParserMessage::CommaRefused, u"此处不支持用逗号一次声明多个变量，请拆成多条声明。"},
    {ParserMessage::GlobalUnknownClass,
     u"“全局” 后应为变量声明或类实例声明（如：全局 整数 计数 / 全局 定时器类 时钟）"},
    {ParserMessage::GlobalNoDeclaration, u"“全局” 后应为变量声明或类实例声明"},
    {ParserMessage::FlowAtFileScope, u"文件作用域不允许流程控制语句，请将 \"%1\" 移到函数体内。"},
    {ParserMessage::JumpAtFileScope, u"文件作用域不允许 \"%1\"，请将语句移到函数体内。"},
    {ParserMessage::NameAtFileScope, u"文件作用域只允许声明（变量、函数、类实例等），不允许可执行语"
                                     u"句。请将 \"%1\" 等语句移到函数体内。"},
    {ParserMessage::BlockAtFileScope, u"文件作用域不允许裸代码块 { }，请将代码放在函数体内。"},
    {ParserMessage::TokenAtFileScope, u"文件作用域只允许声明，不允许可执行语句（如赋值、函数调用等"
                                      u"）。请将语句移到函数体内。当前 token: \"%1\""},
    {ParserMessage::Stalled, u"解析器检测到死循环，在token: %1"},
    {ParserMessage::PositionOutside, u"解析位置越界 pos=%1 size=%2"},
    {ParserMessage::NoFunctionToken, u"函数声明处无 token"},
    {ParserMessage::VariadicParameter,
     u"第 %1 行：自定义函数已不支持可变参数(...)，请移除 \"...\" 或改用可选参数 [类型 参数名]。"},
    {ParserMessage::MissingParameterComma,
     u"第 %1 行：函数参数之间必须用逗号分隔，例如：整数 横坐标, 整数 纵坐标"},
    {ParserMessage::OptionalNotClosed, u"可选参数缺少 ]"},
    {ParserMessage::UnparsableToken, u"无法解析表达式，跳过token: %1"},
    {ParserMessage::LoneIdentifier,
     u"语法错误 - 无效的语句\n  └─ 在 \"%1\" 附近\n  💡 "
     u"提示：单独的标识符不是有效的语句，请检查是否缺少赋值、函数调用等操作"},
    {ParserMessage::AssignmentInCondition, u"条件判断中检测到赋值表达式。比较需用 ==，赋值用 ="},
    {ParserMessage::NestingTooDeep, u"表达式或语句嵌套过深，请简化代码"},
    {ParserMessage::TernaryWithoutColon, u"三目运算符缺少 ':'"},
    {ParserMessage::CallbackMark, u"第 %1 行：「&」仅用于标出回调函数名（例如 "
                                  u"启动线程(&某函数)），请紧跟函数名，不要用于其它表达式。"},
    {ParserMessage::TooManyMessages, u"错误过多，其余错误不再逐条列出，请先修正以上错误。"},
};

constexpr bool isComplete()
{
    int next = 0;
    for (const Sentence &entry : sentences) {
        if (int(entry.message) != next++)
            return false;
    }
    return next == int(ParserMessage::TooManyMessages) + 1;
}
static_assert(isComplete(), "one sentence for each message, in the order of the messages");

struct Advice
{
    const char16_t *fragment;
    const char16_t *headline;
    const char16_t *hint;
};

// The first fragment that a sentence holds picks its headline and hint. The sentences in English
// have no row: they are shown as they stand.
constexpr Advice advices[] = {
    {u"期望 '('", u"语法错误 - 缺少左括号 '('", u"提示：函数调用、条件语句和循环语句需要使用括号"},
    {u"期望 ')'", u"语法错误 - 缺少右括号 ')'", u"提示：请检查括号是否配对"},
    {u"期望 '{'", u"语法错误 - 缺少左花括号 '{'",
     u"提示：代码块（如函数体、条件分支）需要用花括号包围"},
    {u"期望 '}'", u"语法错误 - 缺少右花括号 '}'", u"提示：请检查花括号是否配对"},
    {u"期望 '['", u"语法错误 - 缺少左方括号 '['", u"提示：数组定义和访问需要使用方括号"},
    {u"期望 ']'", u"语法错误 - 缺少右方括号 ']'", u"提示：请检查方括号是否配对"},
    {u"期望 ';'", u"语法错误 - 缺少分号 ';'", u"提示：计次循环语句的各部分需要用分号分隔"},
    {u"期望 ','", u"语法错误 - 缺少逗号 ','", u"提示：多个参数或数组元素之间需要用逗号分隔"},
    {u"期望索引变量名", u"语法错误 - 遍历语句缺少索引变量",
     u"正确格式：遍历(数组名, 索引变量, 元素变量) { ... }"},
    {u"期望元素变量名", u"语法错误 - 遍历语句缺少元素变量",
     u"正确格式：遍历(数组名, 索引变量, 元素变量) { ... }"},
    {u"期望数组名", u"语法错误 - 期望数组变量名",
     u"提示：数组初始化格式为 数组 名称[] = [元素1, 元素2, ...]"},
    {u"期望参数名", u"语法错误 - 函数参数格式错误",
     u"正确格式：函数 名称(类型 参数名, 类型 参数名) { ... }"},
    {u"无法解析表达式", u"语法错误 - 无法识别的语句或表达式",
     u"提示：请检查语句是否符合Vorel语法规则"},
    {u"解析器检测到死循环", u"解析错误 - 代码结构异常", u"提示：请检查括号、花括号是否正确配对"},
};

QString text(const char16_t *units)
{
    return QString::fromUtf16(units);
}

QString shortened(const QString &argument)
{
    if (argument.size() <= ParserLimits::quotedText)
        return argument;
    return argument.left(ParserLimits::quotedText) + QChar(u'…');
}

bool opensWithLine(const QString &sentence)
{
    static const QString opening = QStringLiteral("第 ");
    static const QString closing = QStringLiteral(" 行：");
    int index = opening.size();
    while (index < sentence.size() && sentence.at(index).isDigit())
        ++index;
    return sentence.startsWith(opening) && index > opening.size() &&
           sentence.midRef(index).startsWith(closing);
}

} // namespace

QString messageText(ParserMessage message, std::initializer_list<QString> arguments)
{
    QString pattern = text(sentences[int(message)].text);
    const QString *given = arguments.begin();
    switch (arguments.size()) {
    case 0:
        return pattern;
    case 1:
        return pattern.arg(shortened(given[0]));
    case 2:
        return pattern.arg(shortened(given[0]), shortened(given[1]));
    default:
        Q_ASSERT(arguments.size() == 3);
        return pattern.arg(shortened(given[0]), shortened(given[1]), shortened(given[2]));
    }
}

QString friendlyText(const QString &sentence, int line, const QString &nearText)
{
    static const QString place = QStringLiteral("\n  └─ 在 \"%1\" 附近");
    const QString end =
        place.arg(shortened(nearText.isEmpty() ? QStringLiteral("文件末尾") : nearText));
    const QString start = QStringLiteral("第 %1 行：").arg(line);
    for (const Advice &advice : advices) {
        if (sentence.contains(text(advice.fragment)))
            return start + text(advice.headline) + end + QStringLiteral("\n  💡 ") +
                   text(advice.hint);
    }
    // A sentence that names its line itself is not given a second such opening.
    return (opensWithLine(sentence) ? QString() : start) + sentence + end;
}

QString plainText(const QString &sentence, int line, const QString &nearText)
{
    return QStringLiteral("Line %1: %2 (near '%3')")
        .arg(QString::number(line), sentence,
             shortened(nearText.isEmpty() ? QStringLiteral("EOF") : nearText));
}
