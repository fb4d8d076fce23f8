#include "shell/command_help.h"

#include "catalog/command_library.h"

namespace {

QString section(const QString &title, const QString &body)
{
    return QStringLiteral("<h4>%1</h4>").arg(title) + body;
}

// Text whose line breaks and blanks matter.
QString codeSection(const QString &title, const QString &text)
{
    if (text.isEmpty())
        return {};
    return section(title,
                   QStringLiteral("<pre>") + text.toHtmlEscaped() + QStringLiteral("</pre>"));
}

QString textSection(const QString &title, const QString &text)
{
    if (text.isEmpty())
        return {};
    QString html = text.toHtmlEscaped();
    html.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return section(title, QStringLiteral("<p>") + html + QStringLiteral("</p>"));
}

// Each parameter is "name: what it is for".
QString parameterSection(const QStringList &parameters)
{
    QString rows;
    for (const QString &parameter : parameters) {
        const int colon = parameter.indexOf(QLatin1Char(':'));
        const QString name = parameter.left(colon).trimmed().toHtmlEscaped();
        const QString use = colon < 0 ? QString() : parameter.mid(colon + 1).trimmed();
        rows += QStringLiteral("<tr><td class='name'>") + name +
                QStringLiteral("</td><td class='use'>") + use.toHtmlEscaped() +
                QStringLiteral("</td></tr>");
    }
    if (rows.isEmpty())
        return {};
    return section(QStringLiteral("参数"),
                   QStringLiteral("<table>") + rows + QStringLiteral("</table>"));
}

} // namespace

QString commandHelpHtml(const CommandInfo &command)
{
    QString html = QStringLiteral("<h2>") + command.name.toHtmlEscaped();
    if (!command.category.isEmpty())
        html += QStringLiteral("&nbsp; <span class='category'>") +
                command.category.toHtmlEscaped() + QStringLiteral("</span>");
    html += QStringLiteral("</h2>");
    if (!command.description.isEmpty())
        html +=
            QStringLiteral("<p>") + command.description.toHtmlEscaped() + QStringLiteral("</p>");
    html += codeSection(QStringLiteral("语法"), command.syntax);
    html += parameterSection(command.parameters);
    html += textSection(QStringLiteral("返回值"), command.returnType);
    html += codeSection(QStringLiteral("例子"), command.example);
    html += codeSection(QStringLiteral("运行结果"), command.output);
    html += textSection(QStringLiteral("说明"), command.note);
    html += textSection(QStringLiteral("别名"), command.aliases.join(QStringLiteral("、")));
    return html;
}
