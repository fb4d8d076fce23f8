// From the merged lines that messages and generated text name to lines of the user's files.
#pragma once

#include "driver/build_request.h"
#include "frontend/source_message.h"

#include <QString>
#include <QVector>

// The line of the merged source that a message names ("第 12 行"), 0 if it names none.
int lineOfMessage(const QString &message);
// The message with the lines it names replaced by lines of files; a line of another file than
// `file` is given that file's name. Lines without a place stay.
QString withFileLines(const QString &message, const QString &file, const SourceLineMap &lineMap);

// What a message is near to, as it is written at the column of its line: its `nearText` if that
// stands there, else the whole token, which a literal or a sign may be spelled in another way.
// Empty where no token begins.
QString writtenText(const QStringRef &line, const SourceMessage &message);

// The file and line of a merged line. A line behind the last file belongs to that file's last line;
// elsewhere a line without an entry gives an empty file.
SourceLocation locate(const SourceLineMap &lineMap, int mergedLine);

// The table from lines of generated C++ to merged lines, read off the "// VL_LINE:<n>" comments.
class GeneratedLineTable
{
public:
    explicit GeneratedLineTable(const QString &generatedText);

    // The merged line of a 1-based generated line: its own, else the nearest one above; 0 without.
    int mergedLine(int generatedLine) const;
    // The merged line of a generated line that has a marker of its own, else 0.
    int markedLine(int generatedLine) const;

private:
    struct Entry
    {
        int generated;
        int merged;
    };

    const Entry *entryAbove(int generatedLine) const;

    QVector<Entry> m_entries;
};
