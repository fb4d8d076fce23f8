#include "driver/program_units.h"

#include "driver/cpp_items.h"
#include "driver/cpp_tokens.h"
#include "driver/message_location.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QHash>
#include <QMultiHash>
#include <QVector>

#include <algorithm>

const QString mainUnitName = QStringLiteral("main");

namespace {

// Generated lines that one unit should not pass by much: each unit costs a start of the compiler,
// each line in it is compiled again with its neighbours.
constexpr int linesPerUnit = 500;
// With more files than this the small ones share units.
constexpr int maxFilesApart = 24;

int lineCount(const QString &text)
{
    return int(std::count(text.begin(), text.end(), QLatin1Char('\n')));
}

// The same in every run, unlike qHash.
uint stableHash(const QString &text)
{
    const QByteArray hash = QCryptographicHash::hash(text.toUtf8(), QCryptographicHash::Sha1);
    return uint(uchar(hash[0])) << 24 | uint(uchar(hash[1])) << 16 | uint(uchar(hash[2])) << 8 |
           uint(uchar(hash[3]));
}

// A power of two, so that a file that grows keeps its parts for long.
uint partsFor(int lines)
{
    uint parts = 1;
    while (int(parts) * linesPerUnit < lines)
        parts *= 2;
    return parts;
}

QString unitNameOfFile(const QString &file)
{
    QString name = QStringLiteral("user_");
    for (const QChar c : QFileInfo(file).completeBaseName().left(40)) {
        if (c.unicode() < 128 && c.isLetterOrNumber())
            name += c;
    }
    return name + QLatin1Char('_') + QString::number(stableHash(file), 16);
}

// Decides which unit each definition belongs to.
class UnitAssignment
{
public:
    UnitAssignment(const QList<CppItem> &items, const SourceLineMap &lineMap);

    // Empty for an item that is not a definition.
    QString unitOf(const CppItem &item) const;

private:
    QString fileOf(const CppItem &item) const;

    const SourceLineMap &m_lineMap;
    QHash<QString, int> m_lines; // of the definitions of each file
    uint m_sharedParts = 0;      // the units that small files share; 0: every file is apart
};

UnitAssignment::UnitAssignment(const QList<CppItem> &items, const SourceLineMap &lineMap)
    : m_lineMap(lineMap)
{
    for (const CppItem &item : items) {
        if (item.kind == CppItem::Kind::Function && item.sourceLine > 0)
            m_lines[fileOf(item)] += lineCount(item.text);
    }
    if (m_lines.size() <= maxFilesApart)
        return;
    int smallLines = 0;
    for (const int lines : qAsConst(m_lines))
        smallLines += lines < linesPerUnit ? lines : 0;
    m_sharedParts = partsFor(smallLines);
}

QString UnitAssignment::fileOf(const CppItem &item) const
{
    return locate(m_lineMap, item.sourceLine).file;
}

QString UnitAssignment::unitOf(const CppItem &item) const
{
    if (!item.isDefinition())
        return QString();
    // Variables stay together: their initial values are computed in the order of the text.
    const bool generated = item.kind == CppItem::Kind::Variable || item.sourceLine == 0 ||
                           item.name.startsWith(QLatin1String("__VL_"));
    if (generated)
        return mainUnitName;
    const QString file = fileOf(item);
    const int lines = m_lines.value(file);
    if (m_sharedParts > 0 && lines < linesPerUnit)
        return QStringLiteral("user_%1").arg(stableHash(file) % m_sharedParts);
    const uint parts = partsFor(lines);
    const QString name = unitNameOfFile(file);
    return parts == 1 ? name
                      : QStringLiteral("%1_%2").arg(name).arg(
                            stableHash(item.text.section(QLatin1Char('{'), 0, 0)) % parts);
}

// Which of the names that the program declares each text mentions.
class Mentions
{
public:
    explicit Mentions(const QList<CppItem> &items);

    const QVector<int> &inText(int item) const { return m_inText.at(item); }
    const QVector<int> &inDeclaration(int item) const { return m_inDeclaration.at(item); }
    // The items that declare the name with that number.
    const QVector<int> &itemsOf(int name) const { return m_itemsOfName.at(name); }

private:
    QVector<int> namesIn(const QString &text) const;

    QHash<QString, int> m_numbers;
    QVector<QVector<int>> m_itemsOfName;
    QVector<QVector<int>> m_inText;
    QVector<QVector<int>> m_inDeclaration;
};

Mentions::Mentions(const QList<CppItem> &items)
{
    for (int i = 0; i < items.size(); ++i) {
        const QString &name = items.at(i).name;
        if (name.isEmpty())
            continue;
        const auto known = m_numbers.constFind(name);
        const int number = known != m_numbers.cend() ? *known : m_itemsOfName.size();
        if (known == m_numbers.cend()) {
            m_numbers.insert(name, number);
            m_itemsOfName.append(QVector<int>());
        }
        m_itemsOfName[number].append(i);
    }
    for (const CppItem &item : items) {
        m_inText.append(namesIn(item.text));
        m_inDeclaration.append(item.isDefinition() ? namesIn(item.declaration)
                                                   : m_inText.constLast());
    }
}

QVector<int> Mentions::namesIn(const QString &text) const
{
    QVector<int> names;
    CppTokenReader reader(text);
    for (CppToken token = reader.next(); token.kind != CppToken::Kind::End; token = reader.next()) {
        const bool directive = token.kind == CppToken::Kind::Directive;
        if (token.kind != CppToken::Kind::Name && !directive)
            continue;
        if (directive) {
            names += namesIn(text.mid(token.begin + 1, token.length() - 1));
            continue;
        }
        const auto found = m_numbers.constFind(
            QString::fromRawData(text.constData() + token.begin, token.length()));
        if (found != m_numbers.cend() && !names.contains(*found))
            names.append(*found);
    }
    return names;
}

// Puts the text of one unit together.
class UnitWriter
{
public:
    UnitWriter(const QList<CppItem> &items, const Mentions &mentions, const QVector<int> &owners)
        : m_items(items), m_mentions(mentions), m_owners(owners)
    {}

    QString write(int unit) const;

private:
    QVector<bool> neededBy(int unit) const;

    const QList<CppItem> &m_items;
    const Mentions &m_mentions;
    const QVector<int> &m_owners; // the unit of each item; -1 for what is no definition
};

QVector<bool> UnitWriter::neededBy(int unit) const
{
    QVector<bool> needed(m_items.size(), false);
    QVector<int> open; // names whose declarations are still to be looked at
    for (int i = 0; i < m_items.size(); ++i) {
        if (m_items.at(i).kind != CppItem::Kind::Always && m_owners.at(i) != unit)
            continue;
        needed[i] = true;
        open += m_mentions.inText(i);
    }
    while (!open.isEmpty()) {
        for (const int item : m_mentions.itemsOf(open.takeLast())) {
            if (needed.at(item))
                continue;
            needed[item] = true;
            open += m_mentions.inDeclaration(item);
        }
    }
    return needed;
}

QString UnitWriter::write(int unit) const
{
    const QVector<bool> needed = neededBy(unit);
    QString text;
    for (int i = 0; i < m_items.size(); ++i) {
        if (!needed.at(i))
            continue;
        const CppItem &item = m_items.at(i);
        text += item.isDefinition() && m_owners.at(i) != unit ? item.declaration : item.text;
    }
    return text;
}

// Recognises the tokens of `std::wstring(L"...")` as they come.
class LiteralPattern
{
public:
    // True with the last token of a literal.
    bool take(QStringView text, const CppToken &token)
    {
        static const QLatin1String words[] = {
            QLatin1String("std"), QLatin1String(":"), QLatin1String(":"), QLatin1String("wstring"),
            QLatin1String("("),   QLatin1String("L"), QLatin1String(),    QLatin1String(")")};
        constexpr int textAt = 6;
        const bool fits =
            m_count == textAt ? token.kind == CppToken::Kind::Text : text == words[m_count];
        if (!fits)
            m_count = 0;
        if (m_count == 0)
            begin = token.begin;
        m_count = fits || text == words[0] ? m_count + 1 : 0;
        if (m_count == textAt)
            literal = token.begin;
        if (m_count <= textAt + 1)
            return false;
        m_count = 0;
        return true;
    }

    int begin = 0;   // of the whole
    int literal = 0; // of `L"..."`

private:
    int m_count = 0; // of the tokens that fit so far
};

// Texts by a call of the runtime: programs consist of them, and each costs the compiler dear.
QString withShortLiterals(const QString &text)
{
    QString result;
    result.reserve(text.size());
    LiteralPattern pattern;
    CppTokenReader reader(text);
    int copied = 0;
    for (CppToken token = reader.next(); token.kind != CppToken::Kind::End; token = reader.next()) {
        if (!pattern.take(reader.textOf(token), token))
            continue;
        result += text.midRef(copied, pattern.begin - copied) + QLatin1String("VL_Literal(") +
                  text.midRef(pattern.literal, token.end - pattern.literal);
        copied = token.end;
    }
    return result + text.midRef(copied);
}

} // namespace

ProgramUnit wholeUnit(const ProgramText &program)
{
    return {mainUnitName, withShortLiterals(program.programOnly())};
}

QList<ProgramUnit> cutIntoUnits(const ProgramText &program, const SourceLineMap &lineMap)
{
    const QString text = withShortLiterals(program.programOnly());
    const CppItems cut = readCppItems(text);
    if (!cut.succeeded)
        return {{mainUnitName, text}};
    const UnitAssignment assignment(cut.items, lineMap);
    QStringList names{mainUnitName};
    QHash<QString, int> numbers{{mainUnitName, 0}};
    QVector<int> owners;
    for (const CppItem &item : cut.items) {
        const QString name = assignment.unitOf(item);
        if (!name.isEmpty() && !numbers.contains(name)) {
            numbers.insert(name, names.size());
            names << name;
        }
        owners << numbers.value(name, -1);
    }
    const Mentions mentions(cut.items);
    const UnitWriter writer(cut.items, mentions, owners);
    QList<ProgramUnit> units;
    for (int unit = 0; unit < names.size(); ++unit)
        units << ProgramUnit{names.at(unit), writer.write(unit)};
    return units;
}
