// The output of builds and programs: what is kept, where the view stands, what the user can do.
#include "shell/output_text_edit.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTextBlock>
#include <QtTest>

namespace {

QString lineAt(const OutputTextEdit &output, int number)
{
    return output.document()->findBlockByNumber(number).text();
}

// What was appended has arrived and ends with `last`.
bool hasArrived(const OutputTextEdit &output, const QString &last)
{
    return lineAt(output, output.blockCount() - 2) == last;
}

QString numberedLines(int count)
{
    QStringList lines;
    for (int number = 1; number <= count; ++number)
        lines << QString::number(number);
    return lines.join(QLatin1Char('\n'));
}

} // namespace

class OutputTextEditTest : public QObject
{
    Q_OBJECT

private slots:
    void appends_data();
    void appends();
    void colorsEachLine();
    void keepsTheLastLinesOfABurst();
    void leavesTheEventLoopItsTurns();
    void followsUnlessTheUserIsInIt();
    void keepsTheSelection_data();
    void keepsTheSelection();
    void clearsWhatIsStillToCome();
    void tellsTheLine();
    void menu();
};

void OutputTextEditTest::appends_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("shown");
    const QString face = QString::fromUtf8("😀");
    QTest::addRow("a line") << "甲"
                            << "甲\n";
    QTest::addRow("empty") << ""
                           << "\n";
    QTest::addRow("lines of Windows") << "甲\r\n乙\r\n"
                                      << "甲\n乙\n\n";
    QTest::addRow("no HTML") << "<b>甲</b>"
                             << "<b>甲</b>\n";
    QTest::addRow("a very long line")
        << QString(5000, 'a') << QString(4096, 'a') + '\n' + QString(904, 'a') + '\n';
    QTest::addRow("broken before a character of two halves")
        << QString(4095, 'a') + face + 'b' << QString(4095, 'a') + '\n' + face + "b\n";
}

void OutputTextEditTest::appends()
{
    QFETCH(QString, text);
    QFETCH(QString, shown);
    OutputTextEdit output;
    output.appendText(text);
    QTRY_COMPARE(output.toPlainText(), shown);
}

void OutputTextEditTest::colorsEachLine()
{
    OutputTextEdit output;
    output.appendText("红", Qt::red);
    output.appendText("平常");
    output.appendText("绿一\n绿二", Qt::green);
    QTRY_VERIFY(hasArrived(output, "绿二"));
    const auto colorOf = [&output](int line) {
        return output.document()->findBlockByNumber(line).begin().fragment().charFormat();
    };
    QCOMPARE(colorOf(0).foreground().color(), QColor(Qt::red));
    QVERIFY(!colorOf(1).hasProperty(QTextFormat::ForegroundBrush));
    QCOMPARE(colorOf(2).foreground().color(), QColor(Qt::green));
    QCOMPARE(colorOf(3).foreground().color(), QColor(Qt::green));
}

void OutputTextEditTest::keepsTheLastLinesOfABurst()
{
    OutputTextEdit output;
    output.appendText("旧");
    QTRY_VERIFY(hasArrived(output, "旧"));
    output.appendText(numberedLines(OutputTextEdit::maxLines - 1));
    QTRY_VERIFY(hasArrived(output, QString::number(OutputTextEdit::maxLines - 1)));
    QCOMPARE(lineAt(output, 0), QString("旧"));
    output.appendText("新");
    QTRY_VERIFY(hasArrived(output, "新"));
    QCOMPARE(lineAt(output, 0), QString("1"));
    QCOMPARE(output.blockCount(), OutputTextEdit::maxLines + 1);
}

void OutputTextEditTest::leavesTheEventLoopItsTurns()
{
    constexpr int bursts = 100;
    constexpr int linesInBurst = 1000;
    OutputTextEdit output;
    output.show();
    int burst = 0;
    int mostAtOnce = 0;
    int before = output.blockCount();
    QTimer program;
    connect(&program, &QTimer::timeout, &output, [&] {
        for (int line = 1; line <= linesInBurst; ++line)
            output.appendText(QString::number(burst * linesInBurst + line));
        if (++burst == bursts)
            program.stop();
    });
    connect(&output, &QPlainTextEdit::textChanged, &output, [&] {
        // Until lines go at the top, the growth is what one turn of the event loop had to do.
        mostAtOnce = qMax(mostAtOnce, output.blockCount() - before);
        before = output.blockCount();
    });
    program.start(1);
    QTRY_VERIFY_WITH_TIMEOUT(hasArrived(output, QString::number(bursts * linesInBurst)), 60000);
    QCOMPARE(burst, bursts);
    QCOMPARE(output.blockCount(), OutputTextEdit::maxLines + 1);
    QCOMPARE(lineAt(output, 0), QString::number(bursts * linesInBurst - output.maxLines + 1));
    QVERIFY2(mostAtOnce <= 1000, qPrintable(QString::number(mostAtOnce)));
}

void OutputTextEditTest::followsUnlessTheUserIsInIt()
{
    OutputTextEdit output;
    output.resize(300, 200);
    output.show();
    QScrollBar *bar = output.verticalScrollBar();
    output.clearFocus();
    output.appendText(numberedLines(500));
    QTRY_VERIFY(hasArrived(output, "500"));
    QVERIFY(bar->maximum() > 0);
    QCOMPARE(bar->value(), bar->maximum());

    output.activateWindow();
    output.setFocus();
    QVERIFY(QTest::qWaitForWindowActive(&output));
    bar->setValue(100);
    output.appendText("在读");
    QTRY_VERIFY(hasArrived(output, "在读"));
    QCOMPARE(bar->value(), 100);
    // 501 lines were there, so that 600 of them go at the top.
    bar->setValue(400);
    output.appendText(numberedLines(OutputTextEdit::maxLines - 401));
    QTRY_VERIFY(hasArrived(output, QString::number(OutputTextEdit::maxLines - 401)));
    QCOMPARE(lineAt(output, 0), QString("101"));
    QCOMPARE(lineAt(output, bar->value()), QString("401"));
}

void OutputTextEditTest::keepsTheSelection_data()
{
    QTest::addColumn<int>("anchor");
    QTest::addColumn<int>("position");
    QTest::addColumn<QString>("selected");
    QTest::addRow("nothing, at the beginning") << 0 << 0 << "";
    QTest::addRow("nothing, at the end") << 4 << 4 << "";
    QTest::addRow("a part") << 0 << 1 << "甲";
    QTest::addRow("to the end") << 2 << 4 << "乙\u2029";
    QTest::addRow("from the end") << 4 << 2 << "乙\u2029";
}

void OutputTextEditTest::keepsTheSelection()
{
    OutputTextEdit output;
    output.appendText("甲\n乙");
    QTRY_VERIFY(hasArrived(output, "乙"));
    QVERIFY(!output.textCursor().hasSelection());
    QFETCH(int, anchor);
    QFETCH(int, position);
    QTextCursor cursor = output.textCursor();
    cursor.setPosition(anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    output.setTextCursor(cursor);
    output.appendText("丙");
    QTRY_VERIFY(hasArrived(output, "丙"));
    QTEST(output.textCursor().selectedText(), "selected");
    if (cursor.hasSelection())
        QCOMPARE(output.textCursor().position(), position);
}

void OutputTextEditTest::clearsWhatIsStillToCome()
{
    OutputTextEdit output;
    output.appendText("旧的一次");
    output.clearOutput();
    output.appendText("新的一次");
    QTRY_COMPARE(output.toPlainText(), QString("新的一次\n"));
}

void OutputTextEditTest::tellsTheLine()
{
    OutputTextEdit output;
    output.resize(300, 200);
    output.show();
    output.appendText("第一行\n第二行\n第三行");
    QTRY_VERIFY(hasArrived(output, "第三行"));
    QSignalSpy told(&output, &OutputTextEdit::lineDoubleClicked);
    QTextCursor cursor(output.document()->findBlockByNumber(1));
    QTest::mouseDClick(output.viewport(), Qt::LeftButton, {}, output.cursorRect(cursor).center());
    QCOMPARE(told, QList<QVariantList>({{2, "第二行"}}));
    QTest::keyClick(&output, Qt::Key_Down);
    QTest::keyClick(&output, Qt::Key_Return);
    QCOMPARE(told.value(1), QVariantList({3, "第三行"}));
}

void OutputTextEditTest::menu()
{
    OutputTextEdit output;
    output.appendText("甲\n乙");
    QTRY_VERIFY(hasArrived(output, "乙"));
    output.selectAll();
    QContextMenuEvent event(QContextMenuEvent::Mouse, {5, 5});
    QApplication::sendEvent(output.viewport(), &event);
    auto *menu = output.findChild<QMenu *>();
    QVERIFY(menu);
    QStringList enabled;
    for (const QAction *action : menu->actions()) {
        if (!action->isSeparator() && action->isEnabled())
            enabled << action->text();
    }
    QCOMPARE(enabled, QStringList({"复制(&C)", "全选(&A)", "清除(&L)"}));
    QTest::keyClick(menu, Qt::Key_C);
    QCOMPARE(QApplication::clipboard()->text(), QString("甲\n乙\n"));
}

QTEST_MAIN(OutputTextEditTest)
#include "output_text_edit_test.moc"
