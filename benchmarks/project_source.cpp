// The texts that projectSource() repeats with changing names and numbers.
#include "project_source.h"

namespace {

// %1 is a running number.
const QString &functionPattern()
{
    static const QString pattern = QStringLiteral(R"vc(
// 第 %1 个函数：统计一批订单
函数 统计订单%1(整数 起始编号, 文本 客户名称, [逻辑 是否打印 = 真]) 返回 整数 {
    整数 总数 = 0
    小数 总金额 = 12.5, 折扣 = 0.95
    文本 说明 = "客户：" + 客户名称 + "，编号 %1"
    数组 单价[5] = [10, 20, 30, 40, 50]
    循环 (整数 序号 = 0; 序号 < 5; 序号++) {
        总金额 += 单价[序号] * 折扣 + (序号 % 3) - 起始编号 / 2
        如果 (序号 > 2 并且 总金额 >= 100) {
            总数 = 总数 + 1  // 只计大单
        } 否则如果 (序号 == 1) {
            继续
        } 否则 {
            输出("小单：" + 到文本(总金额))
        }
    }
    当 (总数 < 10 && !(总金额 <= 0)) {
        总数++
        总金额 = 总金额 - 取整(总金额 * 0.1)
    }
    选择 (总数 % 4) {
        0: { 说明 = "整批" }
        1: { 说明 = "余一" }
        默认: { 说明 = 是否打印 ? 客户名称 : "无" }
    }
    输出(说明, 到文本(总数), 取文本长度(说明))
    返回(总数 * %1)
}
)vc");
    return pattern;
}

const QString &classPattern()
{
    static const QString pattern = QStringLiteral(R"vc(
/* 客户及其账户 */
类 客户类%1 {
    属性 文本 姓名 = "未知"
    属性 整数 年龄 = 18
    属性 小数 余额

    方法 存款(小数 金额) 逻辑 {
        如果 (金额 <= 0) {
            返回(假)
        }
        余额 = 余额 + 金额
        返回(真)
    }
    方法 介绍() 文本 {
        返回(姓名 + "，" + 到文本(年龄) + " 岁")
    }
}

全局 客户类%1 常客%1
函数 接待客户%1(客户类%1 &来客) {
    来客.存款(88.8)
    常客%1.姓名 = 来客.姓名
    输出(来客.介绍(), 常客%1.余额)
}
)vc");
    return pattern;
}

} // namespace

QString projectSource(int lines)
{
    // One class for so many functions.
    constexpr int functionsPerClass = 8;
    QString source;
    int written = 0;
    for (int number = 1; written < lines; ++number) {
        const bool isClass = number % (functionsPerClass + 1) == 0;
        const QString &pattern = isClass ? classPattern() : functionPattern();
        source += QString(pattern).replace(QLatin1String("%1"), QString::number(number));
        written += pattern.count(QLatin1Char('\n'));
    }
    return source;
}
