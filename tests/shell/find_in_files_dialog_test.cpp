// The dialog of finding and replacing in files.
#include "shell/find_in_files_dialog.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTreeWidget>
#include <QtTest>

namespace {

struct Fixture
{
    Fixture() { dialog.show(); }

    QLineEdit *field(const QString &name)
    {
        for (auto *field : dialog.findChildren<QLineEdit *>()) {
            if (field->accessibleName() == name)
                return field;
        }
        return nullptr;
    }
    QPushButton *button(const QString &start)
    {
        for (auto *button : dialog.findChildren<QPushButton *>()) {
            if (button->text().startsWith(start))
                return button;
        }
        return nullptr;
    }
    QString error() const { return dialog.findChild<QLabel *>("fieldError")->text(); }

    QList<SearchFile> files{{"/p/a.vc", "a.vc", QString("甲\n乙甲\n")},
                            {"/p/b.vc", "b.vc", QString("甲")}};
    FindInFilesDialog dialog{[this] { return files; }};
    QTreeWidget *preview = dialog.findChild<QTreeWidget *>();
    QSignalSpy started{&dialog, &FindInFilesDialog::searchStarted};
    QSignalSpy found{&dialog, &FindInFilesDialog::resultFound};
    QSignalSpy finished{&dialog, &FindInFilesDialog::searchFinished};
    QSignalSpy wanted{&dialog, &FindInFilesDialog::replaceRequested};
};

} // namespace

class FindInFilesDialogTest : public QObject
{
    Q_OBJECT

private slots:
    void listsResults();
    void replacesWhatIsChecked();
    void previewEndsWithItsQuery();
    void tellsOfABadPattern();
    void takesTheSelection();
};

void FindInFilesDialogTest::listsResults()
{
    Fixture f;
    QVERIFY(!f.button("查找全部")->isEnabled());
    f.field("查找内容")->setText("甲");
    QTest::keyClick(f.field("查找内容"), Qt::Key_Return);
    QTRY_COMPARE(f.finished.count(), 1);
    QCOMPARE(f.started.count(), 1);
    QCOMPARE(f.found,
             QList<QVariantList>({{"a.vc", 1, "甲"}, {"a.vc", 2, "乙甲"}, {"b.vc", 1, "甲"}}));
    QCOMPARE(f.finished[0][0].toString(), QString("在 2 个文件中找到 3 处"));
    QVERIFY(!f.preview->isVisible());
}

void FindInFilesDialogTest::replacesWhatIsChecked()
{
    Fixture f;
    f.field("查找内容")->setText("甲");
    f.field("替换为")->setText("丙");
    f.button("预览替换")->click();
    QTRY_COMPARE(f.finished.count(), 1);
    QCOMPARE(f.started.count() + f.found.count(), 0);
    QVERIFY(f.preview->isVisible());
    QCOMPARE(f.preview->topLevelItemCount(), 2);
    QTreeWidgetItem *first = f.preview->topLevelItem(0);
    QCOMPARE(first->text(0), QString("a.vc"));
    QCOMPARE(first->child(1)->text(0), QString("2: 乙甲"));
    QCOMPARE(first->child(1)->text(1), QString("乙丙"));
    QCOMPARE(f.button("替换选中的")->text(), QString("替换选中的 3 处"));

    first->child(0)->setCheckState(0, Qt::Unchecked);
    QTRY_COMPARE(f.button("替换选中的")->text(), QString("替换选中的 2 处"));
    f.preview->topLevelItem(1)->setCheckState(0, Qt::Unchecked);
    QTRY_COMPARE(f.button("替换选中的")->text(), QString("替换选中的 1 处"));
    f.button("替换选中的")->click();
    QCOMPARE(f.wanted.count(), 1);
    const auto files = f.wanted[0][0].value<QList<FileEdits>>();
    QCOMPARE(files.size(), 1);
    QCOMPARE(files[0].path, QString("/p/a.vc"));
    QCOMPARE(files[0].edits.size(), 1);
    QCOMPARE(files[0].edits[0].position, 3);
    QCOMPARE(files[0].edits[0].newText, QString("丙"));
    QVERIFY(!f.preview->isVisible());
}

void FindInFilesDialogTest::previewEndsWithItsQuery()
{
    Fixture f;
    f.field("查找内容")->setText("甲");
    f.button("预览替换")->click();
    QTRY_COMPARE(f.finished.count(), 1);
    f.field("替换为")->setText("丁");
    QVERIFY(!f.preview->isVisible());
    QVERIFY(!f.button("替换选中的")->isVisible());
    f.button("预览替换")->click();
    f.field("替换为")->setText("戊");
    QTest::qWait(50);
    QCOMPARE(f.preview->topLevelItemCount(), 0);
    QCOMPARE(f.finished.count(), 1);
}

void FindInFilesDialogTest::tellsOfABadPattern()
{
    Fixture f;
    for (auto *option : f.dialog.findChildren<QCheckBox *>())
        option->setChecked(option->text() == "正则表达式");
    f.field("查找内容")->setText("(甲");
    f.button("查找全部")->click();
    QVERIFY(f.error().startsWith("正则表达式有误"));
    QCOMPARE(f.started.count(), 0);
    f.field("查找内容")->setText("(甲)");
    f.button("查找全部")->click();
    QTRY_COMPARE(f.found.count(), 3);
    QCOMPARE(f.error(), QString());
}

void FindInFilesDialogTest::takesTheSelection()
{
    Fixture f;
    f.dialog.setSearchText("乙");
    QCOMPARE(f.field("查找内容")->selectedText(), QString("乙"));
    f.dialog.setSearchText("一\n二");
    f.dialog.setSearchText(QString());
    QCOMPARE(f.field("查找内容")->text(), QString("乙"));
}

QTEST_MAIN(FindInFilesDialogTest)
#include "find_in_files_dialog_test.moc"
