// Prints the problems of a build on standard error, each with its source line.
#pragma once

#include "driver/build_listener.h"

#include <QHash>
#include <QString>
#include <QStringList>

class DiagnosticPrinter
{
public:
    // Places name files relative to `folder`, or as they are reached from here if it is empty.
    // `plain`: messages alone, without source lines and colours.
    DiagnosticPrinter(const QString &folder, bool plain);

    // A file that cannot be read or is very large gives no source line. What has just been printed
    // is not printed again.
    void print(const BuildDiagnostic &diagnostic);

private:
    void printExcerpt(const BuildDiagnostic &diagnostic);
    const QStringList &linesOf(const QString &file);

    QString m_folder;
    bool m_plain;
    bool m_coloured;
    int m_cells;
    QString m_lastText;
    int m_lastColumn = 0;
    QHash<QString, QStringList> m_lines;
};
