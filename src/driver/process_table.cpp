#include "driver/process_table.h"

#include <QDir>
#include <QFile>

namespace {

QByteArray readProc(qint64 processId, const char *name)
{
    QFile file(QStringLiteral("/proc/%1/%2").arg(processId).arg(QLatin1String(name)));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// "pid (name) state ppid pgrp ...": the name may hold anything, so the last ")" counts.
bool readRecord(qint64 processId, ProcessRecord *record)
{
    const QByteArray stat = readProc(processId, "stat");
    const int open = stat.indexOf('(');
    const int close = stat.lastIndexOf(')');
    if (open < 0 || close < open)
        return false;
    const QList<QByteArray> fields = stat.mid(close + 2).split(' ');
    if (fields.size() < 15 || fields.at(0) == "Z" || fields.at(0) == "X")
        return false;
    record->id = processId;
    record->name = stat.mid(open + 1, close - open - 1);
    record->parentId = fields.at(1).toLongLong();
    record->groupId = fields.at(2).toLongLong();
    for (int field = 11; field <= 14; ++field)
        record->processorTicks += fields.at(field).toLongLong();
    return true;
}

} // namespace

QList<ProcessRecord> listProcesses()
{
    QList<ProcessRecord> records;
    const QStringList names =
        QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Unsorted);
    for (const QString &name : names) {
        bool isNumber = false;
        const qint64 processId = name.toLongLong(&isNumber);
        ProcessRecord record;
        if (isNumber && readRecord(processId, &record))
            records << record;
    }
    return records;
}

bool startedWithEnvironment(qint64 processId, const QByteArray &assignment)
{
    return ('\0' + readProc(processId, "environ") + '\0').contains('\0' + assignment + '\0');
}

QByteArray commandLineOf(qint64 processId)
{
    return readProc(processId, "cmdline");
}
