// The tables of JSON that are embedded in the program.
#pragma once

#include <QJsonDocument>
#include <QString>

// The table at `path`, such as ":/shell/docks.json"; empty, with a message in the log, when it is
// missing or no JSON. That all tables are whole is shown by tests, so that callers need not ask.
QJsonDocument jsonTable(const QString &path);
