#include "driver/gcc_output.h"

#include "catalog/command_library.h"
#include "driver/build_messages.h"
#include "driver/message_location.h"

#include <QFileInfo>
#include <QHash>
#include <QRegularExpression>
#include <QSet>

#include <algorithm>

namespace {

const char compileError[] =
    "编译报错（第%1行）%2：请检查该行附近的 Vorel 语法、变量声明、命令参数或函数用法。\n"
    "  提示：优先核对该行使用到的中文命令/变量名；若写法与文档一致仍报错，请尝试更新 IDE "
    "或向维护者反馈。";
const char compileErrorWithoutLine[] =
    "编译报错%1：请检查 Vorel 语法、变量声明、命令参数或函数用法。\n"
    "  提示：请先逐项核对最近修改过的中文命令/变量名；若写法与文档一致仍报错，请尝试更新 IDE "
    "或向维护者反馈。";
const char undefinedReference[] =
    "链接错误：找不到函数或变量的定义\n  未定义符号：%1\n  💡 "
    "提示：请确保所有使用的函数都已正确定义；若为 WinHTTP 等系统 API，请检查链接库（如 -lwinhttp）";
const char unresolvedCommand[] =
    "链接错误：命令“%1”实现未能正确链接\n  💡 提示：请优先按 Vorel 命令语法检查调用；"
    "若写法与文档一致仍报错，可能是 IDE 内命令定义与内部实现未同步，请尝试更新程序或向维护者反馈。";
const char relatedCommand[] = "（相关命令：%1）";
const char relatedName[] = "（相关标识：%1）";

// A source that is broken in a thousand places is not explained by a thousand messages.
constexpr int maxMessages = 50;

bool isNoise(const QString &line)
{
    return line.isEmpty() || line.contains(QLatin1String("note:")) ||
           line.contains(QLatin1String("In function")) ||
           line.startsWith(QLatin1String("collect2")) ||
           !(line.contains(QLatin1String("error")) ||
             line.contains(QLatin1String("undefined reference")) ||
             line.contains(QLatin1String("cannot find")) ||
             line.contains(QLatin1String("No space left")));
}

GccError readLine(const QString &line)
{
    static const QRegularExpression placed(
        QStringLiteral("^((?:[A-Za-z]:)?[^:]+):(\\d+)(?::\\d+)?:\\s*(?:fatal |internal compiler "
                       ")?error:?\\s*(.*)$"));
    static const QRegularExpression undefined(
        QStringLiteral("undefined reference to [`'‘]?(.+?)['’]?$"));
    static const QRegularExpression unplaced(QStringLiteral("error:\\s*(.*)$"));
    QRegularExpressionMatch match = undefined.match(line);
    if (match.hasMatch())
        return {GccError::Kind::UndefinedReference, QString(), 0, match.captured(1)};
    match = placed.match(line);
    if (match.hasMatch()) {
        return {GccError::Kind::Compile, match.captured(1), match.captured(2).toInt(),
                match.captured(3)};
    }
    match = unplaced.match(line);
    return {GccError::Kind::Other, QString(), 0, match.hasMatch() ? match.captured(1) : line};
}

// The commands by the functions that carry them out.
QString commandOf(const QString &cppFunction)
{
    static const QHash<QString, QString> names = [] {
        QHash<QString, QString> byFunction;
        const QList<CommandInfo> &commands = CommandLibrary::builtin().allCommands();
        for (const CommandInfo &command : commands) {
            if (command.isCallable() && !command.cppFunction.isEmpty() &&
                !byFunction.contains(command.cppFunction))
                byFunction.insert(command.cppFunction, command.name);
        }
        return byFunction;
    }();
    return names.value(cppFunction);
}

// What a message is about, as a remark in brackets: a command, else the first quoted name that is
// no C++ type.
QString subject(const QString &message)
{
    static const QRegularExpression quoted(QStringLiteral("['‘]([^'’]+)['’]"));
    static const QRegularExpression internal(
        QStringLiteral("^(std::|VL_|__VL_|void|int|double|bool|const |class |struct )"));
    QRegularExpressionMatchIterator matches = quoted.globalMatch(message);
    QString plain;
    while (matches.hasNext()) {
        const QString name = matches.next().captured(1);
        const QString command = commandOf(name.section(QLatin1Char('('), 0, 0));
        if (!command.isEmpty())
            return BuildMessage::text(relatedCommand).arg(command);
        if (plain.isEmpty() && name.size() > 1 && name.size() < 100 && !name.contains(internal) &&
            !name.contains(QLatin1Char('(')))
            plain = BuildMessage::text(relatedName).arg(decodeIdentifier(name));
    }
    return plain;
}

QString unresolved(const QString &symbol)
{
    const QString command = commandOf(symbol.section(QLatin1Char('('), 0, 0));
    return command.isEmpty() ? BuildMessage::text(undefinedReference).arg(decodeIdentifier(symbol))
                             : BuildMessage::text(unresolvedCommand).arg(command);
}

BuildDiagnostic translated(const GccError &error, int mergedLine, const SourceLineMap &lineMap)
{
    BuildDiagnostic result;
    if (error.message.contains(QLatin1String("No space left on device"))) {
        result.text = BuildMessage::text(BuildMessage::toolDiskFull);
        return result;
    }
    if (error.kind == GccError::Kind::UndefinedReference) {
        result.text = unresolved(error.message);
        return result;
    }
    const QString related = subject(error.message);
    const SourceLocation place = locate(lineMap, mergedLine);
    result.file = place.file;
    result.line = place.file.isEmpty() ? mergedLine : place.line;
    result.text = mergedLine > 0
                      ? BuildMessage::text(compileError).arg(QString::number(result.line), related)
                      : BuildMessage::text(compileErrorWithoutLine).arg(related);
    return result;
}

} // namespace

QList<GccError> readGccErrors(const QString &output)
{
    QList<GccError> errors;
    const QVector<QStringRef> lines = output.splitRef(QLatin1Char('\n'));
    for (const QStringRef &ref : lines) {
        // A line without an end would keep the expressions busy for long.
        const QString line = ref.left(2000).trimmed().toString();
        if (!isNoise(line))
            errors << readLine(line);
    }
    return errors;
}

QString decodeIdentifier(const QString &name)
{
    static const QRegularExpression escape(QStringLiteral("_u([0-9A-Fa-f]{4})"));
    static const QRegularExpression prefix(QStringLiteral("^(hwnd_|g_hWnd_)(?=.)"));
    QString result;
    int copied = 0;
    QRegularExpressionMatchIterator matches = escape.globalMatch(name);
    while (matches.hasNext()) {
        const QRegularExpressionMatch match = matches.next();
        result += name.midRef(copied, match.capturedStart() - copied);
        result += QChar(match.captured(1).toUShort(nullptr, 16));
        copied = match.capturedEnd();
    }
    result += name.midRef(copied);
    return result.remove(prefix);
}

QList<BuildDiagnostic> translateGccOutput(const QString &output, const QString &generatedFile,
                                          const QString &generatedText,
                                          const SourceLineMap &lineMap)
{
    const GeneratedLineTable table(generatedText);
    const QString generatedName = QFileInfo(generatedFile).fileName();
    QList<BuildDiagnostic> messages;
    QSet<QString> seen;
    const QList<GccError> errors = readGccErrors(output);
    for (const GccError &error : errors) {
        const bool isOurs = QFileInfo(error.file).fileName() == generatedName;
        const int mergedLine = isOurs ? table.mergedLine(error.line) : 0;
        // One mistake makes many errors on its line.
        const QString cause = mergedLine > 0
                                  ? QString::number(mergedLine)
                                  : QString::number(int(error.kind)) + error.message.left(200);
        if (seen.contains(cause) || messages.size() >= maxMessages)
            continue;
        seen << cause;
        const BuildDiagnostic message = translated(error, mergedLine, lineMap);
        const bool repeated =
            std::any_of(messages.begin(), messages.end(), [&message](const BuildDiagnostic &other) {
                return other.text == message.text;
            });
        if (!repeated)
            messages << message;
    }
    return messages;
}
