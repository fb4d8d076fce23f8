#include "driver/toolchain_diagnostics.h"

#include "driver/message_location.h"
#include "driver/toolchain_messages.h"

#include <QRegularExpression>
#include <QSet>
#include <QVector>

#include <algorithm>
#include <optional>

namespace {

using Severity = ToolMessage::Severity;
using Place = ToolMessage::Place;

// A source that is broken in a thousand places is not explained by a thousand messages.
constexpr int maxErrors = 50;
// One mistake in a template may make a thousand on its line.
constexpr int maxTriesPerLine = 20;

// A generated source, its lines found when they are first asked for.
class GeneratedText
{
public:
    explicit GeneratedText(const CompiledText &compiled) : m_compiled(compiled) {}

    bool isNamed(const QString &file) const;
    const GeneratedLineTable &table();
    // Empty for a line that is not there.
    QString line(int number);
    // The merged line of the first marked line with this word; 0 without.
    int markedLineOf(const QString &word);

private:
    const CompiledText &m_compiled;
    QVector<QStringRef> m_lines;
    std::optional<GeneratedLineTable> m_table;
};

// The tools name a file by any path that leads to it, or by that of a copy.
bool GeneratedText::isNamed(const QString &file) const
{
    const int folder =
        qMax(file.lastIndexOf(QLatin1Char('/')), file.lastIndexOf(QLatin1Char('\\')));
    return file.midRef(folder + 1).compare(m_compiled.name, Qt::CaseInsensitive) == 0;
}

const GeneratedLineTable &GeneratedText::table()
{
    if (!m_table)
        m_table.emplace(m_compiled.text);
    return *m_table;
}

QString GeneratedText::line(int number)
{
    if (m_lines.isEmpty())
        m_lines = m_compiled.text.splitRef(QLatin1Char('\n'));
    return m_lines.value(number - 1).toString();
}

int GeneratedText::markedLineOf(const QString &word)
{
    const QRegularExpression whole(
        QStringLiteral("\\b%1\\b.*// VL_LINE:\\s*(\\d+)").arg(QRegularExpression::escape(word)));
    return m_compiled.text.contains(word) ? whole.match(m_compiled.text).captured(1).toInt() : 0;
}

class Translation
{
public:
    explicit Translation(const TranslatedProgram &program);

    QList<BuildDiagnostic> run(const QString &output);

private:
    struct Spot
    {
        int mergedLine = 0;
        QString generatedLine;
        int column = 0;
        bool isCaller = false;
    };

    Spot spotOf(const ToolMessage &message);
    Spot spotOf(const Place &place, bool needsMarker);
    int lineOfSymbol(const ToolMessage &message);
    ToolMessage withCauses(ToolMessage message);
    void takeError(const ToolMessage &message);
    bool isRepeated(const Spot &spot, const ToolMessage &message);
    bool addsNothing(const BuildDiagnostic &diagnostic, bool isWeak) const;
    void report(const BuildDiagnostic &diagnostic);
    void warn();

    const TranslatedProgram &m_program;
    std::vector<GeneratedText> m_texts;
    QStringList m_sourceLines;
    QList<Place> m_causes; // of the last error outside of the program
    QHash<int, int> m_tries;
    QSet<QString> m_seen;
    QSet<int> m_toldLines; // merged
    QSet<QString> m_leftOut;
    QList<BuildDiagnostic> m_diagnostics;
    int m_errors = 0;
    bool m_warned = false;
};

Translation::Translation(const TranslatedProgram &program)
    : m_program(program), m_sourceLines(program.source.split(QLatin1Char('\n')))
{
    for (const CompiledText &text : program.texts)
        m_texts.emplace_back(text);
}

Translation::Spot Translation::spotOf(const Place &place, bool needsMarker)
{
    if (place.line <= 0)
        return {};
    for (GeneratedText &text : m_texts) {
        if (!text.isNamed(place.file))
            continue;
        const GeneratedLineTable &table = text.table();
        return {needsMarker ? table.markedLine(place.line) : table.mergedLine(place.line),
                text.line(place.line), place.column, false};
    }
    return {};
}

// A line with a marker of its own is sure; one that only follows such a line is the last resort.
Translation::Spot Translation::spotOf(const ToolMessage &message)
{
    for (const bool needsMarker : {true, false}) {
        QList<Place> places = message.causes;
        places.prepend(message.place);
        for (int i = 0; i < places.size(); ++i) {
            Spot spot = spotOf(places.at(i), needsMarker);
            spot.isCaller = i > 0;
            if (spot.mergedLine > 0)
                return spot;
        }
    }
    return {};
}

// A linker knows no lines: the first one that uses the name is told.
int Translation::lineOfSymbol(const ToolMessage &message)
{
    const QString name = symbolOf(message);
    for (GeneratedText &text : m_texts) {
        const int line = name.isEmpty() ? 0 : text.markedLineOf(name);
        if (line > 0)
            return line;
    }
    return 0;
}

bool Translation::isRepeated(const Spot &spot, const ToolMessage &message)
{
    if (spot.mergedLine > 0 && ++m_tries[spot.mergedLine] > maxTriesPerLine)
        return true;
    const QString key =
        QString::number(spot.mergedLine) + QLatin1Char(' ') + message.code + message.text.left(300);
    if (m_seen.contains(key))
        return true;
    m_seen << key;
    return false;
}

// Whether the user knows as much already.
bool Translation::addsNothing(const BuildDiagnostic &diagnostic, bool isWeak) const
{
    return std::any_of(
        m_diagnostics.begin(), m_diagnostics.end(), [&](const BuildDiagnostic &other) {
            const bool isSameLine = other.line == diagnostic.line && other.file == diagnostic.file;
            return (isSameLine && isWeak && diagnostic.line > 0) ||
                   (other.text == diagnostic.text && (isSameLine || diagnostic.line == 0));
        });
}

// A compiler tells how it came to a place once, not again for each error there.
ToolMessage Translation::withCauses(ToolMessage message)
{
    if (message.place.line <= 0)
        return message;
    const bool isOurs = spotOf(message.place, false).mergedLine > 0;
    if (!isOurs && message.causes.isEmpty())
        message.causes = m_causes;
    m_causes = isOurs ? QList<Place>() : message.causes;
    return message;
}

void Translation::takeError(const ToolMessage &message)
{
    Spot spot = spotOf(message);
    if (isRepeated(spot, message))
        return;
    if (m_errors >= maxErrors) {
        if (!m_toldLines.contains(spot.mergedLine))
            m_leftOut << (spot.mergedLine > 0 ? QString::number(spot.mergedLine)
                                              : message.text.left(300));
        return;
    }
    if (spot.mergedLine == 0 && message.tool == ToolMessage::Tool::Linker)
        spot.mergedLine = lineOfSymbol(message);
    const SourceLocation location = locate(m_program.lineMap, spot.mergedLine);
    BuildDiagnostic diagnostic;
    diagnostic.file = location.file;
    diagnostic.line = location.file.isEmpty() ? spot.mergedLine : location.line;
    const MessagePlace place{diagnostic.line,
                             spot.generatedLine,
                             spot.column,
                             spot.isCaller,
                             {m_sourceLines.value(spot.mergedLine - 1), m_program.source}};
    const MessageText told = wordMessage(message, place);
    diagnostic.text = told.text;
    if (told.text.isEmpty() || addsNothing(diagnostic, told.isWeak))
        return;
    report(diagnostic);
    if (spot.mergedLine > 0)
        m_toldLines << spot.mergedLine;
}

void Translation::report(const BuildDiagnostic &diagnostic)
{
    m_diagnostics << diagnostic;
    ++m_errors;
}

void Translation::warn()
{
    BuildDiagnostic diagnostic;
    diagnostic.severity = BuildDiagnostic::Severity::Warning;
    diagnostic.text = ToolchainTable::instance().warning;
    m_diagnostics << diagnostic;
    m_warned = true;
}

QList<BuildDiagnostic> Translation::run(const QString &output)
{
    const QList<ToolMessage> messages = readToolOutput(output);
    for (const ToolMessage &message : messages) {
        const bool isMeant = message.severity != Severity::Unclear ||
                             ToolchainTable::instance().mayBeLoose(message.text);
        if (message.severity != Severity::Warning && isMeant)
            takeError(withCauses(message));
        else if (message.severity == Severity::Warning && !m_warned &&
                 message.text.contains(QLatin1String("VL_")))
            warn();
    }
    if (!m_leftOut.isEmpty()) {
        BuildDiagnostic diagnostic;
        diagnostic.text =
            ToolchainTable::filled(ToolchainTable::instance().more,
                                   {{QStringLiteral("count"), QString::number(m_leftOut.size())}});
        report(diagnostic);
    }
    return m_diagnostics;
}

} // namespace

QList<BuildDiagnostic> translateToolOutput(const QString &output, const TranslatedProgram &program)
{
    return output.isEmpty() ? QList<BuildDiagnostic>() : Translation(program).run(output);
}

QStringList translateToolErrors(const QString &output)
{
    QStringList texts;
    const QList<BuildDiagnostic> diagnostics = translateToolOutput(output, {});
    for (const BuildDiagnostic &diagnostic : diagnostics) {
        if (diagnostic.severity == BuildDiagnostic::Severity::Error)
            texts << diagnostic.text;
    }
    return texts;
}
