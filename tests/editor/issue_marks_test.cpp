// Findings of a check in the editor: where they are underlined, what the mouse is told of them.
#include "editor_keys.h"

#include "editor/line_number_area.h"

#include <QHelpEvent>
#include <QSignalSpy>
#include <QTextBlock>
#include <QToolTip>

class IssueMarksTest : public QObject
{
    Q_OBJECT

private slots:
    void underlines_data();
    void underlines();
    void followTheirText_data();
    void followTheirText();
    void errorsAreDrawnOverWarnings();
    void tellTheirMessages();
    void tellTheMouse();
    void colourTheMargin();
    void askForAChecker();
};

static VlSyntaxIssue issueAt(int line, int column, int length, bool isWarning = false)
{
    return {isWarning ? QStringLiteral("小心") : QStringLiteral("不对"), line, column, length,
            isWarning};
}

// The wavy texts, with their lines.
static QString underlined(const CodeEditor &editor)
{
    QStringList texts;
    const auto selections = editor.extraSelections();
    for (const QTextEdit::ExtraSelection &selection : selections) {
        if (selection.format.underlineStyle() == QTextCharFormat::WaveUnderline &&
            selection.cursor.hasSelection()) {
            const QTextBlock block =
                editor.document()->findBlock(selection.cursor.selectionStart());
            texts << QStringLiteral("%1:%2").arg(QString::number(block.blockNumber() + 1),
                                                 selection.cursor.selectedText());
        }
    }
    return texts.join(QLatin1Char(' '));
}

void IssueMarksTest::underlines_data()
{
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("length");
    QTest::addColumn<QString>("shown");
    const QString nothing;
    QTest::newRow("a word") << 1 << 3 << 2 << QStringLiteral("1:甲乙");
    QTest::newRow("a whole line") << 1 << 0 << 0 << QStringLiteral("1:甲乙 丙");
    QTest::newRow("longer than the line") << 1 << 6 << 90 << QStringLiteral("1:丙 ");
    QTest::newRow("behind the line") << 1 << 90 << 2 << QStringLiteral("1:丙");
    QTest::newRow("without a length") << 1 << 3 << 0 << QStringLiteral("1:甲");
    QTest::newRow("a blank line") << 2 << 1 << 3 << nothing;
    QTest::newRow("behind the text") << 90 << 1 << 1 << QStringLiteral("3:丁");
    QTest::newRow("no place") << 0 << 1 << 1 << nothing;
    QTest::newRow("nonsense") << -3 << -4 << -5 << nothing;
}

void IssueMarksTest::underlines()
{
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(int, length);
    CodeEditor editor;
    editor.setPlainText(QStringLiteral("  甲乙 丙 \n\n丁"));
    editor.setIssues({issueAt(line, column, length)});
    QTEST(underlined(editor), "shown");
    editor.setIssues({});
    QCOMPARE(underlined(editor), QString());
}

void IssueMarksTest::followTheirText_data()
{
    QTest::addColumn<QString>("before"); // 乙丙 in line 2 is underlined
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("place"); // as the editor tells it
    const auto row = [](const char *name, const char *before, const char *keys, const char *shown,
                        const char *place) {
        QTest::newRow(name) << QString::fromUtf8(before) << QString::fromUtf8(keys)
                            << QString::fromUtf8(shown) << QString::fromLatin1(place);
    };
    row("a line above", "甲|\n乙丙 丁", "<Return>", "3:乙丙", "3:1+2");
    row("typed in front", "甲\n|乙丙 丁", "x", "2:乙丙", "2:2+2");
    row("typed inside", "甲\n乙|丙 丁", "x", "2:乙x丙", "2:1+3");
    row("typed behind", "甲\n乙丙| 丁", "x", "2:乙丙", "2:1+2");
    row("partly deleted", "甲\n乙|丙 丁", "<Del>", "2:乙", "2:1+1");
    row("deleted", "甲\n^乙丙 |丁", "<Del>", "", "");
    row("its line is joined", "甲|\n乙丙 丁", "<Del>", "1:乙丙", "1:2+2");
    row("deleted and back again", "甲|\n乙丙 丁", "<Return><Ctrl+Z>", "2:乙丙", "2:1+2");
}

void IssueMarksTest::followTheirText()
{
    QFETCH(QString, before);
    QFETCH(QString, keys);
    CodeEditor editor;
    EditorKeys::load(editor, before);
    editor.setIssues({issueAt(2, 1, 2)});
    EditorKeys::press(editor, keys);
    QTEST(underlined(editor), "shown");
    QStringList places;
    const QList<VlSyntaxIssue> issues = editor.issues();
    for (const VlSyntaxIssue &issue : issues) {
        places << QStringLiteral("%1:%2+%3").arg(issue.line).arg(issue.column).arg(issue.length);
    }
    QTEST(places.join(QLatin1Char(' ')), "place");
}

void IssueMarksTest::errorsAreDrawnOverWarnings()
{
    CodeEditor editor;
    editor.setPlainText(QStringLiteral("甲乙"));
    editor.setIssues({issueAt(1, 1, 2), issueAt(1, 1, 2, true)});
    QList<QColor> colors;
    const auto selections = editor.extraSelections();
    for (const QTextEdit::ExtraSelection &selection : selections) {
        if (selection.format.underlineStyle() == QTextCharFormat::WaveUnderline)
            colors << selection.format.underlineColor();
    }
    QCOMPARE(colors, (QList<QColor>{EditorColors().warning, EditorColors().error}));
}

void IssueMarksTest::tellTheirMessages()
{
    CodeEditor editor;
    editor.setPlainText(QStringLiteral("甲乙 丙"));
    IssueMarks marks(editor.document());
    marks.set({issueAt(1, 1, 2, true), issueAt(1, 2, 1), issueAt(1, 2, 1)});
    QCOMPARE(marks.messagesAt(0), QStringLiteral("小心"));
    QCOMPARE(marks.messagesAt(1), QStringLiteral("不对\n小心"));
    QCOMPARE(marks.messagesAt(2), QString());
}

void IssueMarksTest::tellTheMouse()
{
    CodeEditor editor;
    editor.resize(400, 200);
    editor.setPlainText(QStringLiteral("甲 乙丙\n丁"));
    editor.setIssues({{QStringLiteral("<b>乙</b> 不对"), 1, 3, 2, false}});
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    // Where the middle of the character at an offset is.
    const auto hover = [&editor](int offset, int away) {
        QTextCursor cursor(editor.document());
        cursor.setPosition(offset);
        const QRect left = editor.cursorRect(cursor);
        const QPoint place(left.left() + 5 + away, left.center().y());
        QHelpEvent help(QEvent::ToolTip, place, editor.viewport()->mapToGlobal(place));
        QApplication::sendEvent(editor.viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    };
    QVERIFY(hover(2, 0).contains(QStringLiteral("&lt;b&gt;乙&lt;/b&gt;")));
    QVERIFY(!hover(3, 0).isEmpty());
    QTRY_COMPARE(hover(0, 0), QString());
    QTRY_COMPARE(hover(4, 200), QString());
    QTRY_COMPARE(hover(5, 0), QString());
}

void IssueMarksTest::colourTheMargin()
{
    CodeEditor editor;
    editor.resize(400, 200);
    editor.setPlainText(QStringLiteral("甲\n乙\n丙\n\n"));
    editor.setIssues(
        {issueAt(1, 1, 1, true), issueAt(2, 1, 1, true), issueAt(2, 1, 1), issueAt(4, 0, 0)});
    editor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&editor));
    auto *margin = editor.findChild<LineNumberArea *>();
    const QImage image = margin->grab().toImage();
    const auto colorAt = [&](int line) {
        const QTextCursor cursor(editor.document()->findBlockByNumber(line - 1));
        return image.pixelColor(image.width() - 2, editor.cursorRect(cursor).center().y());
    };
    const EditorColors colors;
    QCOMPARE(colorAt(1), colors.warning);
    QCOMPARE(colorAt(2), colors.error);
    QCOMPARE(colorAt(3), colors.background);
    QCOMPARE(colorAt(4), colors.error);
}

void IssueMarksTest::askForAChecker()
{
    CodeEditor editor;
    editor.setFilePath(QStringLiteral("/甲.vc"));
    QSignalSpy asked(&editor, &CodeEditor::checkRequested);
    editor.setPlainText(QStringLiteral("甲"));
    QCOMPARE(asked.size(), 1);
    QSignalSpy told(&editor, &CodeEditor::editorSyntaxDiagnostics);
    editor.setIssues({issueAt(1, 1, 1)});
    QCOMPARE(told.size(), 1);
    QCOMPARE(told.at(0).at(0).toString(), QStringLiteral("/甲.vc"));
    QCOMPARE(told.at(0).at(1).value<QList<VlSyntaxIssue>>(),
             QList<VlSyntaxIssue>{issueAt(1, 1, 1)});
    QCOMPARE(asked.size(), 1); // showing findings changes no text
}

QTEST_MAIN(IssueMarksTest)
#include "issue_marks_test.moc"
