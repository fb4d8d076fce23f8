// Runs vorelc for the tests of the command line.
#pragma once

#include "test_files.h"

#include <QProcess>

namespace CliTest {

using TestFiles::writeFile;

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

} // namespace CliTest
