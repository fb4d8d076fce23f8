#include "driver/pointed_code.h"

#include <QRegularExpression>

#include <algorithm>
#include <cctype>
#include <cstring>

namespace {

// The offset in bytes of a column that counts cells, two for a Chinese character.
int offsetOfCell(const QString &line, int column)
{
    int cell = 1;
    int i = 0;
    while (i < line.size() && cell < column) {
        cell += line.at(i).unicode() < 0x1100 ? 1 : 2;
        i += line.at(i).isHighSurrogate() ? 2 : 1;
    }
    return line.left(i).toUtf8().size();
}

} // namespace

PointedCode::PointedCode(const QString &line, int column) : m_line(line.toUtf8())
{
    for (const int place : {column - 1, column > 0 ? offsetOfCell(line, column) : -1}) {
        if (!m_places.contains(place) && isLikely(place))
            m_places << place;
    }
}

// Nobody points between words or into a string.
bool PointedCode::isLikely(int place) const
{
    return place >= 0 && place < m_line.size() && !std::strchr(" ,;)", m_line.at(place)) &&
           !isInText(place);
}

// Whether a place is within a string or a character.
bool PointedCode::isInText(int at) const
{
    char open = 0;
    for (int i = 0; i < at; ++i) {
        const char c = m_line.at(i);
        if (c == '\\')
            ++i;
        else if (open ? c == open : c == '"' || c == '\'')
            open = open ? 0 : c;
    }
    return open != 0;
}

QString PointedCode::sign() const
{
    static const QRegularExpression form(QStringLiteral("^[-+*/%=<>!&|\\[]+"));
    for (const int at : m_places) {
        const QString found = form.match(QString::fromUtf8(m_line.mid(at, 8))).captured();
        if (!found.isEmpty())
            return found;
    }
    return QString();
}

bool PointedCode::isOfName(int at) const
{
    const auto c = uchar(at >= 0 && at < m_line.size() ? m_line.at(at) : ' ');
    return std::isalnum(c) || c == '_' || c == ':' || c > 127;
}

bool PointedCode::isCallee(int at) const
{
    return m_line.mid(at, 1) == "(" ||
           (isOfName(at) && (!isOfName(at - 1) || m_line[at - 1] == ':'));
}

QString PointedCode::nameBefore(int end) const
{
    int begin = end;
    while (isOfName(begin - 1))
        --begin;
    return QString::fromUtf8(m_line.mid(begin, end - begin));
}

QString PointedCode::callee() const
{
    const auto at = std::find_if(m_places.begin(), m_places.end(),
                                 [this](int place) { return isCallee(place); });
    if (at == m_places.end())
        return QString();
    int end = *at;
    while (isOfName(end))
        ++end;
    return nameBefore(end);
}

// Where the string or character ends that opens ahead of the mark at `end`.
int PointedCode::beginOfText(int end) const
{
    int at = end - 1;
    while (at > 0 && (m_line.at(at) != m_line.at(end) || m_line.at(at - 1) == '\\'))
        --at;
    return at;
}

PointedCode::Argument PointedCode::argumentAt(int at) const
{
    static const QRegularExpression keyword(
        QStringLiteral("^(?:if|while|for|switch|return|sizeof|catch|int|bool|double|intptr_t)?$"));
    Argument argument;
    int depth = 0;
    int number = 1;
    for (int i = at - 1; i >= 0; --i) {
        const char c = m_line.at(i);
        if (c == '"' || c == '\'')
            i = beginOfText(i);
        else if (c == ')' || c == ']' || c == '}')
            ++depth;
        else if (c == ',' && depth == 0)
            ++number;
        else if ((c == '(' || c == '[' || c == '{') && --depth < 0) {
            const QString name = c == '(' ? nameBefore(i) : QString();
            if (!name.contains(keyword))
                argument = {name, number};
            break;
        }
    }
    return argument;
}

PointedCode::Argument PointedCode::argument() const
{
    if (m_places.isEmpty())
        return {};
    const Argument one = argumentAt(m_places.first());
    const Argument other = argumentAt(m_places.last());
    if (one.function.isEmpty() || other.function.isEmpty())
        return one.function.isEmpty() ? other : one;
    if (one.function != other.function)
        return {};
    return {one.function, one.number == other.number ? one.number : 0};
}
