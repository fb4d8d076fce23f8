#include "catalog/command_syntax.h"

#include <algorithm>

namespace {

const QStringList &typeWords()
{
    static const QStringList words{
        QStringLiteral("文本"),     QStringLiteral("整数"),     QStringLiteral("小数"),
        QStringLiteral("通用"),     QStringLiteral("句柄"),     QStringLiteral("数组"),
        QStringLiteral("逻辑"),     QStringLiteral("双浮点"),   QStringLiteral("单浮点"),
        QStringLiteral("长整数"),   QStringLiteral("字节集"),   QStringLiteral("日期时间"),
        QStringLiteral("二维数组"), QStringLiteral("三维数组"),
    };
    return words;
}

// Splits at the commas that stand outside inner parentheses and quotes.
QStringList splitParameters(const QString &text)
{
    QStringList parts;
    int depth = 0;
    bool quoted = false;
    int start = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (quoted)
            continue;
        else if (c == QLatin1Char('('))
            ++depth;
        else if (c == QLatin1Char(')'))
            --depth;
        else if (c == QLatin1Char(',') && depth == 0) {
            parts << text.mid(start, i - start).trimmed();
            start = i + 1;
        }
    }
    const QString last = text.mid(start).trimmed();
    if (!parts.isEmpty() || !last.isEmpty())
        parts << last;
    return parts;
}

QStringList readTypes(const QString &word)
{
    const QStringList types = word.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    const bool known = !types.isEmpty() &&
                       std::all_of(types.begin(), types.end(),
                                   [](const QString &type) { return typeWords().contains(type); });
    return known ? types : QStringList();
}

// `declaration` is a part without its brackets and default value.
CommandParameter readParameter(const QString &declaration, bool optional)
{
    CommandParameter parameter;
    parameter.optional = optional;
    parameter.callback = declaration.startsWith(QLatin1Char('&'));
    parameter.types = readTypes(declaration.section(QLatin1Char(' '), 0, 0));
    parameter.name = declaration;
    if (parameter.types.isEmpty())
        parameter.types << QStringLiteral("通用");
    else
        parameter.name = declaration.section(QLatin1Char(' '), 1);
    if (parameter.name.startsWith(QLatin1Char('&'))) {
        parameter.reference = !parameter.callback;
        parameter.name = parameter.name.mid(1).trimmed();
    }
    return parameter;
}

// How many brackets `part` leaves open: those that open it without those that close it.
int openBrackets(const QString &part)
{
    int open = 0;
    for (int i = 0; i < part.size() && part.at(i) == QLatin1Char('['); ++i)
        ++open;
    for (int i = part.size() - 1; i >= 0 && part.at(i) == QLatin1Char(']'); --i)
        --open;
    return open;
}

CommandOverload readOverload(const QString &text)
{
    const QString dots = QStringLiteral("...");
    CommandOverload overload;
    int open = 0;
    for (const QString &part : splitParameters(text)) {
        const bool optional = open > 0 || part.startsWith(QLatin1Char('['));
        open = std::max(0, open + openBrackets(part));
        // A default value shown in the form is for human readers.
        QString declaration = part.section(QLatin1Char('='), 0, 0);
        overload.variadic = overload.variadic || declaration.contains(dots);
        declaration.remove(dots).remove(QLatin1Char('[')).remove(QLatin1Char(']'));
        declaration = declaration.simplified();
        if (!declaration.isEmpty())
            overload.parameters << readParameter(declaration, optional);
    }
    return overload;
}

} // namespace

int CommandOverload::requiredCount() const
{
    return static_cast<int>(std::count_if(parameters.begin(), parameters.end(),
                                          [](const CommandParameter &p) { return !p.optional; }));
}

const CommandParameter *CommandOverload::parameterAt(int position) const
{
    const int last = parameters.size() - 1;
    if (position > last && !variadic)
        return nullptr;
    return last < 0 ? nullptr : &parameters.at(std::min(position, last));
}

QList<CommandOverload> readCommandSyntax(const QString &syntax)
{
    QList<CommandOverload> overloads;
    for (const QString &line : syntax.split(QLatin1Char('\n'), Qt::SkipEmptyParts)) {
        const int open = line.indexOf(QLatin1Char('('));
        const int close = line.lastIndexOf(QLatin1Char(')'));
        if (open >= 0 && close > open)
            overloads << readOverload(line.mid(open + 1, close - open - 1));
    }
    return overloads;
}
