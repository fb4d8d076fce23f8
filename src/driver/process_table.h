// The processes of this machine, read from /proc; only on hosts that have it.
#pragma once

#include <QByteArray>
#include <QList>

struct ProcessRecord
{
    qint64 id = 0;
    qint64 parentId = 0;
    qint64 groupId = 0;
    QByteArray name;           // of the executable, at most 15 bytes
    qint64 processorTicks = 0; // with those of children that ended
};

// Processes that end while being read are left out, zombies too.
QList<ProcessRecord> listProcesses();

// Whether the environment with which a process was started holds `assignment` ("NAME=value"). False
// for processes of other users.
bool startedWithEnvironment(qint64 processId, const QByteArray &assignment);

// The command line, arguments separated by NUL.
QByteArray commandLineOf(qint64 processId);
