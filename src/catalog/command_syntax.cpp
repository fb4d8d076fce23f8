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

// Splits at the commas that stand outside inner parentheses.
QStringList splitParameters(const QString &text)
{
    QStringList parts;
    int depth = 0;
    int start = 0;
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c == QLatin1Char('('))
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

CommandParameter readParameter(QString part)
{
    CommandParameter parameter;
    if (part.startsWith(QLatin1Char('['))) {
        parameter.optional = true;
        part = part.mid(1, part.lastIndexOf(QLatin1Char(']')) - 1).trimmed();
    }
    // A default value shown in the form is for human readers.
    const QString declaration = part.section(QLatin1Char('='), 0, 0).trimmed();
    parameter.callback = declaration.startsWith(QLatin1Char('&'));
    const QString first = declaration.section(QLatin1Char(' '), 0, 0, QString::SectionSkipEmpty);
    parameter.types = readTypes(first);
    if (parameter.types.isEmpty()) {
        parameter.name = parameter.callback ? declaration.mid(1) : declaration;
        parameter.types << QStringLiteral("通用");
    } else {
        parameter.name = declaration.section(QLatin1Char(' '), 1, -1, QString::SectionSkipEmpty);
        if (parameter.name.startsWith(QLatin1Char('&')))
            parameter.name.remove(0, 1);
    }
    return parameter;
}

CommandOverload readOverload(const QString &parameters)
{
    CommandOverload overload;
    for (const QString &part : splitParameters(parameters)) {
        const QString bare = part.startsWith(QLatin1Char('[')) ? part.mid(1) : part;
        if (bare.startsWith(QLatin1String("...")))
            overload.variadic = true;
        else
            overload.parameters << readParameter(part);
    }
    return overload;
}

} // namespace

int CommandOverload::requiredCount() const
{
    return static_cast<int>(std::count_if(parameters.begin(), parameters.end(),
                                          [](const CommandParameter &p) { return !p.optional; }));
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
