// Runs vorelc for the tests of the command line.
#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QtTest>

namespace CliTest {

struct Result
{
    int code = -1;
    QByteArray out;
    QString err;
};

// A call in `folder`; `input` is its standard input.
inline Result vorelc(const QStringList &arguments, const QString &folder,
                     const QByteArray &input = QByteArray(), int timeout = 60000)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.start(QStringLiteral(VORELC), arguments);
    process.write(input);
    process.closeWriteChannel();
    Result result;
    if (process.waitForFinished(timeout) && process.exitStatus() == QProcess::NormalExit)
        result.code = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

inline void writeFile(const QString &path, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace CliTest
