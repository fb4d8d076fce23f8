// The offer of texts that a crash has left, and how it shows their differences.
#include "shell/difference_column.h"
#include "shell/difference_view.h"
#include "shell/recovery_dialog.h"

#include "test_files.h"

#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeWidget>

class RecoveryDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void showsTheDifference();
    void restoresOneByOne();
    void restoresAll();
    void discardsOnlyWhenSure();
    void laterKeepsAll();
    void differencesAreWalked();
    void columnsStayTogether();

private:
    RecoveryEntry entry(const QString &name, const QString &text) const;

    QTemporaryDir m_folder;
    QList<RecoveryEntry> m_entries;
};

namespace {

void press(QWidget &window, const QString &text)
{
    for (QAbstractButton *button : window.findChildren<QAbstractButton *>()) {
        if (button->text() == text)
            return button->click();
    }
    QFAIL(qPrintable("no button " + text));
}

QString filesOf(const QSignalSpy &spy)
{
    QStringList files;
    for (const QList<QVariant> &call : spy)
        files << call.first().value<RecoveryEntry>().file;
    return files.join(' ');
}

// Once the next message box is open.
void answer(const QString &text)
{
    QTimer::singleShot(0, [text] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY(box);
        for (QAbstractButton *button : box->buttons()) {
            if (button->text() == text)
                return button->click();
        }
        box->reject();
        QFAIL("no such button");
    });
}

} // namespace

RecoveryEntry RecoveryDialogTest::entry(const QString &name, const QString &text) const
{
    RecoveryEntry result;
    result.file = name;
    result.content.path = m_folder.path() + '/' + name;
    result.content.text = text;
    return result;
}

void RecoveryDialogTest::initTestCase()
{
    qRegisterMetaType<RecoveryEntry>();
    TestFiles::writeFile(m_folder.path() + "/a.vc", "一\r\n二\r\n三\r\n");
    m_entries = {entry("a.vc", QStringLiteral("一\n贰\n三\n")), entry("b.vc", "new")};
    m_entries[0].content.baseHash = RecoveryStore::hashOf(m_folder.path() + "/a.vc");
    RecoveryEntry untitled;
    untitled.file = "c";
    untitled.content.title = QStringLiteral("未命名1");
    m_entries << untitled;
}

void RecoveryDialogTest::showsTheDifference()
{
    RecoveryDialog dialog(m_entries);
    const auto *list = dialog.findChild<QTreeWidget *>();
    QStringList rows;
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        rows << list->topLevelItem(i)->text(0) + ' ' + list->topLevelItem(i)->text(2);
    QCOMPARE(rows, (QStringList{"a.vc 文件未变", "b.vc 文件已不存在", "未命名1 从未保存"}));
    // The ends of lines are no difference.
    QCOMPARE(dialog.findChild<DifferenceView *>()->differenceCount(), 1);
}

void RecoveryDialogTest::restoresOneByOne()
{
    RecoveryDialog dialog(m_entries);
    QSignalSpy restored(&dialog, &RecoveryDialog::restoreRequested);
    auto *list = dialog.findChild<QTreeWidget *>();
    list->setCurrentItem(list->topLevelItem(1));
    press(dialog, QStringLiteral("恢复"));
    QCOMPARE(filesOf(restored), QStringLiteral("b.vc"));
    QCOMPARE(list->topLevelItemCount(), 2);
    press(dialog, QStringLiteral("恢复"));
    press(dialog, QStringLiteral("恢复"));
    QCOMPARE(restored.size(), 3);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void RecoveryDialogTest::restoresAll()
{
    RecoveryDialog dialog(m_entries);
    QSignalSpy restored(&dialog, &RecoveryDialog::restoreRequested);
    press(dialog, QStringLiteral("全部恢复"));
    QCOMPARE(filesOf(restored), QStringLiteral("a.vc b.vc c"));
}

void RecoveryDialogTest::discardsOnlyWhenSure()
{
    RecoveryDialog dialog(m_entries);
    QSignalSpy discarded(&dialog, &RecoveryDialog::discardRequested);
    answer(QStringLiteral("取消"));
    press(dialog, QStringLiteral("保留磁盘上的内容"));
    QVERIFY(discarded.isEmpty());
    answer(QStringLiteral("删除"));
    press(dialog, QStringLiteral("保留磁盘上的内容"));
    QCOMPARE(filesOf(discarded), QStringLiteral("a.vc"));
}

void RecoveryDialogTest::laterKeepsAll()
{
    RecoveryDialog dialog(m_entries);
    QSignalSpy restored(&dialog, &RecoveryDialog::restoreRequested);
    QSignalSpy discarded(&dialog, &RecoveryDialog::discardRequested);
    QSignalSpy finished(&dialog, &QDialog::finished);
    press(dialog, QStringLiteral("稍后"));
    QCOMPARE(finished.size(), 1);
    QVERIFY(restored.isEmpty() && discarded.isEmpty());
}

void RecoveryDialogTest::differencesAreWalked()
{
    DifferenceView view;
    view.setTexts({"l", "1\n2\n3\n4"}, {"r", "1\nx\ny\n4\n5"});
    QCOMPARE(view.differenceCount(), 2);
    QCOMPARE(view.currentDifference(), 0);
    view.goToPrevious();
    QCOMPARE(view.currentDifference(), 0);
    view.goToNext();
    view.goToNext();
    QCOMPARE(view.currentDifference(), 1);
    view.setTexts({"l", "1"}, {"r", "1"});
    QCOMPARE(view.currentDifference(), -1);
    view.goToNext();
    QCOMPARE(view.currentDifference(), -1);
}

void RecoveryDialogTest::columnsStayTogether()
{
    QString left, right;
    for (int i = 0; i < 300; ++i) {
        left += QStringLiteral("line\r\r%1\n").arg(i);
        right += i == 100 ? QString(50, '\n') : QStringLiteral("line\r\r%1\n").arg(i);
    }
    DifferenceView view;
    view.resize(600, 300);
    view.show();
    view.setTexts({"l", left}, {"r", right});
    const QList<DifferenceColumn *> columns = view.findChildren<DifferenceColumn *>();
    QCOMPARE(columns.size(), 2);
    QCOMPARE(columns.at(0)->lineCount(), columns.at(1)->lineCount());
    for (const int first : {0, 1}) {
        columns.at(first)->verticalScrollBar()->setValue(150 + first);
        QCOMPARE(columns.at(1 - first)->verticalScrollBar()->value(), 150 + first);
    }
    QVERIFY(!view.grab().isNull());
}

QTEST_MAIN(RecoveryDialogTest)
#include "recovery_dialog_test.moc"
