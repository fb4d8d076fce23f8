#include "editor/param_hint.h"

#include <QVector>

#include <algorithm>

namespace {

const QString none = QStringLiteral("（无）");

struct Form
{
    QString head; // up to the parentheses
    QStringList parameters;
    QString tail; // behind them

    bool repeats() const
    {
        return !parameters.isEmpty() && parameters.last().contains(QLatin1String("..."));
    }
    // -1: there is none for it.
    int parameterAt(int argument) const
    {
        if (argument < parameters.size())
            return argument;
        return repeats() ? parameters.size() - 1 : -1;
    }
};

// Splits at the commas outside of parentheses and quotes; brackets only mark what may be left out.
QStringList splitParameters(const QString &list)
{
    QStringList parameters{QString()};
    int depth = 0;
    bool isQuoted = false;
    for (const QChar sign : list) {
        if (sign == QLatin1Char('"'))
            isQuoted = !isQuoted;
        else if (!isQuoted && sign == QLatin1Char('('))
            ++depth;
        else if (!isQuoted && sign == QLatin1Char(')'))
            --depth;
        if (sign == QLatin1Char(',') && depth == 0 && !isQuoted)
            parameters.append(QString());
        else
            parameters.last().append(sign);
    }
    for (QString &parameter : parameters)
        parameter = parameter.trimmed();
    return parameters;
}

Form readForm(const QString &text)
{
    const int empty = text.indexOf(none);
    const int open = empty >= 0 ? empty : text.indexOf(QLatin1Char('('));
    const int close = empty >= 0 ? empty + none.size() - 1 : text.lastIndexOf(QLatin1Char(')'));
    if (open < 0 || close < open)
        return {text, {}, {}};
    const QString list = text.mid(open + 1, close - open - 1).trimmed();
    const bool isEmpty = list.isEmpty() || list == QStringLiteral("无");
    return {text.left(open), isEmpty ? QStringList() : splitParameters(list), text.mid(close + 1)};
}

QString formHtml(const Form &form, int argument)
{
    QStringList parameters;
    for (int i = 0; i < form.parameters.size(); ++i) {
        const QString parameter = form.parameters.at(i).toHtmlEscaped();
        parameters << (i == form.parameterAt(argument) ? QStringLiteral("<b>%1</b>").arg(parameter)
                                                       : parameter);
    }
    const QString list =
        parameters.isEmpty()
            ? none
            : QLatin1Char('(') + parameters.join(QLatin1String(", ")) + QLatin1Char(')');
    return form.head.toHtmlEscaped() + list + form.tail.toHtmlEscaped();
}

} // namespace

QString paramHintHtml(const QStringList &forms, int argument)
{
    QVector<Form> read;
    for (const QString &form : forms)
        read.append(readForm(form));
    const auto fits = [argument](const Form &form) { return form.parameterAt(argument) >= 0; };
    const bool anyFits = std::any_of(read.begin(), read.end(), fits);
    QStringList lines;
    for (const Form &form : qAsConst(read)) {
        const QString line = formHtml(form, argument);
        lines << (anyFits && !fits(form) ? QStringLiteral("<font color='#888'>%1</font>").arg(line)
                                         : line);
    }
    return lines.join(QLatin1String("<br>"));
}
