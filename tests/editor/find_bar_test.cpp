// Searching with the keyboard: where the keys lead, what is counted, what one undo takes back.
#include "editor/find_bar.h"

#include "editor_keys.h"

#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <QVBoxLayout>

class FindBarTest : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void walksThroughTheHits();
    void takesTheSelectionAsPattern();
    void leavesCompositionAlone();
    void replacesInOneStep();
    void replacesOneByOne();
    void searchesOnlyInTheSelection();
    void tellsOfBadExpressions();
    void showsHitsOnlyWhileOpen();

private:
    QLineEdit *field(const char *name) const;
    QToolButton *button(const char *name) const;
    bool shows(const char *text) const;

    QWidget *m_window = nullptr;
    CodeEditor *m_editor = nullptr;
    FindBar *m_bar = nullptr;
};

void FindBarTest::init()
{
    m_window = new QWidget;
    auto *layout = new QVBoxLayout(m_window);
    m_editor = new CodeEditor(m_window);
    m_bar = new FindBar(m_window);
    layout->addWidget(m_editor);
    layout->addWidget(m_bar);
    m_bar->setEditor(m_editor);
    m_window->resize(700, 400);
    m_window->show();
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window));
}

void FindBarTest::cleanup()
{
    delete m_window;
}

QLineEdit *FindBarTest::field(const char *name) const
{
    for (auto *field : m_bar->findChildren<QLineEdit *>()) {
        if (field->accessibleName() == name)
            return field;
    }
    return nullptr;
}

QToolButton *FindBarTest::button(const char *name) const
{
    for (auto *button : m_bar->findChildren<QToolButton *>()) {
        if (button->text() == name)
            return button;
    }
    return nullptr;
}

bool FindBarTest::shows(const char *text) const
{
    const auto labels = m_bar->findChildren<QLabel *>();
    return std::any_of(labels.begin(), labels.end(), [&](const QLabel *label) {
        return label->isVisible() && label->text().contains(QString(text));
    });
}

void FindBarTest::walksThroughTheHits()
{
    EditorKeys::load(*m_editor, "甲 |乙 甲 乙 甲");
    m_bar->openFind();
    QCOMPARE(m_window->focusWidget(), field("查找"));
    QTest::keyClicks(field("查找"), "x");
    QVERIFY(shows("无结果"));
    field("查找")->setText("甲");
    QCOMPARE(EditorKeys::marked(*m_editor), QString("甲 乙 ^甲| 乙 甲"));
    QVERIFY(shows("2/3"));
    QTest::keyClick(field("查找"), Qt::Key_Return);
    QVERIFY(shows("3/3"));
    QTest::keyClick(field("查找"), Qt::Key_Return);
    QVERIFY(shows("1/3"));
    QTest::keyClick(field("查找"), Qt::Key_Return, Qt::ShiftModifier);
    QVERIFY(shows("3/3"));
    QTest::keyClick(field("查找"), Qt::Key_Escape);
    QVERIFY(!m_bar->isVisible());
    QCOMPARE(m_window->focusWidget(), m_editor);
    EditorKeys::press(*m_editor, "<F3>");
    QCOMPARE(EditorKeys::marked(*m_editor), QString("^甲| 乙 甲 乙 甲"));
    EditorKeys::press(*m_editor, "<Shift+F3>");
    QCOMPARE(EditorKeys::marked(*m_editor), QString("甲 乙 甲 乙 ^甲|"));
}

void FindBarTest::takesTheSelectionAsPattern()
{
    EditorKeys::load(*m_editor, "求和 ^求和(| 求和(");
    button(".*")->setChecked(true);
    m_bar->openFind();
    QCOMPARE(field("查找")->text(), QString("求和("));
    QVERIFY(shows("1/2"));
}

void FindBarTest::leavesCompositionAlone()
{
    EditorKeys::load(*m_editor, "|你好");
    m_bar->openFind();
    QInputMethodEvent composing("ni", {});
    QCoreApplication::sendEvent(field("查找"), &composing);
    QVERIFY(!shows("无结果"));
    QInputMethodEvent done;
    done.setCommitString("你");
    QCoreApplication::sendEvent(field("查找"), &done);
    QCOMPARE(EditorKeys::marked(*m_editor), QString("^你|好"));
}

void FindBarTest::replacesInOneStep()
{
    EditorKeys::load(*m_editor, "|甲(1)\n乙\n甲(2)");
    m_editor->setBreakpoints({3});
    m_bar->openReplace();
    button(".*")->setChecked(true);
    field("查找")->setText("甲\\((\\d)\\)");
    field("替换")->setText("丙[\\1]");
    button("全部替换")->click();
    QCOMPARE(m_editor->toPlainText(), QString("丙[1]\n乙\n丙[2]"));
    QCOMPARE(m_editor->breakpoints(), QSet<int>{3});
    QVERIFY(shows("已替换 2 处"));
    m_editor->undo();
    QCOMPARE(m_editor->toPlainText(), QString("甲(1)\n乙\n甲(2)"));
    m_editor->setReadOnly(true);
    button("全部替换")->click();
    QCOMPARE(m_editor->toPlainText(), QString("甲(1)\n乙\n甲(2)"));
}

void FindBarTest::replacesOneByOne()
{
    EditorKeys::load(*m_editor, "|a a a");
    m_bar->openReplace();
    field("查找")->setText("a");
    field("替换")->setText("aa");
    QTest::keyClick(field("替换"), Qt::Key_Return);
    QCOMPARE(EditorKeys::marked(*m_editor), QString("aa ^a| a"));
    QTest::keyClick(field("替换"), Qt::Key_Return);
    QCOMPARE(EditorKeys::marked(*m_editor), QString("aa aa ^a|"));
}

void FindBarTest::searchesOnlyInTheSelection()
{
    EditorKeys::load(*m_editor, "甲\n^甲\n甲|\n甲");
    m_bar->openReplace();
    QVERIFY(button("在选区中")->isChecked());
    field("查找")->setText("甲");
    field("替换")->setText("乙乙");
    QVERIFY(shows("1/2"));
    button("全部替换")->click();
    QCOMPARE(m_editor->toPlainText(), QString("甲\n乙乙\n乙乙\n甲"));
}

void FindBarTest::tellsOfBadExpressions()
{
    m_editor->setPlainText("(((");
    m_bar->openFind();
    button(".*")->setChecked(true);
    field("查找")->setText("(");
    QVERIFY(shows("正则表达式有误"));
    button(".*")->setChecked(false);
    QVERIFY(!shows("正则表达式有误"));
    QVERIFY(shows("1/3"));
}

void FindBarTest::showsHitsOnlyWhileOpen()
{
    m_editor->setPlainText("甲乙甲");
    const int before = m_editor->extraSelections().size();
    m_bar->openFind();
    field("查找")->setText("甲");
    QCOMPARE(m_editor->extraSelections().size(), before + 2);
    m_bar->closeBar();
    QCOMPARE(m_editor->extraSelections().size(), before);
}

QTEST_MAIN(FindBarTest)
#include "find_bar_test.moc"
