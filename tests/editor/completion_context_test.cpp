// What the text before the cursor asks for.
#include "editor/completion_context.h"

#include <QtTest>

using Kind = CompletionContext::Kind;
Q_DECLARE_METATYPE(CompletionContext::Kind)

class CompletionContextTest : public QObject
{
    Q_OBJECT

private slots:
    void asksFor_data();
    void asksFor();
};

void CompletionContextTest::asksFor_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<QString>("object");
    QTest::addColumn<QString>("member");
    QTest::addColumn<QString>("prefix");
    const auto row = [](const char *line, Kind kind, const char *object = "",
                        const char *member = "", const char *prefix = "") {
        QTest::addRow("%s", line) << QString::fromUtf8(line) << kind << QString::fromUtf8(object)
                                  << QString::fromUtf8(member) << QString::fromUtf8(prefix);
    };
    row("取文", Kind::Word, "", "", "取文");
    row("    输出(qwb", Kind::Word, "", "", "qwb");
    row("甲=乙_1", Kind::Word, "", "", "乙_1");
    row("编码(#编码_U", Kind::Word, "", "", "#编码_U");
    row("#", Kind::Word, "", "", "#");
    row("窗口.", Kind::Member, "窗口");
    row("窗口.标", Kind::Member, "窗口", "", "标");
    row("x = 按钮1.wz", Kind::Member, "按钮1", "", "wz");
    row("主窗口.按钮1.", Kind::MemberOfMember, "主窗口", "按钮1");
    row("主窗口.按钮1.标", Kind::Member, "按钮1", "", "标");
    row("取窗口().", Kind::Nothing);
    row("", Kind::Nothing);
    row("输出(", Kind::Nothing);
    row("甲 ", Kind::Nothing);
    row("甲 = 12", Kind::Nothing);
    row("甲 = 3.", Kind::Nothing);
    row("甲 = 3.1", Kind::Nothing);
    // Strings.
    row("输出(\"取文", Kind::Nothing);
    row("输出(\"窗口.", Kind::Nothing);
    row("输出('取文", Kind::Nothing);
    row("输出(“取文", Kind::Nothing);
    row("输出(‘取文", Kind::Nothing);
    row("输出(\"甲\", 取", Kind::Word, "", "", "取");
    row("输出(“甲”, 取", Kind::Word, "", "", "取");
    row("输出(“甲\", 取", Kind::Word, "", "", "取");
    row("输出(‘甲’, 取", Kind::Word, "", "", "取");
    row("输出(\"他说“好”取", Kind::Nothing);
    row("输出(\"it's\", 取", Kind::Word, "", "", "取");
    row("输出(\"甲\\\"取", Kind::Nothing);
    row("输出(\"甲\\\\\", 取", Kind::Word, "", "", "取");
    row("输出(\"甲\\", Kind::Nothing);
    // Comments.
    row("甲 = 1 // 取文", Kind::Nothing);
    row("输出(\"http://甲\", 取", Kind::Word, "", "", "取");
    row("甲 / 取", Kind::Word, "", "", "取");
}

void CompletionContextTest::asksFor()
{
    QFETCH(QString, line);
    const CompletionContext context = completionContext(line);
    QTEST(context.kind, "kind");
    QTEST(context.object, "object");
    QTEST(context.member, "member");
    QTEST(context.prefix, "prefix");
}

QTEST_GUILESS_MAIN(CompletionContextTest)
#include "completion_context_test.moc"
