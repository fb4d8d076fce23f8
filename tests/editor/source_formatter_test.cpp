// What formatting makes of source text, and what it must never change.
#include "editor/source_formatter.h"

#include "editor_keys.h"
#include "frontend/lexer.h"

#include <QDirIterator>

class SourceFormatterTest : public QObject
{
    Q_OBJECT

private slots:
    void formats_data();
    void formats();
    void keepsTheTokensOfWholePrograms_data();
    void keepsTheTokensOfWholePrograms();
    void appliesAsOneStepThatKeepsMarks();
    void appliesAnyText_data();
    void appliesAnyText();
    void movesLines_data();
    void movesLines();
    void showsOtherPlacesOfTheWord();
};

namespace {

QStringList tokensOf(const QString &text)
{
    QStringList tokens;
    for (const Lexer::Token &token : Lexer(text).tokenize())
        tokens.append(QString::number(token.type) + QLatin1Char(' ') + token.text);
    return tokens;
}

} // namespace

void SourceFormatterTest::formats_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    const auto row = [](const char *name, const char *before, const char *after) {
        QTest::addRow("%s", name) << QString(before) << QString(after);
    };
    row("nothing", "", "");
    row("blocks", "函数 甲(){\n如果(真){\n输出(1)\n}\n}\n",
        "函数 甲() {\n    如果(真) {\n        输出(1)\n    }\n}\n");
    row("else on its line", "如果 (真) {\n}否则{\n}", "如果 (真) {\n} 否则 {\n}");
    row("else on the next line", "如果 (真) {\n}\n  否则 {\n}", "如果 (真) {\n}\n否则 {\n}");
    row("operators", "甲=乙+丙*-1", "甲 = 乙 + 丙 * -1");
    row("signs", "返回 - 1\n甲 = ( - 甲 )\n甲++", "返回 -1\n甲 = (-甲)\n甲++");
    row("two minus signs", "甲 = 乙 - -丙", "甲 = 乙 - -丙");
    row("a blank that must stay", "甲 = - -丙", "甲 = - -丙");
    row("commas", "输出( 甲 ,乙,[1 ,2] )", "输出(甲, 乙, [1, 2])");
    row("members", "小明 . 姓名 = 甲 [ 1 ]", "小明.姓名 = 甲 [1]");
    row("choice", "甲 = 乙?1:2", "甲 = 乙 ? 1 : 2");
    row("what a blank would make a keyword", "甲=真?1:2", "甲=真?1:2");
    row("strings", "输出(\"a=b ,c  \")", "输出(\"a=b ,c  \")");
    row("strings over lines", "{\n甲 = \"一  \n  二  \"  \n}", "{\n    甲 = \"一  \n  二  \"  \n}");
    row("line comments", "{\n//a=b\n甲=1   //  c=d  \n}", "{\n    //a=b\n    甲 = 1   //  c=d\n}");
    row("block comments", "{\n/* a=b  \n c=d */\n甲=1 /* ( */\n}",
        "{\n    /* a=b  \n c=d */\n    甲 = 1 /* ( */\n}");
    row("blank lines", "{\n\n\n\n甲\n}\n\n\n乙", "{\n\n    甲\n}\n\n\n乙");
    row("brackets opened in one line", "调用({\n甲\n})", "调用({\n    甲\n})");
    row("arguments over lines", "调用(甲,\n乙\n)", "调用(甲,\n    乙\n)");
    row("expressions over lines", "甲=乙+\n丙\n丁", "甲 = 乙 +\n    丙\n丁");
    row("a brace too many", "函数 甲() {\n丙=1\n}\n  }\n  乙=2  ",
        "函数 甲() {\n    丙 = 1\n}\n  }\n  乙 = 2");
    row("a brace too few", "丙=1\n{\n      甲=1", "丙 = 1\n{\n      甲 = 1");
    row("unknown signs", "甲=1 ~ 2  ", "甲=1 ~ 2");
}

void SourceFormatterTest::formats()
{
    QFETCH(QString, before);
    const QString after = SourceFormatter::formatted(before);
    QTEST(after, "after");
    QCOMPARE(SourceFormatter::formatted(after), after);
}

void SourceFormatterTest::keepsTheTokensOfWholePrograms_data()
{
    QTest::addColumn<QString>("path");
    const QString root = QStringLiteral(VOREL_SOURCE_DIR);
    for (const QString &folder : {root + "/examples", root + "/tests/programs"}) {
        QDirIterator files(folder, {"*.vc", "*.vpp", "*.vt"}, QDir::Files,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString path = files.next();
            QTest::addRow("%s", qPrintable(path.mid(root.size() + 1))) << path;
        }
    }
}

void SourceFormatterTest::keepsTheTokensOfWholePrograms()
{
    QFETCH(QString, path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString source = QString::fromUtf8(file.readAll());
    QString crushed;
    for (const QString &line : source.split('\n'))
        crushed += (source.contains("/*") || source.contains("r\"") ? line : line.trimmed()) + '\n';
    for (const QString &text : {source, crushed}) {
        const QString once = SourceFormatter::formatted(text);
        QCOMPARE(tokensOf(once), tokensOf(text));
        QCOMPARE(SourceFormatter::formatted(once), once);
    }
}

void SourceFormatterTest::appliesAsOneStepThatKeepsMarks()
{
    CodeEditor editor;
    const QString before = "函数 甲(){\n\n\n\n乙=1\n丙=2|\n}";
    EditorKeys::load(editor, before);
    editor.setBreakpoints({6});
    editor.formatSource();
    QCOMPARE(EditorKeys::marked(editor), QString("函数 甲() {\n\n    乙 = 1\n    丙 = 2|\n}"));
    QCOMPARE(editor.breakpoints(), QSet<int>{4});
    editor.undo();
    QCOMPARE(editor.toPlainText(), QString(before).remove('|'));
    QVERIFY(!editor.document()->isUndoAvailable());
}

void SourceFormatterTest::appliesAnyText_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("to nothing") << "甲\n乙"
                                << "";
    QTest::newRow("from nothing") << ""
                                  << "甲\n乙";
    QTest::newRow("fewer lines") << "甲\n乙\n丙"
                                 << "甲";
    QTest::newRow("more lines") << "甲"
                                << "甲 \n\n乙";
    QTest::newRow("other lines") << "甲\n乙\n丙"
                                 << "甲\n丁\n丙\n戊";
    QTest::newRow("blank lines first") << "\n\n甲"
                                       << "甲";
}

void SourceFormatterTest::appliesAnyText()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    CodeEditor editor;
    editor.setPlainText(before);
    applyFormatted(editor, after);
    QCOMPARE(editor.toPlainText(), after);
    editor.undo();
    QCOMPARE(editor.toPlainText(), before);
}

void SourceFormatterTest::movesLines_data()
{
    QTest::addColumn<QString>("before"); // with a breakpoint on line 2
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("after");
    QTest::addColumn<int>("breakpoint");
    const auto row = [](const char *name, const char *before, const char *keys, const char *after,
                        int breakpoint) {
        QTest::addRow("%s", name) << QString(before) << QString(keys) << QString(after)
                                  << breakpoint;
    };
    row("up", "一\n二|二\n三", "<Alt+Up>", "二|二\n一\n三", 1);
    row("up from the top", "一|\n二", "<Alt+Up>", "一|\n二", 2);
    row("down", "一\n二|\n三三三", "<Alt+Down>", "一\n三三三\n二|", 3);
    row("down from the end", "一\n|二", "<Alt+Down>", "一\n|二", 2);
    row("several lines", "一\n^二\n三|\n四", "<Alt+Up>", "^二\n三|\n一\n四", 1);
}

void SourceFormatterTest::movesLines()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    QFETCH(int, breakpoint);
    CodeEditor editor;
    EditorKeys::load(editor, before);
    editor.setBreakpoints({2});
    EditorKeys::press(editor, keys);
    QTEST(EditorKeys::marked(editor), "after");
    QCOMPARE(editor.breakpoints(), QSet<int>{breakpoint});
}

void SourceFormatterTest::showsOtherPlacesOfTheWord()
{
    CodeEditor editor;
    editor.resize(400, 300);
    editor.show();
    EditorKeys::load(editor, "求和 = 1\n|求和 = 求和2 + 求和");
    const auto shown = [&] {
        QStringList places;
        for (const auto &selection : editor.extraSelections()) {
            if (selection.cursor.hasSelection())
                places.append(QString::number(selection.cursor.anchor()));
        }
        return places.join(' ');
    };
    QTRY_COMPARE(shown(), QString("0 18"));
    EditorKeys::press(editor, "<Down><End><Left><Left><Left>");
    QTRY_COMPARE(shown(), QString());
}

QTEST_MAIN(SourceFormatterTest)
#include "source_formatter_test.moc"
