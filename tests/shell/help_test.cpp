// What the help says holds: its programs compile, its pages are found, its keys are the real ones.
#include "frontend/parse_helper.h"
#include "frontend/semantic_checks.h"
#include "shell/about_dialog.h"
#include "shell/changelog_dialog.h"
#include "shell/help_window.h"
#include "shell/shortcuts_guide.h"
#include "shell/template_library.h"
#include "shell/update_check.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QtTest>

class HelpTest : public QObject
{
    Q_OBJECT

private slots:
    void programsAreSound_data();
    void programsAreSound();
    void libraryHandsOutTheChosenProgram();
    void searchLeavesPagesThatHoldTheWords();
    void changelogNamesThisVersion();
    void aboutTellsTheVersion();
    void guideListsKeysAndFilters();
    void everyEditorKeyCanBeRead();
    void comparesVersions_data();
    void comparesVersions();
    void tellsOfAMissingAddress();
    void readsTheServersAnswer_data();
    void readsTheServersAnswer();
};

namespace {

QStringList problemsOf(const QString &source)
{
    ParseHelper helper;
    const std::unique_ptr<Parser::ASTNode> tree(helper.parseSource(source));
    QStringList problems = helper.getParserErrors();
    const ProgramContext context;
    for (const SourceMessage &message :
         checkSemantics(tree.get(), helper.getClassRegistry(), context))
        problems.append(message.text);
    return problems;
}

} // namespace

void HelpTest::programsAreSound_data()
{
    QTest::addColumn<QString>("source");
    for (const ProgramTemplate &program : programTemplates()) {
        QVERIFY(!program.name.isEmpty() && !program.description.isEmpty());
        QTest::addRow("%s", qPrintable(program.name)) << program.source;
    }
    for (const DocumentPage &page : helpPages()) {
        const QStringList parts = page.text.split("```\n");
        QVERIFY(!page.title.isEmpty() && parts.size() % 2 == 1);
        for (int i = 1; i < parts.size(); i += 2)
            QTest::addRow("%s %d", qPrintable(page.title), i / 2 + 1) << parts.at(i);
    }
}

void HelpTest::programsAreSound()
{
    QFETCH(QString, source);
    QVERIFY(source.contains("函数 主函数()"));
    QCOMPARE(problemsOf(source), QStringList());
    // So that a fault would have been seen.
    QVERIFY(!problemsOf(source + "函数 坏() {\n没有这个名字(1)\n}\n").isEmpty());
}

void HelpTest::libraryHandsOutTheChosenProgram()
{
    TemplateLibrary library;
    QSignalSpy inserted(&library, &TemplateLibrary::insertRequested);
    QSignalSpy created(&library, &TemplateLibrary::newFileRequested);
    library.findChild<QListWidget *>()->setCurrentRow(2);
    for (auto *button : library.findChildren<QPushButton *>()) {
        if (button->text() != "关闭")
            button->click();
    }
    QCOMPARE(inserted.value(0).value(0).toString(), programTemplates().at(2).source);
    QCOMPARE(created.value(0).value(0).toString(), programTemplates().at(2).source);
}

void HelpTest::searchLeavesPagesThatHoldTheWords()
{
    HelpWindow window;
    auto *contents = window.findChild<QListWidget *>();
    auto *browser = window.findChild<QTextBrowser *>();
    auto *search = window.findChild<QLineEdit *>();
    QCOMPARE(contents->count(), helpPages().size());
    QVERIFY(browser->toPlainText().contains("第一个程序"));
    search->setText("置随机种子");
    QCOMPARE(contents->currentItem()->text(), QString("常见问题"));
    QVERIFY(contents->item(0)->isHidden());
    QCOMPARE(browser->extraSelections().size(), 2);
    search->setText("没有这样的词");
    QVERIFY(contents->item(3)->isHidden());
    search->clear();
    QVERIFY(!contents->item(0)->isHidden());
    QVERIFY(browser->extraSelections().isEmpty());
}

void HelpTest::changelogNamesThisVersion()
{
    QVERIFY(changelogPage().text.contains("## " VOREL_VERSION));
    ChangelogDialog dialog;
    QCOMPARE(dialog.windowTitle(), QString("更新日志"));
    QVERIFY(dialog.findChild<QTextBrowser *>()->toPlainText().contains(VOREL_VERSION));
}

void HelpTest::aboutTellsTheVersion()
{
    QCoreApplication::setApplicationVersion("7.8.9");
    AboutDialog dialog;
    QString text;
    for (const auto *label : dialog.findChildren<QLabel *>())
        text += label->text();
    QVERIFY(text.contains("7.8.9"));
    QVERIFY(text.contains(qVersion()));
}

void HelpTest::guideListsKeysAndFilters()
{
    QAction build("编译(&B)", nullptr);
    build.setShortcut(QKeySequence("F7"));
    QAction open("打开文件(&P)...", nullptr);
    open.setShortcut(QKeySequence("Ctrl+O"));
    QAction none("关于(&A)...", nullptr);
    const auto rows = actionShortcuts("菜单", {&build, &open, &none});
    QCOMPARE(rows.size(), 2);
    QCOMPARE(rows.at(1).name, QString("打开文件"));

    ShortcutsGuide guide({&build, &open, &none});
    auto *table = guide.findChild<QTreeWidget *>();
    const auto visible = [&] {
        QStringList names;
        for (QTreeWidgetItemIterator row(table, QTreeWidgetItemIterator::NotHidden); *row; ++row) {
            if ((*row)->parent() && !(*row)->parent()->isHidden())
                names.append((*row)->text(0));
        }
        return names;
    };
    QCOMPARE(visible().size(), 2 + editorShortcuts().size());
    guide.findChild<QLineEdit *>()->setText("f7");
    QCOMPARE(visible(), QStringList{"编译"});
    guide.findChild<QLineEdit *>()->setText("书签");
    QCOMPARE(visible().size(), 3);
}

void HelpTest::everyEditorKeyCanBeRead()
{
    QVERIFY(!editorShortcuts().isEmpty());
    for (const ShortcutRow &row : editorShortcuts()) {
        const QKeySequence keys(row.keys);
        QVERIFY2(keys.count() == 1 && keys[0] != Qt::Key_unknown, qPrintable(row.keys));
        QVERIFY(!row.name.isEmpty() && !row.group.isEmpty());
    }
}

void HelpTest::comparesVersions_data()
{
    QTest::addColumn<QString>("other");
    QTest::addColumn<QString>("current");
    QTest::addColumn<bool>("newer");
    QTest::newRow("same") << "1.2.3"
                          << "1.2.3" << false;
    QTest::newRow("last number") << "1.2.4"
                                 << "1.2.3" << true;
    QTest::newRow("older") << "1.2.9"
                           << "1.3" << false;
    QTest::newRow("as numbers") << "1.10"
                                << "1.9" << true;
    QTest::newRow("zeros") << "1.0.0"
                           << "1" << false;
    QTest::newRow("letter in front") << "v2.0"
                                     << "1.9" << true;
    QTest::newRow("words behind") << "1.2.3-beta"
                                  << "1.2.3" << false;
    QTest::newRow("no version") << "new"
                                << "0.1" << false;
}

void HelpTest::comparesVersions()
{
    QFETCH(QString, other);
    QFETCH(QString, current);
    QTEST(isNewerVersion(other, current), "newer");
}

void HelpTest::tellsOfAMissingAddress()
{
    UpdateCheck update{QUrl()};
    QSignalSpy failed(&update, &UpdateCheck::failed);
    update.check();
    QCOMPARE(failed.value(0).value(0).toString(), QString("没有设置更新地址，无法检查更新。"));
}

void HelpTest::readsTheServersAnswer_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("told");
    const QByteArray ok = "HTTP/1.0 200 OK\r\n\r\n";
    QTest::newRow("newer")
        << ok + "{\"version\":\"2.0\",\"url\":\"https://example.invalid/\",\"notes\":\"n\"}"
        << "2.0 https://example.invalid/ n";
    QTest::newRow("a page that is no page")
        << ok + "{\"version\":\"2.0\",\"url\":\"file:///etc/passwd\"}"
        << "2.0  ";
    QTest::newRow("the same") << ok + "{\"version\":\"1.0\"}"
                              << "1.0";
    QTest::newRow("no JSON") << ok + "<html>"
                             << "服务器返回的数据无效（非 JSON）。";
    QTest::newRow("no version") << ok + "{}"
                                << "服务器未提供 version 字段。";
    QTest::newRow("no number") << ok + "{\"version\":\"新\"}"
                               << "服务器版本号格式无效：新";
    QTest::newRow("refused") << QByteArray("HTTP/1.0 404 Not Found\r\n\r\n")
                             << "无法获取服务器版本信息：";
    QTest::newRow("hangs up") << QByteArray() << "无法获取服务器版本信息：";
}

void HelpTest::readsTheServersAnswer()
{
    QFETCH(QByteArray, answer);
    QCoreApplication::setApplicationVersion("1.0");
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, this, [&] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket, answer] {
            socket->readAll();
            socket->write(answer);
            socket->disconnectFromHost();
        });
    });
    UpdateCheck update(QUrl(QString("http://127.0.0.1:%1/").arg(server.serverPort())));
    QStringList told;
    connect(&update, &UpdateCheck::newerFound, this,
            [&](const QString &version, const QUrl &page, const QString &notes) {
                told.append(version + ' ' + page.toString() + ' ' + notes);
            });
    connect(&update, &UpdateCheck::upToDate, this, [&](const QString &v) { told.append(v); });
    connect(&update, &UpdateCheck::failed, this, [&](const QString &m) { told.append(m); });
    update.check();
    update.check(); // is not begun
    QTRY_COMPARE(told.size(), 1);
    // What the network says of itself is not ours.
    QTEST(told.first().section("请检查", 0, 0), "told");
}

QTEST_MAIN(HelpTest)
#include "help_test.moc"
