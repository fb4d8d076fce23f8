#include "shell/trace_file.h"

#include <QDir>
#include <QFile>

namespace {

constexpr qint64 maxBytes = 1024 * 1024;

} // namespace

void TraceFile::append(const char *fileName, const QString &step)
{
    QFile file(QDir::temp().filePath(QString::fromLatin1(fileName)));
    const auto mode = file.size() < maxBytes ? QIODevice::Append : QIODevice::Truncate;
    if (file.open(QIODevice::WriteOnly | mode))
        file.write(step.toUtf8() + '\n');
}
