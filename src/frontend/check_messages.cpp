// The table behind check_messages.h: wording and grade of each message.
#include "frontend/check_messages.h"

namespace {

enum class Grade
{
    Error,
    Warning
};

struct Row
{
    CheckMessage message;
    Grade grade;
    const char16_t *text; // behind "第 %1 行："
};

constexpr Row rows[] = {
    {CheckMessage::OverloadDiffersInReturn, Grade::Error,
     u"函数「%2」的重载与第 %3 行的定义参数类型相同但返回类型不同（%4 vs %5）。Vorel "
     u"要求：仅靠返回值不同不能区分两个重载，请修改参数个数或参数类型使两个版本能够区分。"},
    {CheckMessage::FunctionRepeated, Grade::Error,
     u"函数「%2」与第 %3 行的定义完全相同（参数类型和返回类型均相同），属于重复定义。"},
    {CheckMessage::GlobalRepeated, Grade::Error, u"全局变量 %2 重复定义"},
    {CheckMessage::VariableRepeated, Grade::Error, u"变量 %2 重复定义"},
    {CheckMessage::VariableLikeParameter, Grade::Error,
     u"变量 %2 与函数的参数同名。请给其中一个改名，参数可以直接当变量使用。"},
    {CheckMessage::ParameterRepeated, Grade::Error, u"参数 %2 重复，请给其中一个改名"},
    {CheckMessage::MemberRepeated, Grade::Error, u"类「%2」的成员「%3」重复定义"},
    {CheckMessage::FunctionAndGlobal, Grade::Error,
     u"「%2」既是函数又是全局变量，请给其中一个改名"},
    {CheckMessage::MainTakesParameters, Grade::Error,
     u"「%2」是程序开始的地方，没有人给它参数，请去掉括号里的参数"},
    {CheckMessage::EventParameterType, Grade::Error, u"事件函数「%2」的参数「%3」应为%4类型"},
    {CheckMessage::GlobalUsedTooEarly, Grade::Error,
     u"全局变量 %2 的声明在后面，这里还不能使用。请把它的声明移到前面。"},
    {CheckMessage::UnusedGlobal, Grade::Warning, u"全局变量 %2 已声明但未使用"},
    {CheckMessage::UnusedParameter, Grade::Warning, u"参数 %2 已声明但未使用"},
    {CheckMessage::UnusedVariable, Grade::Warning, u"变量 %2 已声明但未使用"},
    {CheckMessage::NoEffect, Grade::Warning,
     u"这一句只算出一个值，没有用它做什么。赋值请写 =，比较请放在 如果 里。"},
    {CheckMessage::HashBeforeGlobal, Grade::Error,
     u"全局变量「%2」应直接写变量名，不要加 # 前缀（# 仅用于全局常量）。"},
    {CheckMessage::HashMissing, Grade::Error, u"全局常量「%2」在其它源文件中须写成 #%2"},
    {CheckMessage::UnknownName, Grade::Error, u"未声明的标识符 %2%3"},
    {CheckMessage::UnknownType, Grade::Error, u"没有叫「%2」的类型%3"},
    {CheckMessage::FunctionWithoutCall, Grade::Error,
     u"「%2」是函数，要加括号才会执行，例如 %2()；作为回调函数时写成 &%2。"},
    {CheckMessage::MethodWithoutCall, Grade::Error, u"「%2」是方法，要加括号才会执行，例如 %2()。"},
    {CheckMessage::CommandWithoutCall, Grade::Error,
     u"「%2」是命令，要加括号才会执行，例如 %2()。"},
    {CheckMessage::ClassAsValue, Grade::Error,
     u"「%2」是类名，不能当作值使用。请先声明一个对象，例如 %2 对象名。"},
    {CheckMessage::NoSuchMember, Grade::Error, u"类「%2」没有属性「%3」%4"},
    {CheckMessage::NoMembersAtAll, Grade::Error, u"%2 是%3，没有成员「%4」"},
    {CheckMessage::CallOfVariable, Grade::Error, u"「%2」是变量，后面不能加括号"},
    {CheckMessage::CallOfExpression, Grade::Error, u"括号前面必须是函数名、命令名或方法名"},
    {CheckMessage::NoFittingOverload, Grade::Error,
     u"「%2」没有接受 %3 个参数的重载版本。请对照本文件中该函数的声明核对。"},
    {CheckMessage::TooManyForFunction, Grade::Error,
     u"「%2」实参过多（当前 %3 个）。请确认调用的重载版本参数个数正确。"},
    {CheckMessage::PropertyCalled, Grade::Error, u"属性“%2”不能写成“%2()”，请去掉括号。"},
    {CheckMessage::ConstructorTooFew, Grade::Error,
     u"「%2(...)」构造参数不足（当前 %3 个，至少需要 %4 "
     u"个）。请对照该类“构造”方法声明核对参数。"},
    {CheckMessage::ConstructorTooMany, Grade::Error,
     u"「%2(...)」构造参数过多（当前 %3 个，最多支持 %4 个）。%5"},
    {CheckMessage::NoConstructor, Grade::Error,
     u"类“%2”未定义“构造”方法，当前写法不能传参。请补充构造方法或改为无参构造。"},
    {CheckMessage::UnknownFunction, Grade::Error,
     u"「%2」未找到定义。请检查命令/函数名是否正确；%3"},
    {CheckMessage::TooFewArguments, Grade::Error, u"「%2」参数不足，缺少：%3"},
    {CheckMessage::TooFewForAnyForm, Grade::Error,
     u"「%2」实参个数不足（当前 %3 "
     u"个）。该命令在支持库中可能有多种写法，请对照语法说明中的每一行重载核对必填参数。"},
    {CheckMessage::TooManyArguments, Grade::Error,
     u"「%2」实参过多（当前 %3 个）。按支持库为该命令登记的语法，此形式一般不超过 %4 "
     u"个形参位。%5"},
    {CheckMessage::EmptyArgument, Grade::Error, u"%2() %3不得为空"},
    {CheckMessage::CallbackWithoutMark, Grade::Error,
     u"「%2」的第 %3 个参数为回调函数，回调函数名前必须加「&」。"},
    {CheckMessage::TimestampSecondArgument, Grade::Error,
     u"时间转时间戳() 只支持 1 个参数（日期时间），当前传入了 2 "
     u"个参数。第二个参数“毫秒级”暂未实现，请勿传入。"},
    {CheckMessage::TimestampWantsText, Grade::Error, u"时间转时间戳() 命令参数一应为文本类型。"},
    {CheckMessage::ArgumentNeedsType, Grade::Error, u"%2() 函数 %3是%4"},
    {CheckMessage::ArgumentOfOtherType, Grade::Error,
     u"%2() 函数 %3类型与声明不符（本参数支持：%4）"},
    {CheckMessage::ReferenceNeedsVariable, Grade::Error,
     u"%2() 函数 %3是引用（带 &），必须传入一个%4类型的变量"},
    {CheckMessage::MemberPropertyCalled, Grade::Error,
     u"%2.%3 是属性，不能写成 %2.%3()，请去掉括号。"},
    {CheckMessage::MethodTooFew, Grade::Error,
     u"「%2.%3」实参不足（当前 %4 个，至少需要 %5 个）。请对照类中该方法的声明核对。"},
    {CheckMessage::MethodTooMany, Grade::Error,
     u"「%2.%3」实参过多（当前 %4 个）。按类中声明该方法最多接受 %5 "
     u"个参数；若声明与写法一致仍报错，请检查是否重复定义或解析异常。"},
    {CheckMessage::MethodCallbackMark, Grade::Error,
     u"「%2.%3」的第 %4 个参数为回调函数，回调函数名前必须加「&」。"},
    {CheckMessage::UnknownMethod, Grade::Error,
     u"「%2.%3」未找到可用的方法定义。请检查方法名是否正确，或对照支持库/类定义文档确认该方法是否存"
     u"在。"},
    {CheckMessage::TextAssigned, Grade::Error, u"%2 %3赋值不能为文本类型"},
    {CheckMessage::BoolAssignedToText, Grade::Error, u"%2 %3赋值类型不匹配"},
    {CheckMessage::AssignmentMismatch, Grade::Error, u"%2 %3赋值类型不匹配，这里的值是%4%5"},
    {CheckMessage::AssignmentWithoutValue, Grade::Error, u"%2变量赋值错误"},
    {CheckMessage::AssignmentTarget, Grade::Error, u"“=”左边必须是变量、属性或数组元素"},
    {CheckMessage::TextElementAssigned, Grade::Error,
     u"文本 %2 里的单个字符不能这样改。请用 替换、取子串 等命令得到新的文本，再赋给 %2。"},
    {CheckMessage::ReadOnlyProperty, Grade::Error, u"属性 %2.%3 只能读取，不能赋值"},
    {CheckMessage::ValueOfNothing, Grade::Error, u"%2() 没有返回值，不能当作值使用"},
    {CheckMessage::OperandType, Grade::Error, u"%2类型的值不能做“%3”运算%4"},
    {CheckMessage::LogicalOperand, Grade::Error,
     u"“%3”两边要是能判断真假的值，%2类型不行。请写出比较，例如与某个值用 == 比较。"},
    {CheckMessage::NegationOperand, Grade::Error,
     u"“非”后面要是能判断真假的值，%2类型不行。请写出比较，例如与某个值用 == 比较。"},
    {CheckMessage::UseOfType, Grade::Error, u"“%2”里不能用%3类型的值"},
    {CheckMessage::ConditionType, Grade::Error,
     u"“%2”的条件要能判断真假，%3类型不行。请写出比较，例如与某个值用 == 比较。"},
    {CheckMessage::StepType, Grade::Error, u"“%2”只能用于整数或小数变量，这里是%3"},
    {CheckMessage::NoElements, Grade::Error, u"%2 是%3，没有元素，后面不能加 [ ]"},
    {CheckMessage::ElementByText, Grade::Error,
     u"%2的元素要用整数序号来取，只有词典才能用文本作键"},
    {CheckMessage::DictionaryVariable, Grade::Error,
     u"词典只能放在通用变量里，%2 %3 不行。请写成：通用 %3 = { … }"},
    {CheckMessage::HandleAsValue, Grade::Error,
     u"%2 %3赋值类型不匹配，「%4」是组件，不是%2。请写出要用的属性，例如 %4.文本 或 %4.句柄"},
    {CheckMessage::LabelWithoutValue, Grade::Error, u"“:”前面缺少要比较的值，例如 1: { … }"},
    {CheckMessage::ObjectInArray, Grade::Error,
     u"数组里只能放整数、小数、文本、逻辑、字节集和数组，不能放对象"},
    {CheckMessage::ArrayValue, Grade::Error, u"数组 %2 赋值错误，必须是：%3"},
    {CheckMessage::ArrayValueUnknown, Grade::Error,
     u"数组 %2 赋值错误，必须是：数组 %2[] = [] 或二维、多维数组定义"},
    {CheckMessage::ArrayDimensions, Grade::Error,
     u"数组 %2 维度与赋值不一致，声明为 %3 数组，赋值为 %4 数组"},
    {CheckMessage::ArrayMalformed, Grade::Error, u"数组 %2 定义错误"},
    {CheckMessage::ValueReturned, Grade::Error, u"%2() 无返回值不能返回%3"},
    {CheckMessage::ValueMissing, Grade::Error, u"%2() 必须提供返回值：%3"},
    {CheckMessage::ReturnType, Grade::Error, u"%2() 返回值类型应为%3，不能返回%4"},
    {CheckMessage::TooManyWarnings, Grade::Warning, u"警告过多，其余警告不再逐条列出。"},
    {CheckMessage::TooManyMessages, Grade::Error,
     u"错误过多，其余错误不再逐条列出，请先修正以上错误。"},
};

constexpr bool isComplete()
{
    int next = 0;
    for (const Row &row : rows) {
        if (int(row.message) != next++)
            return false;
    }
    return next == int(CheckMessage::TooManyMessages) + 1;
}
static_assert(isComplete(), "one row for each message, in the order of the messages");

} // namespace

QString checkText(CheckMessage message, int line, const QStringList &arguments)
{
    const QString pattern =
        QStringLiteral("第 %1 行：") + QString::fromUtf16(rows[int(message)].text);
    // One pass: an argument may itself hold "%2".
    QString result;
    for (int i = 0; i < pattern.size(); ++i) {
        const int digit = pattern.at(i) == QLatin1Char('%') && i + 1 < pattern.size()
                              ? pattern.at(i + 1).digitValue()
                              : -1;
        if (digit < 1) {
            result += pattern.at(i);
            continue;
        }
        result += digit == 1 ? QString::number(line) : arguments.value(digit - 2);
        ++i;
    }
    return result;
}

bool isWarning(CheckMessage message)
{
    return rows[int(message)].grade == Grade::Warning;
}
