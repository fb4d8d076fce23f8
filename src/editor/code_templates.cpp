#include "editor/code_templates.h"

#include "catalog/json_table.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QVector>

#include <algorithm>

namespace {

struct Template
{
    QStringList words;
    QVector<int> levels; // of the marks %1, %2, %3: how much deeper than the current line
    QString text;
};

struct Tables
{
    QVector<Template> tab;
    QVector<Template> wrap;
};

QVector<Template> readTable(const QJsonArray &rows)
{
    QVector<Template> table;
    for (const QJsonValue &row : rows) {
        Template entry;
        for (const QJsonValue &word : row[QLatin1String("words")].toArray())
            entry.words.append(word.toString());
        for (const QJsonValue &level : row[QLatin1String("levels")].toArray())
            entry.levels.append(level.toInt());
        entry.text = row[QLatin1String("text")].toString();
        table.append(entry);
    }
    return table;
}

const Tables &tables()
{
    static const Tables tables = [] {
        const QJsonObject root = jsonTable(QStringLiteral(":/editor/templates.json")).object();
        return Tables{readTable(root.value(QLatin1String("tab")).toArray()),
                      readTable(root.value(QLatin1String("wrap")).toArray())};
    }();
    return tables;
}

QStringList allWords(const QVector<Template> &table)
{
    QStringList words;
    for (const Template &entry : table)
        words += entry.words;
    return words;
}

const Template *find(const QVector<Template> &table, const QString &word)
{
    const auto found = std::find_if(table.begin(), table.end(), [&](const Template &entry) {
        return entry.words.contains(word);
    });
    return found == table.end() ? nullptr : &*found;
}

QString mark(int index)
{
    return QLatin1Char('%') + QString::number(index + 1);
}

QString filled(const Template &entry, int depth, const Indentation &indentation)
{
    QString text = entry.text;
    for (int i = 0; i < entry.levels.size(); ++i)
        text.replace(mark(i), indentation.leading(depth + entry.levels.at(i) * indentation.width));
    return text;
}

// Where in `lines` the first one is for which `holds` is true; their number if there is none.
template <typename Predicate>
int firstLine(const QStringList &lines, Predicate holds)
{
    return int(std::find_if(lines.begin(), lines.end(), holds) - lines.begin());
}

} // namespace

QStringList CodeTemplates::words()
{
    return allWords(tables().tab);
}

QStringList CodeTemplates::wrapWords()
{
    return allWords(tables().wrap);
}

std::optional<QString> CodeTemplates::expanded(const QString &word, int depth,
                                               const Indentation &indentation)
{
    const Template *entry = find(tables().tab, word);
    if (!entry)
        return std::nullopt;
    return filled(*entry, depth, indentation);
}

std::optional<QStringList> CodeTemplates::wrapped(const QString &word, const QStringList &lines,
                                                  const Indentation &indentation)
{
    const Template *entry = find(tables().wrap, word);
    if (!entry || lines.isEmpty())
        return std::nullopt;
    const int depth = indentation.depth(lines.first());
    QStringList result = filled(*entry, depth, indentation).split(QLatin1Char('\n'));

    int place = firstLine(result, [](const QString &line) { return line.trimmed().isEmpty(); });
    const bool hasEmptyLine = place < result.size();
    if (!hasEmptyLine)
        place =
            firstLine(result, [&](const QString &line) { return indentation.depth(line) > depth; });
    const int shift = indentation.depth(result.value(place)) - depth;
    if (hasEmptyLine)
        result.removeAt(place);

    for (const QString &line : lines) {
        const int length = leadingLength(line);
        const bool isBlank = length == line.size();
        result.insert(place++, isBlank ? QString()
                                       : indentation.leading(indentation.depth(line) + shift) +
                                             line.mid(length));
    }
    return result;
}
