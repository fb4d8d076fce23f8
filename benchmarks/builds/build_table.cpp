#include "builds/build_table.h"

namespace {

int columns(const QString &text)
{
    int width = 0;
    for (const QChar c : text)
        width += c.unicode() >= 0x2E80 ? 2 : 1;
    return width;
}

QString padded(const QString &text, int width)
{
    return text + QString(qMax(0, width - columns(text)), QLatin1Char(' '));
}

QString cellText(const BuildResults &results, const CellKey &key)
{
    if (!results.tools.at(key.tool).missing.isEmpty())
        return QStringLiteral("未安装");
    const auto cell = results.cells.constFind(key);
    if (cell == results.cells.constEnd())
        return QStringLiteral("—");
    const Sample &median = cell->median;
    if (!median.error.isEmpty())
        return QStringLiteral("失败");
    QString text = QStringLiteral("%1 / %2，%3 MB")
                       .arg(median.built, 0, 'f', 2)
                       .arg(median.shown, 0, 'f', 2)
                       .arg(double(median.size) / 1e6, 0, 'f', 2);
    if (cell->runs < results.runs)
        text += QStringLiteral("（%1 次）").arg(cell->runs);
    return text;
}

QString tableFor(const BuildResults &results, int project, Config config)
{
    QStringList head{QStringLiteral("步骤")};
    for (const ToolRecord &tool : results.tools)
        head << tool.title;
    QList<QStringList> rows{head};
    for (int step = 0; step < int(Step::Count); ++step) {
        QStringList row{stepTitle(Step(step))};
        for (int tool = 0; tool < results.tools.size(); ++tool)
            row << cellText(results, {project, config, tool, Step(step)});
        rows << row;
    }
    return alignedTable(rows);
}

} // namespace

QString alignedTable(const QList<QStringList> &rows)
{
    QList<int> widths;
    for (const QStringList &row : rows) {
        for (int column = 0; column < row.size(); ++column) {
            if (column == widths.size())
                widths << 3;
            widths[column] = qMax(widths.at(column), columns(row.at(column)));
        }
    }
    QString text;
    for (int index = 0; index < rows.size(); ++index) {
        text += QLatin1Char('|');
        for (int column = 0; column < widths.size(); ++column) {
            text += QStringLiteral(" %1 |").arg(
                padded(rows.at(index).value(column), widths.at(column)));
        }
        text += QLatin1Char('\n');
        if (index > 0)
            continue;
        text += QLatin1Char('|');
        for (const int width : widths)
            text += QString(width + 2, QLatin1Char('-')) + QLatin1Char('|');
        text += QLatin1Char('\n');
    }
    return text;
}

QString resultTables(const BuildResults &results)
{
    QString text =
        QStringLiteral("# 编译时间\n\n每格：到程序文件 / 到程序的首个输出（秒），程序大小；"
                       "%1 次的中位数。VorelDesk 的程序在 wine 中运行，向控制台输出；"
                       "对照的程序显示一个窗口。\n")
            .arg(results.runs);
    for (int project = 0; project < results.projects.size(); ++project) {
        for (const Config config : {Config::Debug, Config::Release}) {
            text += QStringLiteral("\n## %1，%2\n\n")
                        .arg(results.projects.at(project).title, configTitle(config));
            text += tableFor(results, project, config);
        }
    }
    return text;
}

QString installHints(const BuildResults &results)
{
    QString text;
    for (const ToolRecord &tool : results.tools) {
        if (!tool.missing.isEmpty())
            text += QStringLiteral("%1 未安装：%2\n").arg(tool.title, tool.missing);
    }
    return text;
}
