#include "driver/toolchain_output.h"

#include <QRegularExpression>

namespace {

using Severity = ToolMessage::Severity;
using Tool = ToolMessage::Tool;
using Place = ToolMessage::Place;

// A line without an end would keep the expressions busy for long.
constexpr int maxLineLength = 2000;
constexpr int maxNotes = 40;
constexpr int maxNoteLength = 400;

bool holds(const QString &line, const char *word)
{
    return line.contains(QLatin1String(word));
}

// "C:\tools\bin\x86_64-w64-mingw32-g++-12.exe" is "x86_64-w64-mingw32-g++".
QString programName(const QString &path)
{
    static const QRegularExpression tail(QStringLiteral("(?:-\\d[\\d.]*)?(?:\\.exe)?$"),
                                         QRegularExpression::CaseInsensitiveOption);
    QString name =
        path.mid(qMax(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\'))) + 1);
    return name.remove(tail).toLower();
}

// Which tool has this name; false for other names.
bool findTool(const QString &path, Tool &tool)
{
    static const QRegularExpression linker(
        QStringLiteral("(?:^|[-.])(?:ld|lld|lld-link|link|collect2|bfd|gold)$"));
    static const QRegularExpression compiler(
        QStringLiteral("(?:^|-)(?:g\\+\\+|c\\+\\+|gcc|clang|clang\\+\\+|cc1plus|cc1|as|cl)$"));
    static const QRegularExpression resources(QStringLiteral("(?:^|-)(?:windres|rc)$"));
    const QString name = programName(path);
    if (name.contains(QLatin1Char(' ')))
        return false;
    if (name.contains(linker))
        tool = Tool::Linker;
    else if (name.contains(compiler))
        tool = Tool::Compiler;
    else if (name.contains(resources))
        tool = Tool::ResourceCompiler;
    else
        return false;
    return true;
}

Tool toolOfCode(const QString &code)
{
    if (code.startsWith(QLatin1String("LNK")))
        return Tool::Linker;
    return code.startsWith(QLatin1String("RC")) || code.startsWith(QLatin1String("CVT"))
               ? Tool::ResourceCompiler
               : Tool::Compiler;
}

// The place in "main.cpp(12,5): " and "main.obj : "; nothing behind the last colon counts.
Place placeAhead(const QString &prefix)
{
    static const QRegularExpression form(
        QStringLiteral("^(.*?)(?:\\((\\d+)(?:,(\\d+))?[-,\\d]*\\))?$"));
    const QString place = prefix.left(prefix.lastIndexOf(QLatin1Char(':'))).trimmed();
    const QRegularExpressionMatch match = form.match(place);
    return {match.captured(1), match.captured(2).toInt(), match.captured(3).toInt()};
}

// The place in "main.o:main.cpp:12: ".
Place placeBehindObject(const QString &prefix)
{
    const QStringList parts = prefix.split(QLatin1Char(':'));
    const int line = parts.size() > 2 ? parts.at(parts.size() - 2).toInt() : 0;
    return line > 0 ? Place{parts.at(parts.size() - 3).trimmed(), line, 0} : Place();
}

class OutputReader
{
public:
    QList<ToolMessage> read(const QString &output);

private:
    void readLine(const QString &line);
    bool readPlaced(const QString &line);
    bool readCoded(const QString &line);
    bool readBracketed(const QString &line);
    bool readContext(const QString &line);
    bool readReference(const QString &line);
    bool readOfTool(const QString &line);
    bool readOfScript(const QString &line);
    void readLoose(const QString &line);
    void take(const QString &kind, ToolMessage message);
    void takeNote(const QString &text, const Place &place);

    QList<ToolMessage> m_messages;
    QList<Place> m_causes; // of the error that is to come
    QString m_explained;   // the file in which the next error only explains the last note; "*": any
    bool m_quotesNext = false; // the next line is source, quoted below a message
};

// "main.cpp:12:5: error: text", of g++ and clang.
bool OutputReader::readPlaced(const QString &line)
{
    static const QRegularExpression form(QStringLiteral(
        "^((?:[A-Za-z]:)?[^:]+):(\\d+)(?::(\\d+))?:\\s*(fatal error|internal compiler error|error|"
        "warning|note|sorry, unimplemented):\\s*(.*)$"));
    if (!holds(line, "error:") && !holds(line, "note:") && !holds(line, "warning:") &&
        !holds(line, "unimplemented:"))
        return false;
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    ToolMessage message;
    message.place = {match.captured(1), match.captured(2).toInt(), match.captured(3).toInt()};
    message.text = match.captured(5);
    if (match.captured(4).startsWith(QLatin1Char('i')))
        message.text.prepend(QLatin1String("internal compiler error: "));
    take(match.captured(4), message);
    m_quotesNext = true;
    return true;
}

// "main.cpp(12): error C2065: text", "LINK : fatal error LNK1181: text", of cl, link and rc.
bool OutputReader::readCoded(const QString &line)
{
    static const QRegularExpression form(
        QStringLiteral("(?:^|\\s)(fatal error|error|warning)\\s+([A-Z]+\\d+)\\s*:\\s*(.*)$"));
    if (!holds(line, "error") && !holds(line, "warning"))
        return false;
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    ToolMessage message;
    message.place = placeAhead(line.left(match.capturedStart()));
    message.code = match.captured(2);
    message.tool = toolOfCode(message.code);
    message.text = match.captured(3);
    take(match.captured(1), message);
    return true;
}

// "main.cpp(12): note: text", of cl; its errors without a code too.
bool OutputReader::readBracketed(const QString &line)
{
    static const QRegularExpression form(
        QStringLiteral("\\)\\s?:\\s?(fatal error|error|warning|note)\\s?:\\s*(.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    ToolMessage message;
    message.place = placeAhead(line.left(match.capturedStart() + 2));
    message.text = match.captured(2);
    take(match.captured(1), message);
    return message.place.line > 0;
}

// The lines ahead of an error that tell how the compiler came to where it failed.
bool OutputReader::readContext(const QString &line)
{
    static const QRegularExpression required(QStringLiteral(
        "^((?:[A-Za-z]:)?[^:]+):(\\d+):(?:(\\d+):)?\\s+(?:recursively )?required (?:from|by)\\b"));
    if (holds(line, "required from") || holds(line, "required by")) {
        const QRegularExpressionMatch match = required.match(line);
        if (match.hasMatch())
            m_causes << Place{match.captured(1), match.captured(2).toInt(),
                              match.captured(3).toInt()};
        return match.hasMatch();
    }
    if (line.startsWith(QLatin1String("In file included from")))
        return true;
    if (!holds(line, ": In ") && !holds(line, ": At ") && !holds(line, ": in function "))
        return false;
    m_causes.clear();
    if (!holds(line, ": In substitution of"))
        m_explained.clear();
    return line.endsWith(QLatin1Char(':'));
}

// "main.o:main.cpp:(.text+0x1f): undefined reference to `f'", with or without the linker's name.
bool OutputReader::readReference(const QString &line)
{
    for (const char *phrase : {"undefined reference to", "multiple definition of"}) {
        const int at = line.indexOf(QLatin1String(phrase));
        if (at < 0)
            continue;
        ToolMessage message;
        message.tool = Tool::Linker;
        message.place = placeBehindObject(line.left(at));
        message.text = line.mid(at);
        take(QStringLiteral("error"), message);
        return true;
    }
    return false;
}

// "ld.exe: cannot find -lx", "windres: a.rc:2: syntax error", "g++: fatal error: text".
bool OutputReader::readOfTool(const QString &line)
{
    static const QRegularExpression form(QStringLiteral("^((?:[A-Za-z]:)?[^:\"]+?)\\s?:\\s*(.*)$"));
    static const QRegularExpression kind(
        QStringLiteral("^(?:(fatal error|internal compiler error|error|warning):\\s*)?(.*)$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression place(QStringLiteral("^([^:]+):(\\d+):\\s*(.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    ToolMessage message;
    if (!match.hasMatch() || !findTool(match.captured(1), message.tool))
        return false;
    const QRegularExpressionMatch said = kind.match(match.captured(2));
    message.text = said.captured(2);
    const QRegularExpressionMatch placed = place.match(message.text);
    if (placed.hasMatch()) {
        message.place = {placed.captured(1), placed.captured(2).toInt(), 0};
        message.text = placed.captured(3);
    }
    QString severity = said.captured(1).toLower();
    if (severity.startsWith(QLatin1Char('i')))
        message.text.prepend(QLatin1String("internal compiler error: "));
    if (severity.isEmpty())
        severity = QLatin1String(message.tool == Tool::ResourceCompiler ? "error" : "unclear");
    take(severity, message);
    return true;
}

bool OutputReader::readOfScript(const QString &line)
{
    static const QRegularExpression form(QStringLiteral("^\\[(FATAL |WINDRES_)?ERROR\\]\\s*(.*)$"));
    const QRegularExpressionMatch match = form.match(line);
    if (!match.hasMatch())
        return false;
    ToolMessage message;
    message.tool = Tool::Script;
    message.text = match.captured(2);
    // The resource compiler has spoken for itself.
    if (!match.captured(1).startsWith(QLatin1Char('W')))
        take(QStringLiteral("error"), message);
    return true;
}

// A line of no known form.
void OutputReader::readLoose(const QString &line)
{
    static const QRegularExpression form(
        QStringLiteral("(?:^|[:\\s])(?:fatal )?error\\s*:\\s*(.*)$"),
        QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression word(QStringLiteral("\\berror\\b"),
                                         QRegularExpression::CaseInsensitiveOption);
    ToolMessage message;
    message.text = line.trimmed();
    QString severity = QStringLiteral("unclear");
    if (line.contains(QLatin1String("error"), Qt::CaseInsensitive) && line.contains(word)) {
        const QRegularExpressionMatch match = form.match(line);
        message.text = match.hasMatch() ? match.captured(1) : message.text;
        severity = QStringLiteral("error");
    } else if (line.contains(QLatin1String("warning"), Qt::CaseInsensitive)) {
        severity = QStringLiteral("warning");
    }
    take(severity, message);
}

void OutputReader::take(const QString &kind, ToolMessage message)
{
    if (kind == QLatin1String("note"))
        return takeNote(message.text, message.place);
    if (kind == QLatin1String("warning"))
        message.severity = Severity::Warning;
    else if (kind == QLatin1String("unclear"))
        message.severity = Severity::Unclear;
    if (message.place.file.endsWith(QLatin1String(".rc")))
        message.tool = Tool::ResourceCompiler;
    message.causes = m_causes;
    if (message.severity == Severity::Error)
        m_causes.clear();
    const bool explains = message.severity == Severity::Error && !m_explained.isEmpty() &&
                          (m_explained == QLatin1String("*") || m_explained == message.place.file);
    if (!explains)
        m_messages << message;
    m_explained.clear();
}

void OutputReader::takeNote(const QString &text, const Place &place)
{
    static const QRegularExpression asked(
        QStringLiteral("requested here|required here|see reference to|参见对正在编译的"));
    m_explained.clear();
    if (text.endsWith(QLatin1String("substitution failed:")))
        m_explained = QStringLiteral("*");
    else if (text.endsWith(QLatin1Char(':')))
        m_explained = place.file;
    if (m_messages.isEmpty())
        return;
    ToolMessage &message = m_messages.last();
    if (message.notes.size() < maxNotes)
        message.notes << text.left(maxNoteLength);
    if (text.contains(asked))
        message.causes << place;
}

void OutputReader::readLine(const QString &line)
{
    const bool isQuoted = m_quotesNext;
    m_quotesNext = false;
    if (line.at(0).isSpace()) {
        // Quoted source, and the rest of a list of includes; some build tools indent messages.
        readCoded(line.trimmed());
        return;
    }
    if (readPlaced(line) || readContext(line) || readReference(line) || readCoded(line) ||
        readBracketed(line))
        return;
    if (isQuoted || holds(line, "// VL_LINE:"))
        return;
    if (!readOfTool(line) && !readOfScript(line))
        readLoose(line);
}

QList<ToolMessage> OutputReader::read(const QString &output)
{
    for (int begin = 0; begin < output.size();) {
        int end = output.indexOf(QLatin1Char('\n'), begin);
        end = end < 0 ? output.size() : end;
        QString line = output.mid(begin, qMin(end - begin, maxLineLength));
        while (!line.isEmpty() && line.at(line.size() - 1).isSpace())
            line.chop(1);
        if (!line.isEmpty())
            readLine(line);
        begin = end + 1;
    }
    return m_messages;
}

} // namespace

QList<ToolMessage> readToolOutput(const QString &output)
{
    return OutputReader().read(output);
}
