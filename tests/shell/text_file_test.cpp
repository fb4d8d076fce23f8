// Texts as they lie on the disk: what is read, what is refused, what is written back.
#include "shell/text_file.h"

#include "driver/source_text.h"
#include "test_files.h"

#include <QTemporaryDir>

#ifdef Q_OS_UNIX
#include <csignal>
#include <sys/resource.h>
#endif

class TextFileTest : public QObject
{
    Q_OBJECT

private slots:
    void reads_data();
    void reads();
    void refuses_data();
    void refuses();
    void refusesHugeFiles();
    void tellsWhatCannotBeWritten_data();
    void tellsWhatCannotBeWritten();
    void refusesWhatTheEncodingLacks();
    void fullDiskLeavesTheOldText();
};

void TextFileTest::reads_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("notice");
    // What saving makes of it; nothing: the same bytes.
    QTest::addColumn<QByteArray>("saved");
    const QString none;
    QTest::addRow("empty") << QByteArray("") << "" << none << QByteArray();
    QTest::addRow("UTF-8") << QByteArray("变量\n") << "变量\n" << none << QByteArray();
    QTest::addRow("with mark") << QByteArray("\xEF\xBB\xBF甲\n") << "甲\n" << none << QByteArray();
    QTest::addRow("mark alone") << QByteArray("\xEF\xBB\xBF") << "" << none << QByteArray();
    QTest::addRow("Windows") << QByteArray("甲\r\n乙\r\n") << "甲\n乙\n" << none << QByteArray();
    QTest::addRow("mostly Windows") << QByteArray("1\r\n2\r\n3\n") << "1\n2\n3\n"
                                    << none << QByteArray("1\r\n2\r\n3\r\n");
    QTest::addRow("mostly not Windows") << QByteArray("1\r\n2\n3\n") << "1\n2\n3\n"
                                        << none << QByteArray("1\n2\n3\n");
    QTest::addRow("lone returns") << QByteArray("1\r2") << "1\n2" << none << QByteArray("1\n2");
    QTest::addRow("blanks and separators of other kinds")
        << QByteArray("1\u00A02\u20283\t") << "1\u00A02\u20283\t" << none << QByteArray();
    QTest::addRow("paragraphs") << QByteArray("1\u20292\r\n") << "1\n2\n"
                                << "分段符号" << QByteArray("1\r\n2\r\n");
    QTest::addRow("beyond the first plane") << QByteArray("😀") << "😀" << none << QByteArray();
    QTest::addRow("GBK") << QByteArray("\xB1\xE4\xC1\xBF\r\n") << "变量\n"
                         << "GBK" << QByteArray("变量\r\n");
    QTest::addRow("UTF-16") << QByteArray("\xFF\xFE\x32\x75\n\0", 6) << "甲\n"
                            << "UTF-16" << QByteArray("甲\n");
    QTest::addRow("UTF-16, big end first") << QByteArray("\xFE\xFF\x75\x32", 4) << "甲"
                                           << "UTF-16" << QByteArray("甲");
}

void TextFileTest::reads()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, saved);
    const QTemporaryDir folder;
    const QString path = folder.filePath("甲.vc");
    TestFiles::writeFile(path, bytes);
    const ReadText exact = TextFile::readExactly(path);
    QCOMPARE(exact.error + exact.notice, QString());
    QCOMPARE(TextFile::write(path, exact.text, exact.form), QString());
    QCOMPARE(TestFiles::readFile(path), bytes);
    const ReadText read = TextFile::read(path);
    QCOMPARE(read.error, QString());
    QTEST(read.text, "text");
    QFETCH(QString, notice);
    QCOMPARE(read.notice.isEmpty(), notice.isEmpty());
    QVERIFY2(read.notice.contains(notice), qPrintable(read.notice));
    QCOMPARE(TextFile::write(path, read.text, read.form), QString());
    QCOMPARE(TestFiles::readFile(path), saved.isNull() ? bytes : saved);
}

void TextFileTest::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes"); // none: a folder
    QTest::addRow("program") << QByteArray("MZ\x90\0\3\0\0\0", 8);
    QTest::addRow("no encoding at all") << QByteArray("\xFF\xFF\xFF\x80");
    QTest::addRow("half a sign behind the mark") << QByteArray("\xEF\xBB\xBF\xE7\x94");
    QTest::addRow("half of UTF-16") << QByteArray("\xFF\xFE\x32", 3);
    QTest::addRow("folder") << QByteArray();
}

// Opening and saving them would destroy them.
void TextFileTest::refuses()
{
    QFETCH(QByteArray, bytes);
    const QTemporaryDir folder;
    const QString path = folder.filePath("数据.vc");
    if (bytes.isNull())
        QVERIFY(QDir().mkdir(path));
    else
        TestFiles::writeFile(path, bytes);
    const ReadText read = TextFile::read(path);
    QVERIFY(!read.succeeded());
    QVERIFY2(read.error.contains("数据.vc"), qPrintable(read.error));
    QVERIFY(!TextFile::read(folder.filePath("没有.vc")).succeeded());
}

void TextFileTest::refusesHugeFiles()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath("大.vc"));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(maxSourceBytes + 1));
    const ReadText read = TextFile::read(file.fileName());
    QVERIFY2(read.error.startsWith("文件过大"), qPrintable(read.error));
}

void TextFileTest::tellsWhatCannotBeWritten_data()
{
    QTest::addColumn<QString>("name");
    QTest::addRow("only for reading") << "只读.vc";
    QTest::addRow("folder is gone") << "没有/甲.vc";
    QTest::addRow("a folder has the name") << "夹";
}

void TextFileTest::tellsWhatCannotBeWritten()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QString readOnly = folder.filePath("只读.vc");
    TestFiles::writeFile(readOnly, "old");
    QVERIFY(QFile::setPermissions(readOnly, QFile::ReadOwner));
    QVERIFY(QDir(folder.path()).mkdir("夹"));
    const QString path = folder.filePath(name);
    if (path == readOnly && QFileInfo(path).isWritable())
        QSKIP("this user may write everything");
    const QString error = TextFile::write(path, "new", {});
    QVERIFY2(error.startsWith("无法保存文件") && error.contains(QFileInfo(name).fileName()),
             qPrintable(error));
    QCOMPARE(TestFiles::readFile(readOnly), QByteArray("old"));
}

void TextFileTest::refusesWhatTheEncodingLacks()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath("甲.vc");
    TestFiles::writeFile(path, "old");
    TextForm form;
    form.encoding = TextForm::Encoding::Gb18030;
    QVERIFY(!TextFile::write(path, QString(QChar(0xD800)), form).isEmpty());
    QCOMPARE(TestFiles::readFile(path), QByteArray("old"));
}

void TextFileTest::fullDiskLeavesTheOldText()
{
#ifdef Q_OS_UNIX
    const QTemporaryDir folder;
    const QString path = folder.filePath("甲.vc");
    TestFiles::writeFile(path, "old");
    rlimit before{};
    QCOMPARE(getrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{4096, before.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &small), 0);
    const QString error = TextFile::write(path, QString(100000, 'x'), {});
    QCOMPARE(setrlimit(RLIMIT_FSIZE, &before), 0);
    QVERIFY2(error.startsWith("无法保存文件"), qPrintable(error));
    QCOMPARE(TestFiles::readFile(path), QByteArray("old"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList{"甲.vc"});
#else
    QSKIP("there is no limit to set");
#endif
}

QTEST_GUILESS_MAIN(TextFileTest)
#include "text_file_test.moc"
