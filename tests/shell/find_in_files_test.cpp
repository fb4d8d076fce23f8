// Finding and replacing in files: which places are hits, and what becomes of the files.
#include "shell/find_in_files.h"

#include "project/project_info.h"
#include "shell/file_search.h"
#include "shell/text_file.h"
#include "test_files.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QTextDocument>

namespace {

QList<FileHit> hitsIn(const SearchFile &file, const QString &text, const SearchQuery &query)
{
    QList<FileHit> hits;
    const auto take = [&hits](const FileHit &hit) {
        hits << hit;
        return true;
    };
    const TextSearch search(query.text, query.options);
    return searchText(file, text, search, query.replacement, take).isEmpty() ? hits
                                                                             : QList<FileHit>();
}

QString replaced(QString text, const SearchQuery &query)
{
    const QList<FileEdits> files = editsOf(hitsIn({"a", "a", {}}, text, query));
    return files.isEmpty() || applyEdits(text, files.first().edits) ? text : "failed";
}

// A search that is waited for.
struct Search
{
    explicit Search(const QList<SearchFile> &files, const SearchQuery &query)
    {
        QObject::connect(&search, &FileSearch::hitsFound, [this](const QList<FileHit> &portion) {
            ++portions;
            for (const FileHit &hit : portion)
                hits << QString("%1:%2").arg(hit.name).arg(hit.line);
        });
        QObject::connect(&search, &FileSearch::finished, [this](const SearchSummary &end) {
            summary = end;
            isFinished = true;
        });
        error = search.start(files, query);
    }
    bool wait()
    {
        return QTest::qWaitFor([this] { return isFinished; }, 20000);
    }

    FileSearch search;
    QString error;
    QStringList hits;
    int portions = 0;
    SearchSummary summary;
    bool isFinished = false;
};

} // namespace

Q_DECLARE_METATYPE(SearchQuery)

class FindInFilesTest : public QObject
{
    Q_OBJECT

private slots:
    void finds_data();
    void finds();
    void refusesBadPatterns_data();
    void refusesBadPatterns();
    void replaces_data();
    void replaces();
    void replacesOnlyWhatWasFound();
    void keepsEncodings_data();
    void keepsEncodings();
    void tellsWhatItCouldNotWrite();
    void replacesInDocumentsInOneStep();
    void searchesTheFilesOfAProject();
    void searchesInPortions();
    void canBeCancelled();
    void newSearchEndsTheFormer();
    void givesUpOnEndlessExpressions();
};

void FindInFilesTest::finds_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("options"); // "c" case, "w" word, "r" regular expression
    QTest::addColumn<QString>("sought");
    QTest::addColumn<QStringList>("places");
    QTest::newRow("lines") << "输出(1)\n\n  输出(2)"
                           << ""
                           << "输出" << QStringList{"1:1 输出", "3:3 输出"};
    QTest::newRow("case ignored") << "Abc abC"
                                  << ""
                                  << "ABC" << QStringList{"1:1 Abc", "1:5 abC"};
    QTest::newRow("case") << "Abc abC"
                          << "c"
                          << "abC" << QStringList{"1:5 abC"};
    QTest::newRow("word") << "计数 计数器 我计数 计数_1 (计数)"
                          << "w"
                          << "计数" << QStringList{"1:1 计数", "1:18 计数"};
    QTest::newRow("word with signs") << "a+b aa+b"
                                     << "w"
                                     << "a+b" << QStringList{"1:1 a+b"};
    QTest::newRow("signs are signs") << "a.c abc"
                                     << ""
                                     << "a.c" << QStringList{"1:1 a.c"};
    QTest::newRow("expression") << "甲1 乙22"
                                << "r"
                                << "[0-9]+" << QStringList{"1:2 1", "1:5 22"};
    QTest::newRow("choice as word") << "甲 甲乙 乙"
                                    << "rw"
                                    << "甲|乙" << QStringList{"1:1 甲", "1:6 乙"};
    QTest::newRow("nothing is no hit") << "baab"
                                       << "r"
                                       << "a*" << QStringList{"1:2 aa"};
    QTest::newRow("ends of lines") << "a;\r\nb;\r\n"
                                   << "r"
                                   << ";$" << QStringList{"1:2 ;", "2:2 ;"};
    QTest::newRow("never over lines") << "a\nb"
                                      << "r"
                                      << "a\\sb" << QStringList();
    QTest::newRow("outside of the first plane") << "😀a😀a"
                                                << ""
                                                << "a" << QStringList{"1:3 a", "1:6 a"};
}

void FindInFilesTest::finds()
{
    QFETCH(QString, text);
    QFETCH(QString, options);
    QFETCH(QString, sought);
    const SearchQuery query{
        sought, {options.contains('c'), options.contains('w'), options.contains('r')}, ""};
    QStringList places; // "line:column match"
    for (const FileHit &hit : hitsIn({}, text, query)) {
        places << QString("%1:%2 %3").arg(hit.line).arg(hit.column).arg(hit.match);
        QVERIFY(text.split('\n').at(hit.line - 1).startsWith(hit.lineText));
        QCOMPARE(hit.lineText.mid(hit.column - 1, hit.match.size()), hit.match);
    }
    QTEST(places, "places");
}

void FindInFilesTest::refusesBadPatterns_data()
{
    QTest::addColumn<SearchQuery>("query");
    QTest::addColumn<QString>("error");
    QTest::newRow("nothing") << SearchQuery{} << "请输入要查找的内容。";
    QTest::newRow("bracket") << SearchQuery{"(甲", {false, true, true}, ""}
                             << "正则表达式有误：第 2 个字符附近的写法不对（比如括号没有配对）。";
    // Would be valid between the brackets that a whole word gets.
    QTest::newRow("closing only")
        << SearchQuery{"甲)|(乙", {false, true, true}, ""}
        << "正则表达式有误：第 1 个字符附近的写法不对（比如括号没有配对）。";
    QTest::newRow("plain bracket") << SearchQuery{"(甲", {false, true, false}, ""} << "";
}

void FindInFilesTest::refusesBadPatterns()
{
    QFETCH(SearchQuery, query);
    QFETCH(QString, error);
    QCOMPARE(FileSearch().start({}, query), error);
}

void FindInFilesTest::replaces_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isExpression");
    QTest::addColumn<QString>("sought");
    QTest::addColumn<QString>("replacement");
    QTest::addColumn<QString>("result");
    QTest::newRow("longer") << "a a\na" << false << "a"
                            << "甲乙"
                            << "甲乙 甲乙\n甲乙";
    QTest::newRow("shorter") << "甲乙\r\n甲乙" << false << "甲乙"
                             << ""
                             << "\r\n";
    QTest::newRow("contains itself") << "aa" << false << "a"
                                     << "aa"
                                     << "aaaa";
    QTest::newRow("plain backslash") << "a" << false << "a"
                                     << "\\0"
                                     << "\\0";
    QTest::newRow("groups") << "名=值" << true << "(\\w+)=(\\w+)"
                            << "\\2=\\1$1"
                            << "值=名$1";
    QTest::newRow("missing group") << "ab" << true << "a(x)?b"
                                   << "[\\1\\7\\0]"
                                   << "[ab]";
}

void FindInFilesTest::replaces()
{
    QFETCH(QString, text);
    QFETCH(bool, isExpression);
    QFETCH(QString, sought);
    QFETCH(QString, replacement);
    QFETCH(QString, result);
    QCOMPARE(replaced(text, {sought, {true, false, isExpression}, replacement}), result);
}

void FindInFilesTest::replacesOnlyWhatWasFound()
{
    const QList<TextEdit> edits{{0, "甲", "乙"}, {2, "甲", "乙"}};
    QString text = "甲 丙";
    QVERIFY(!applyEdits(text, edits));
    QCOMPARE(text, QString("甲 丙"));
    text = "甲";
    QVERIFY(!applyEdits(text, edits));
    QCOMPARE(text, QString("甲"));
}

void FindInFilesTest::keepsEncodings_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("after");
    QTest::newRow("utf8") << QByteArray("甲=1\n") << QByteArray("乙=1\n");
    QTest::newRow("mark and line ends")
        << QByteArray("\xEF\xBB\xBF甲\r\n甲\n") << QByteArray("\xEF\xBB\xBF乙\r\n乙\n");
    const QTextCodec *old = QTextCodec::codecForName("GB18030");
    QVERIFY(old);
    QTest::newRow("GB18030") << old->fromUnicode("中文甲\r\n") << old->fromUnicode("中文乙\r\n");
    QTest::newRow("UTF-16") << QByteArray("\xFF\xFE\x32\x75\r\0\n\0", 8)
                            << QByteArray("\xFF\xFE\x59\x4E\r\0\n\0", 8);
}

void FindInFilesTest::keepsEncodings()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, after);
    const QTemporaryDir dir;
    const SearchFile file{dir.filePath("a.vc"), "a.vc", {}};
    TestFiles::writeFile(file.path, before);
    const QString text = TextFile::readExactly(file.path).text;
    const QList<FileEdits> edits = editsOf(hitsIn(file, text, {"甲", {}, "乙"}));
    QCOMPARE(edits.size(), 1);
    QCOMPARE(applyEditsToFile(edits.first()), QString());
    QCOMPARE(TestFiles::readFile(file.path), after);
    QVERIFY(applyEditsToFile(edits.first()).contains("在查找之后变了"));
    QCOMPARE(TestFiles::readFile(file.path), after);
}

void FindInFilesTest::tellsWhatItCouldNotWrite()
{
    const QTemporaryDir dir;
    TestFiles::writeFile(dir.filePath("好.vc"), "甲");
    const ReplaceOutcome outcome = replaceInFiles(
        {{dir.filePath("好.vc"), {{0, "甲", "乙"}}}, {dir.filePath("没有.vc"), {{0, "甲", "乙"}}}},
        [](const QString &) { return nullptr; });
    QCOMPARE(outcome.text(), QString("在 1 个文件中替换了 1 处，1 个文件没有替换"));
    QCOMPARE(outcome.errors.size(), 1);
    QVERIFY(outcome.errors.first().contains("没有.vc"));
}

void FindInFilesTest::replacesInDocumentsInOneStep()
{
    QTextDocument document;
    document.setPlainText("甲\n乙甲\n");
    const QList<TextEdit> edits{{0, "甲", "丙丙"}, {3, "甲", ""}};
    const ReplaceOutcome outcome =
        replaceInFiles({{"/没有/a.vc", edits}}, [&document](const QString &) { return &document; });
    QCOMPARE(outcome.text(), QString("在 1 个文件中替换了 2 处"));
    QCOMPARE(document.toPlainText(), QString("丙丙\n乙\n"));
    document.undo();
    QCOMPARE(document.toPlainText(), QString("甲\n乙甲\n"));
    QVERIFY(!document.isUndoAvailable());
}

void FindInFilesTest::searchesTheFilesOfAProject()
{
    const QTemporaryDir dir;
    TestFiles::writeFile(dir.filePath("source/a.vc"), "甲\n乙\n甲\n");
    TestFiles::writeFile(dir.filePath("source/b.vc"), "甲\n");
    TestFiles::writeFile(dir.filePath("resource/c.txt"), "甲\n");
    TestFiles::writeFile(dir.filePath("resource/d.png"), QByteArray("甲\0", 4));
    VL::ProjectInfo info;
    info.path = dir.path();
    info.sourceFiles = QStringList{"source/a.vc", "source/b.vc"};
    info.resourceFiles = QStringList{"resource/c.txt", "resource/d.png", "resource/e.txt"};
    // What the editor holds counts, not what was saved.
    const QHash<QString, QString> live{{dir.filePath("source/b.vc"), "乙\n乙\n甲"}};
    Search search(searchFilesOf(info, live), {"甲", {}, ""});
    QCOMPARE(search.error, QString());
    QVERIFY(search.wait());
    QCOMPARE(search.hits,
             QStringList({"source/a.vc:1", "source/a.vc:3", "source/b.vc:3", "resource/c.txt:1"}));
    QCOMPARE(search.summary.text(),
             QString("在 3 个文件中找到 4 处，跳过 2 个不是文本或打不开的文件"));
    QVERIFY(!search.search.isRunning());
}

void FindInFilesTest::searchesInPortions()
{
    const QString text = QString("a\n").repeated(FileSearch::maxHits + 1);
    Search search({{"/a", "a", text}, {"/b", "b", QString("a")}}, {"a", {}, ""});
    QVERIFY(search.wait());
    QCOMPARE(search.hits.size(), FileSearch::maxHits);
    QVERIFY(search.portions > 1);
    QVERIFY(search.summary.hitLimit);
    QCOMPARE(search.summary.text(), QString("在 1 个文件中找到 10000 处，还有更多没有列出"));
}

void FindInFilesTest::canBeCancelled()
{
    // Much to read, so that the end is far.
    const SearchFile file{"/a", "a", QString("b\n").repeated(200000) + 'a'};
    QList<SearchFile> files;
    for (int i = 0; i < 200; ++i)
        files << file;
    Search search(files, {"a", {}, ""});
    search.search.cancel();
    QVERIFY(search.wait());
    QVERIFY(search.summary.wasCancelled);
    QVERIFY(search.hits.size() < 200);
}

void FindInFilesTest::newSearchEndsTheFormer()
{
    const SearchFile file{"/a", "a", QString("x\n").repeated(1000)};
    Search search({file, file, file}, {"x", {}, ""});
    QCOMPARE(search.search.start({{"/b", "b", QString("x")}}, {"x", {}, ""}), QString());
    QVERIFY(search.wait());
    QCOMPARE(search.hits, QStringList{"b:1"});
    search.search.start({file}, {"x", {}, ""});
    search.search.abandon();
    QTest::qWait(20);
    QCOMPARE(search.hits, QStringList{"b:1"});
}

void FindInFilesTest::givesUpOnEndlessExpressions()
{
    const SearchFile file{"/a", "a", QString(60, 'a') + '!'};
    Search search({file, {"/b", "b", QString("b")}}, {"(a+)+$|b", {false, false, true}, ""});
    QVERIFY(search.wait());
    QCOMPARE(search.summary.text(), QString("没有找到，表达式太复杂，查找已中止"));
}

QTEST_MAIN(FindInFilesTest)
#include "find_in_files_test.moc"
