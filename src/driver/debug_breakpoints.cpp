#include "driver/debug_breakpoints.h"

#include "codegen/code_writer.h"
#include "codegen/names.h"
#include "driver/generated_statements.h"
#include "driver/toolchain_names.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

// Characters of one value that are shown; a box taller than the screen has no buttons.
constexpr int maxValueText = 200;
constexpr int maxLineText = 300;

const char plainCall[] = "    VL_DebugBreakpoint(%1, L\"%2\", L\"%3\", L\"\");";
const char valuesBegin[] = "    { std::wstring _dbg_vars;";
const char valueLine[] = "    _dbg_vars += L\"%1 = \" + %2 + L\"\\n\";";
const char valuesCall[] = "    VL_DebugBreakpoint(%1, L\"%2\", L\"%3\", _dbg_vars.c_str()); }";
const char variableText[] = "VL_ToOutputStr(%1)";
const char cutVariableText[] = "VL_ToOutputStr(%1).substr(0, %2)";

QByteArray resource(const char *path)
{
    QFile file((QString::fromLatin1(path)));
    if (!file.open(QIODevice::ReadOnly))
        qWarning("driver: missing resource %s", path);
    return file.readAll();
}

// Which values a box can show: types of variables, and properties of components with the
// expressions that read them.
struct ShownValues
{
    QSet<QString> types;
    QSet<QString> shortTypes; // whose texts are always short
    QHash<QString, QString> properties;

    static const ShownValues &instance();
};

QSet<QString> textsOf(const QJsonValue &array)
{
    QSet<QString> texts;
    for (const QJsonValue &value : array.toArray())
        texts.insert(value.toString());
    return texts;
}

const ShownValues &ShownValues::instance()
{
    static const ShownValues values = [] {
        const QJsonObject object =
            QJsonDocument::fromJson(resource(":/driver/debug_values.json")).object();
        ShownValues read;
        read.types = textsOf(object.value(QLatin1String("types")));
        read.shortTypes = textsOf(object.value(QLatin1String("short")));
        for (const QJsonValue &value : object.value(QLatin1String("properties")).toArray()) {
            const QJsonObject property = value.toObject();
            for (const QString &name : textsOf(property.value(QLatin1String("names"))))
                read.properties.insert(name,
                                       property.value(QLatin1String("expression")).toString());
        }
        return read;
    }();
    return values;
}

// Paths of breakpoints are those of open files, places name files of the project.
bool namesFile(const QString &breakpointFile, const QString &file)
{
    const QString path = QDir::fromNativeSeparators(breakpointFile);
    if (QFileInfo(path).fileName().compare(QFileInfo(file).fileName(), Qt::CaseInsensitive) != 0)
        return false;
    const bool isBare = !path.contains(QLatin1Char('/')) || !file.contains(QLatin1Char('/'));
    return isBare || path.compare(file, Qt::CaseInsensitive) == 0 ||
           path.endsWith(QLatin1Char('/') + file, Qt::CaseInsensitive) ||
           file.endsWith(QLatin1Char('/') + path, Qt::CaseInsensitive);
}

// Writes the calls into the parts of one program.
class BreakpointWriter
{
public:
    BreakpointWriter(const ProgramText &program, const CompilerDebugBreakpointsMap &breakpoints,
                     const DebugSource &source);

    QString edited(const QString &part);
    bool any() const { return m_any; }

private:
    QVector<int> wantedLines() const;
    void chooseLines(const QList<GeneratedStatement> &statements);
    int functionAt(int line) const;
    bool isCovered(const GeneratedStatement &statement) const;
    QString callFor(const GeneratedStatement &statement, const QString &generatedLine) const;
    QString valuesOf(const GeneratedStatement &statement, const QString &sourceLine,
                     const QString &generatedLine) const;
    QString componentReads(const QString &sourceLine, const QString &generatedLine) const;
    QString handleOf(const QString &component, const QString &generatedLine) const;

    const CompilerDebugBreakpointsMap &m_breakpoints;
    const DebugSource &m_source;
    const QVector<QStringRef> m_sourceLines;
    QVector<int> m_wanted;   // merged lines with a breakpoint that has not found its place
    QSet<QString> m_handles; // of the program
    QSet<int> m_chosen;      // merged lines that get calls
    QHash<int, QVector<int>> m_calledIn; // by merged line: the blocks that hold a call
    bool m_any = false;
};

BreakpointWriter::BreakpointWriter(const ProgramText &program,
                                   const CompilerDebugBreakpointsMap &breakpoints,
                                   const DebugSource &source)
    : m_breakpoints(breakpoints),
      m_source(source),
      m_sourceLines(source.text.splitRef(QLatin1Char('\n'))),
      m_wanted(wantedLines())
{
    static const QRegularExpression handle(QStringLiteral("^HWND (hwnd_\\w+)"),
                                           QRegularExpression::MultilineOption);
    QRegularExpressionMatchIterator matches = handle.globalMatch(program.programOnly());
    while (matches.hasNext())
        m_handles.insert(matches.next().captured(1));
}

QVector<int> BreakpointWriter::wantedLines() const
{
    QHash<QString, QSet<int>> byFile;
    QVector<int> lines;
    for (auto place = m_source.lineMap.begin(); place != m_source.lineMap.end(); ++place) {
        auto known = byFile.constFind(place->file);
        if (known == byFile.constEnd()) {
            QSet<int> ofFile;
            for (auto it = m_breakpoints.begin(); it != m_breakpoints.end(); ++it) {
                if (namesFile(it.key(), place->file))
                    ofFile.unite(QSet<int>(it->begin(), it->end()));
            }
            known = byFile.insert(place->file, ofFile);
        }
        if (known->contains(place->line))
            lines << place.key();
    }
    return lines;
}

// The line at which the function around `line` begins, 0 ahead of all.
int BreakpointWriter::functionAt(int line) const
{
    const QVector<int> &lines = m_source.functionLines;
    const auto behind = std::upper_bound(lines.begin(), lines.end(), line);
    return behind == lines.begin() ? 0 : *std::prev(behind);
}

void BreakpointWriter::chooseLines(const QList<GeneratedStatement> &statements)
{
    QVector<int> lines;
    for (const GeneratedStatement &statement : statements)
        lines << statement.sourceLine;
    std::sort(lines.begin(), lines.end());
    const auto findPlace = [&](int line) {
        const auto next = std::lower_bound(lines.begin(), lines.end(), line);
        if (next == lines.end() || (*next != line && functionAt(*next) != functionAt(line)))
            return false;
        m_chosen.insert(*next);
        return true;
    };
    m_wanted.erase(std::remove_if(m_wanted.begin(), m_wanted.end(), findPlace), m_wanted.end());
}

// Whether whoever comes here has passed a call for the same line.
bool BreakpointWriter::isCovered(const GeneratedStatement &statement) const
{
    const QVector<int> called = m_calledIn.value(statement.sourceLine);
    return std::any_of(called.begin(), called.end(),
                       [&](int block) { return statement.blocks.contains(block); });
}

QString BreakpointWriter::edited(const QString &part)
{
    const QList<GeneratedStatement> statements = readStatements(part);
    chooseLines(statements);
    QString result;
    int copied = 0;
    for (const GeneratedStatement &statement : statements) {
        if (!m_chosen.contains(statement.sourceLine) || isCovered(statement))
            continue;
        m_calledIn[statement.sourceLine] << statement.blocks.last();
        m_any = true;
        result += part.midRef(copied, statement.begin - copied);
        copied = statement.begin;
        const int end = part.indexOf(QLatin1Char('\n'), statement.begin);
        result += callFor(statement, part.mid(statement.begin, end - statement.begin)) +
                  QLatin1Char('\n');
    }
    return copied == 0 ? part : result + part.midRef(copied);
}

QString BreakpointWriter::callFor(const GeneratedStatement &statement,
                                  const QString &generatedLine) const
{
    const SourceLocation place = m_source.lineMap.value(statement.sourceLine);
    const QString sourceLine = m_sourceLines.value(statement.sourceLine - 1).trimmed().toString();
    const QString values = valuesOf(statement, sourceLine, generatedLine);
    const QString number = QString::number(place.line);
    const QString file = CodeWriter::escaped(QFileInfo(place.file).fileName());
    const QString shown = CodeWriter::escaped(sourceLine.left(maxLineText));
    if (values.isEmpty())
        return QString::fromLatin1(plainCall).arg(number, file, shown);
    return QString::fromLatin1(valuesBegin) + QLatin1Char('\n') + values +
           QString::fromLatin1(valuesCall).arg(number, file, shown);
}

QString BreakpointWriter::valuesOf(const GeneratedStatement &statement, const QString &sourceLine,
                                   const QString &generatedLine) const
{
    const ShownValues &shown = ShownValues::instance();
    QString text;
    for (const GeneratedVariable &variable : statement.variables) {
        const QString name = ToolchainNames::decoded(variable.name);
        // What begins so is the generator's own.
        if (!shown.types.contains(variable.type) || name.startsWith(QLatin1Char('_')))
            continue;
        const QString value =
            shown.shortTypes.contains(variable.type)
                ? QString::fromLatin1(variableText).arg(variable.name)
                : QString::fromLatin1(cutVariableText).arg(variable.name).arg(maxValueText);
        text += QString::fromLatin1(valueLine).arg(CodeWriter::escaped(name), value) +
                QLatin1Char('\n');
    }
    return text + componentReads(sourceLine, generatedLine);
}

QString BreakpointWriter::componentReads(const QString &sourceLine,
                                         const QString &generatedLine) const
{
    static const QRegularExpression read(
        QStringLiteral("([\\x{4e00}-\\x{9fff}\\w]+)\\.([\\x{4e00}-\\x{9fff}]+)"));
    QString text;
    QSet<QString> done;
    QRegularExpressionMatchIterator matches = read.globalMatch(sourceLine);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        const QString expression = ShownValues::instance().properties.value(match.captured(2));
        const QString handle = expression.isEmpty() || done.contains(match.captured())
                                   ? QString()
                                   : handleOf(match.captured(1), generatedLine);
        if (handle.isEmpty())
            continue;
        done.insert(match.captured());
        text += QString::fromLatin1(valueLine).arg(match.captured(), expression.arg(handle)) +
                QLatin1Char('\n');
    }
    return text;
}

// A component inside another one has the other's name ahead of its own; the generated line tells
// which of several is meant. Empty without one.
QString BreakpointWriter::handleOf(const QString &component, const QString &generatedLine) const
{
    const QString name = Names::sanitizeComponent(component);
    const QString exact = Names::handle(name);
    if (m_handles.contains(exact))
        return exact;
    const QString ending = name.startsWith(QLatin1Char('_')) ? name : QLatin1Char('_') + name;
    QStringList fitting;
    for (const QString &handle : m_handles) {
        if (handle.endsWith(ending))
            fitting << handle;
    }
    const auto inLine =
        std::find_if(fitting.begin(), fitting.end(), [&generatedLine](const QString &handle) {
            return generatedLine.contains(
                QRegularExpression(QStringLiteral("\\b%1\\b").arg(handle)));
        });
    if (inLine != fitting.end())
        return *inLine;
    return fitting.size() == 1 ? fitting.first() : QString();
}

} // namespace

QVector<int> functionLinesOf(const Parser::ASTNode *root)
{
    QVector<int> lines;
    QList<const Parser::ASTNode *> open{root};
    while (!open.isEmpty()) {
        const Parser::ASTNode *node = open.takeLast();
        if (!node)
            continue;
        if (node->type == Parser::FunctionDecl || node->type == Parser::ClassDecl)
            lines << node->line;
        if (node->type == Parser::Program || node->type == Parser::ClassDecl) {
            for (const Parser::ASTNode *child : node->children)
                open << child;
        }
    }
    std::sort(lines.begin(), lines.end());
    return lines;
}

void insertBreakpoints(ProgramText &program, const CompilerDebugBreakpointsMap &breakpoints,
                       const DebugSource &source)
{
    BreakpointWriter writer(program, breakpoints, source);
    program.editProgram([&writer](const QString &part) { return writer.edited(part); });
    if (writer.any())
        program.insertBehindLeadingBlock(QString::fromUtf8(resource(":/driver/debug_support.inc")));
}
