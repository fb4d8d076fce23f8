// Reading and merging sources: any bytes give a text or a sentence with the right line.
#include "driver/driver_test.h"
#include "driver/source_merger.h"
#include "driver/source_text.h"

#include <QTemporaryDir>

using DriverTest::writeFile;

class SourceInputTest : public QObject
{
    Q_OBJECT

private slots:
    void decodes_data();
    void decodes();
    void refuses_data();
    void refuses();
    void refusesWhatIsNoFile();
    void mergesEveryKindInOrder();
    void mapsEachLineToItsFile();
    void mapsTypeBlocksToTheirFile_data();
    void mapsTypeBlocksToTheirFile();
    void reportsEveryBrokenFile();
    void takesTheProjectFolderWithoutSourceFolder();
};

void SourceInputTest::decodes_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    QTest::addRow("plain") << QByteArray("a\nb\n") << "a\nb\n";
    QTest::addRow("chinese") << QByteArray("输出") << "输出";
    QTest::addRow("mark dropped") << QByteArray("\xEF\xBB\xBF甲") << "甲";
    QTest::addRow("crlf") << QByteArray("a\r\nb\r\n") << "a\nb\n";
    QTest::addRow("cr only") << QByteArray("a\rb\r") << "a\nb\n";
    QTest::addRow("mixed") << QByteArray("a\r\n\rb\n") << "a\n\nb\n";
    QTest::addRow("surrogate pair") << QByteArray("\xF0\x9F\x98\x80") << QStringLiteral("😀");
    QTest::addRow("empty") << QByteArray() << "";
}

void SourceInputTest::decodes()
{
    QFETCH(QByteArray, bytes);
    const SourceText source = decodeSource(bytes, QStringLiteral("a.vc"));
    QCOMPARE(source.error, QString());
    QTEST(source.text, "text");
}

void SourceInputTest::refuses_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("line");
    QTest::addColumn<QString>("part");
    QTest::addRow("utf-16 le") << QByteArray("\xFF\xFE"
                                             "a\0b\0",
                                             6)
                               << 0 << "另存为 UTF-8";
    QTest::addRow("utf-16 be") << QByteArray("\xFE\xFF\0a\0b", 6) << 0 << "另存为 UTF-8";
    QTest::addRow("utf-16 without mark") << QByteArray("a\0b\0\n\0c\0", 8) << 0 << "另存为 UTF-8";
    QTest::addRow("nul") << QByteArray("ab\ncd\0ef\n0123456789", 19) << 2 << "空字符";
    QTest::addRow("gbk") << QByteArray("a\n\xCA\xE4\xB3\xF6") << 2 << "UTF-8";
    QTest::addRow("invalid behind cr") << QByteArray("a\rb\r\xFF") << 3 << "UTF-8";
    QTest::addRow("cut off") << QByteArray("\n\n\xE8\xBE") << 3 << "UTF-8";
    QTest::addRow("overlong") << QByteArray("\xC0\xAF") << 1 << "UTF-8";
    QTest::addRow("lone surrogate") << QByteArray("\xED\xA0\x80") << 1 << "UTF-8";
    QTest::addRow("too high") << QByteArray("\xF4\x90\x80\x80") << 1 << "UTF-8";
}

void SourceInputTest::refuses()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, part);
    const SourceText source = decodeSource(bytes, QStringLiteral("a.vc"));
    QVERIFY2(source.error.contains(part), qPrintable(source.error));
    QTEST(source.line, "line");
}

void SourceInputTest::refusesWhatIsNoFile()
{
    QTemporaryDir dir;
    QVERIFY(readSourceFile(dir.filePath(QStringLiteral("x.vc")), QStringLiteral("x.vc"))
                .error.contains(QStringLiteral("找不到文件：x.vc")));
    QVERIFY(readSourceFile(dir.path(), QStringLiteral("d"))
                .error.contains(QStringLiteral("“d”是文件夹")));
#ifdef Q_OS_LINUX
    QVERIFY(readSourceFile(QStringLiteral("/dev/zero"), QStringLiteral("z"))
                .error.contains(QStringLiteral("不是普通文件")));
#endif
    // A sparse file: large without taking space.
    const QString large = dir.filePath(QStringLiteral("大.vc"));
    QFile file(large);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(maxSourceBytes + 1));
    QVERIFY(readSourceFile(large, QStringLiteral("大.vc"))
                .error.contains(QStringLiteral("源文件过大（48 MB）：大.vc。单文件上限约 48 MB")));
}

void SourceInputTest::mergesEveryKindInOrder()
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("source/b.vc")), "乙\n");
    writeFile(dir.filePath(QStringLiteral("source/a.vc")), "甲");
    writeFile(dir.filePath(QStringLiteral("source/类.vpp")), "丙");
    writeFile(dir.filePath(QStringLiteral("source/型.vt")), "丁");
    writeFile(dir.filePath(QStringLiteral("source/说明.txt")), "不读");
    const MergedSource merged = mergeProject(dir.path());
    QVERIFY(merged.errors.isEmpty());
    QCOMPARE(merged.text, QStringLiteral("// ===== a.vc =====\n甲\n\n"
                                         "// ===== b.vc =====\n乙\n\n\n"
                                         "// ===== 类定义类.vpp =====\n丙\n\n"
                                         "// ===== 类型定义型.vt =====\n丁\n\n"));
}

void SourceInputTest::mapsEachLineToItsFile()
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("source/a.vc")), "一\n二\n");
    writeFile(dir.filePath(QStringLiteral("source/b.vc")), "");
    writeFile(dir.filePath(QStringLiteral("source/c.vc")), "三\n四");
    const MergedSource merged = mergeProject(dir.path());
    const QStringList lines = merged.text.split(QLatin1Char('\n'));
    const QString file[] = {QStringLiteral("source/a.vc"), QStringLiteral("source/c.vc")};
    const QString words = QStringLiteral("一二三四");
    for (int i = 0; i < words.size(); ++i) {
        const SourceLocation place = merged.lineMap.value(lines.indexOf(words.mid(i, 1)) + 1);
        QCOMPARE(place.file, file[i / 2]);
        QCOMPARE(place.line, i % 2 + 1);
    }
    QVERIFY(!merged.lineMap.contains(1));
}

void SourceInputTest::mapsTypeBlocksToTheirFile_data()
{
    QTest::addColumn<QString>("file");
    QTest::addRow("blocks alone") << QStringLiteral("source/点.vd");
    QTest::addRow("blocks among classes") << QStringLiteral("source/点.vt");
}

void SourceInputTest::mapsTypeBlocksToTheirFile()
{
    QFETCH(QString, file);
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("source/a.vc")), "一");
    writeFile(dir.filePath(file), "\n\n类型 点\n{\n\n整数 横\n整数 纵\n}\n");
    const MergedSource merged = mergeProject(dir.path());
    QVERIFY(merged.errors.isEmpty());
    const QStringList lines = merged.text.split(QLatin1Char('\n'));
    const int line = lines.indexOf(QRegularExpression(QStringLiteral(".*纵")));
    QVERIFY(line > 0);
    QVERIFY(merged.text.contains(QStringLiteral("类 点")));
    QCOMPARE(merged.lineMap.value(line + 1).file, file);
    QCOMPARE(merged.lineMap.value(line + 1).line, 7);
}

void SourceInputTest::reportsEveryBrokenFile()
{
    QTemporaryDir dir;
    writeFile(dir.filePath(QStringLiteral("source/a.vc")), "x\n\xFF");
    writeFile(dir.filePath(QStringLiteral("source/b.vc")), QByteArray("\xFF\xFE"
                                                                      "a\0",
                                                                      4));
    writeFile(dir.filePath(QStringLiteral("source/c.vd")), "整数 甲\n");
    const MergedSource merged = mergeProject(dir.path());
    QCOMPARE(merged.errors.size(), 3);
    QCOMPARE(merged.errors.at(0).file, QStringLiteral("source/a.vc"));
    QCOMPARE(merged.errors.at(0).line, 2);
    QVERIFY(merged.errors.at(1).text.contains(QStringLiteral("UTF-16")));
    QCOMPARE(merged.errors.at(2).line, 1);
}

void SourceInputTest::takesTheProjectFolderWithoutSourceFolder()
{
    QTemporaryDir dir;
    QVERIFY(!mergeProject(dir.path()).errors.isEmpty());
    writeFile(dir.filePath(QStringLiteral("a.vc")), "一");
    const MergedSource merged = mergeProject(dir.path());
    QVERIFY(merged.errors.isEmpty());
    QCOMPARE(merged.lineMap.value(2).file, QStringLiteral("a.vc"));
}

QTEST_GUILESS_MAIN(SourceInputTest)
#include "source_input_test.moc"
