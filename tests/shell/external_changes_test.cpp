// Open files that another program has changed or removed.
#include "shell/external_change_dialog.h"
#include "shell/external_changes.h"

#include "test_files.h"

#include <QAbstractButton>
#include <QTemporaryDir>
#include <QTreeWidget>

class ExternalChangesTest : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void decides_data();
    void decides();
    void asksOnceForAll();
    void laterChangesWait();
    void watchesFilesOutside();
    void dialogTellsChoices_data();
    void dialogTellsChoices();
};

namespace {

using OpenTexts = QHash<QString, ExternalChanges::OpenText>;

ExternalChanges::FindText finder(const OpenTexts &texts)
{
    return [&texts](const QString &path) {
        const auto found = texts.find(path);
        return found == texts.end() ? std::nullopt : std::make_optional(*found);
    };
}

// "a.vc b.vc-": removed files are marked.
QString asked(const QSignalSpy &spy)
{
    QStringList names;
    for (const auto &change : spy.last().first().value<QList<ExternalChange>>())
        names << QFileInfo(change.path).fileName() + (change.isRemoved ? "-" : "");
    return names.join(' ');
}

} // namespace

void ExternalChangesTest::initTestCase()
{
    qRegisterMetaType<QList<ExternalChange>>();
}

void ExternalChangesTest::decides_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isModified");
    QTest::addColumn<QByteArray>("file"); // null: there is none
    QTest::addColumn<QString>("told");
    QTest::addRow("unchanged") << "1\n" << false << QByteArray("1\n") << "";
    QTest::addRow("other line ends") << "1\n" << false << QByteArray("1\r\n") << "";
    QTest::addRow("changed") << "1" << false << QByteArray("2") << "reload";
    QTest::addRow("emptied") << "1" << false << QByteArray("") << "reload";
    QTest::addRow("removed") << "1" << false << QByteArray() << "ask removed";
    QTest::addRow("no text any more") << "1" << false << QByteArray("\0\xff", 2) << "ask changed";
    QTest::addRow("mine is the same") << "1" << true << QByteArray("1") << "saved";
    QTest::addRow("both changed") << "1" << true << QByteArray("2") << "ask changed";
    QTest::addRow("removed while modified") << "1" << true << QByteArray() << "ask removed";
}

void ExternalChangesTest::decides()
{
    QFETCH(QString, text);
    QFETCH(bool, isModified);
    QFETCH(QByteArray, file);
    const QTemporaryDir folder;
    const QString path = folder.path() + "/a.vc";
    if (!file.isNull())
        TestFiles::writeFile(path, file);
    const OpenTexts texts{{path, {text, isModified}}};
    ExternalChanges changes(finder(texts));
    QString told;
    connect(&changes, &ExternalChanges::reloadRequested, [&] { told += "reload"; });
    connect(&changes, &ExternalChanges::takenAsSaved, [&] { told += "saved"; });
    connect(&changes, &ExternalChanges::questionsReady, [&](const QList<ExternalChange> &list) {
        QCOMPARE(list.size(), 1);
        QCOMPARE(list.first().text, text);
        told += list.first().isRemoved ? "ask removed" : "ask changed";
    });
    changes.onFileChanged(path);
    changes.onFileChanged(path);
    changes.onFileChanged(folder.path() + "/not open.vc");
    QTest::qWait(400); // also long enough for what must not be told
    QTEST(told, "told");
}

void ExternalChangesTest::asksOnceForAll()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/";
    TestFiles::writeFile(path + "b.vc", "theirs");
    const OpenTexts texts{{path + "b.vc", {"mine", true}}, {path + "a.vc", {"mine", false}}};
    ExternalChanges changes(finder(texts));
    QSignalSpy questions(&changes, &ExternalChanges::questionsReady);
    changes.onFileChanged(path + "b.vc");
    changes.onFileChanged(path + "a.vc");
    QTRY_COMPARE(questions.size(), 1);
    QCOMPARE(asked(questions), QStringLiteral("a.vc- b.vc"));
}

void ExternalChangesTest::laterChangesWait()
{
    const QTemporaryDir folder;
    const QString path = folder.path() + "/";
    const OpenTexts texts{{path + "a.vc", {"1", true}}, {path + "b.vc", {"1", true}}};
    ExternalChanges changes(finder(texts));
    QSignalSpy questions(&changes, &ExternalChanges::questionsReady);
    changes.onFileChanged(path + "a.vc");
    QTRY_COMPARE(questions.size(), 1);
    changes.onFileChanged(path + "b.vc");
    QTest::qWait(400);
    QCOMPARE(questions.size(), 1);
    changes.finishAsking();
    QTRY_COMPARE(questions.size(), 2);
    QCOMPARE(asked(questions), QStringLiteral("b.vc-"));
}

void ExternalChangesTest::watchesFilesOutside()
{
    const QTemporaryDir folder;
    const QString a = folder.path() + "/a.vc", b = folder.path() + "/b.vc";
    TestFiles::writeFile(a, "1");
    TestFiles::writeFile(b, "1");
    const OpenTexts texts{{a, {"1", false}}, {b, {"1", false}}};
    ExternalChanges changes(finder(texts));
    QSignalSpy reloads(&changes, &ExternalChanges::reloadRequested);
    changes.setOutsideFiles({a});
    TestFiles::writeFile(a, "2");
    QTRY_COMPARE(reloads.size(), 1);
    // A change in the very moment in which another file is opened.
    TestFiles::writeFile(a, "3");
    changes.setOutsideFiles({a, b});
    QTRY_COMPARE(reloads.size(), 2);
    QCOMPARE(reloads.last().first().toString(), a);
    TestFiles::writeFile(b, "own");
    changes.noteOwnWrite(b);
    QTest::qWait(500);
    QCOMPARE(reloads.size(), 2);
}

void ExternalChangesTest::dialogTellsChoices_data()
{
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<QString>("told");
    QTest::addRow("one by one") << QStringList{"保留我的", "使用磁盘上的", "关闭"}
                                << "keep a, reload b, close c";
    QTest::addRow("all mine") << QStringList{"全部保留我的"} << "keep a, keep b, keep c";
    QTest::addRow("all theirs, but closing is asked for")
        << QStringList{"全部使用磁盘上的", "保留在编辑器中"} << "reload b, reload a, keep c";
    QTest::addRow("closed") << QStringList{} << "keep a, keep b, keep c";
    QTest::addRow("after comparing")
        << QStringList{"比较", "使用磁盘上的"} << "reload a, keep b, keep c";
}

void ExternalChangesTest::dialogTellsChoices()
{
    QFETCH(QStringList, buttons);
    ExternalChangeDialog dialog({{"/x/a", "1", false}, {"/x/b", "2", false}, {"/x/c", "3", true}});
    QStringList told;
    const auto note = [&](const char *what) {
        return [&told, what](const QString &path) { told << what + path.mid(3); };
    };
    connect(&dialog, &ExternalChangeDialog::keepRequested, note("keep "));
    connect(&dialog, &ExternalChangeDialog::reloadRequested, note("reload "));
    connect(&dialog, &ExternalChangeDialog::closeRequested, note("close "));
    dialog.show();
    for (const QString &text : qAsConst(buttons)) {
        for (QAbstractButton *button : dialog.findChildren<QAbstractButton *>()) {
            if (button->text() == text)
                button->click();
        }
    }
    dialog.close();
    QTEST(told.join(", "), "told");
    QCOMPARE(dialog.findChild<QTreeWidget *>()->topLevelItemCount(), 0);
}

QTEST_MAIN(ExternalChangesTest)
#include "external_changes_test.moc"
