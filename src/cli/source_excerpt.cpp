#include "cli/source_excerpt.h"

#include "cli/cell_width.h"

namespace {

constexpr int tabCells = 8;

// A part of a line by its offsets.
struct Span
{
    int begin = 0;
    int end = 0;
};

bool isWordCharacter(const QString &text, int at)
{
    return at >= 0 && at < text.size() &&
           (text.at(at).isLetterOrNumber() || text.at(at) == QLatin1Char('_'));
}

// Whether `words` stands at `at` and is no part of a longer word.
bool standsAt(const QString &text, int at, const QString &words)
{
    const int end = at + words.size();
    return text.midRef(at, words.size()) == words &&
           !(isWordCharacter(text, at - 1) && isWordCharacter(text, at)) &&
           !(isWordCharacter(text, end - 1) && isWordCharacter(text, end));
}

// Empty where the place is not certain.
Span findPlace(const QString &text, const ExcerptPlace &place)
{
    const QString &words = place.nearText;
    if (place.column <= 0 || words.isEmpty())
        return {};
    int found = place.column - 1;
    if (!standsAt(text, found, words)) {
        found = -1;
        for (int at = text.indexOf(words); at >= 0; at = text.indexOf(words, at + 1)) {
            if (!standsAt(text, at, words))
                continue;
            if (found >= 0)
                return {};
            found = at;
        }
    }
    return found < 0 ? Span() : Span{found, found + words.size()};
}

// The offset behind the character at `at`, and that of the character before.
int next(const QString &text, int at)
{
    const bool isPair =
        at + 1 < text.size() && text.at(at).isHighSurrogate() && text.at(at + 1).isLowSurrogate();
    return at + (isPair ? 2 : 1);
}

int previous(const QString &text, int at)
{
    return at >= 2 && next(text, at - 2) == at ? at - 2 : at - 1;
}

int cellsOf(const QString &text, int begin, int end)
{
    return text.at(begin) == QLatin1Char('\t') ? tabCells : cellWidth(text.mid(begin, end - begin));
}

// The part of the line to show: at most `cells`, the beginning of `place` inside with what stands
// before and behind it. A part is bounded in characters too: some have no width.
Span visiblePart(const QString &text, const Span &place, int cells)
{
    const int mostCharacters = 4 * cells;
    Span part{place.begin, place.begin};
    int used = 0;
    const auto growLeft = [&](int limit) {
        while (part.begin > 0 && part.end - part.begin < mostCharacters) {
            const int at = previous(text, part.begin);
            const int width = cellsOf(text, at, part.begin);
            if (used + width > limit)
                return;
            used += width;
            part.begin = at;
        }
    };
    growLeft(cells / 2);
    while (part.end < text.size() && part.end - part.begin < mostCharacters) {
        const int behind = next(text, part.end);
        const int width = cellsOf(text, part.end, behind);
        if (used + width > cells)
            break;
        used += width;
        part.end = behind;
    }
    growLeft(cells);
    return part;
}

// What a terminal may be given of a source.
QString shown(const QString &text, const Span &part)
{
    QString result = text.mid(part.begin, part.end - part.begin);
    for (QChar &c : result) {
        switch (c.category()) {
        case QChar::Other_Control:
        case QChar::Other_Format:
        case QChar::Separator_Line:
        case QChar::Separator_Paragraph:
            c = c == QLatin1Char('\t') ? c : QChar(QChar::ReplacementCharacter);
            break;
        default:
            break;
        }
    }
    return result;
}

// Blanks as wide as the text; tabs stay, so that both lines meet the same stops.
QString blanksFor(const QString &text)
{
    QString blanks;
    const QVector<uint> codePoints = text.toUcs4();
    for (const uint codePoint : codePoints) {
        if (codePoint == '\t')
            blanks += QLatin1Char('\t');
        else
            blanks += QString(cellWidth(codePoint), QLatin1Char(' '));
    }
    return blanks;
}

} // namespace

SourceExcerpt sourceExcerpt(const QString &text, const ExcerptPlace &place, int cells)
{
    if (text.trimmed().isEmpty())
        return {};
    const QString margin = QStringLiteral("%1 | ").arg(place.line, 5);
    const QString ellipsis(QChar(u'…'));
    const Span marked = findPlace(text, place);
    const Span part = visiblePart(text, marked, cells - margin.size() - 2 * ellipsis.size());
    const QString before = (part.begin > 0 ? ellipsis : QString()) +
                           shown(text, {part.begin, qMax(part.begin, marked.begin)});
    const Span visibleMark{marked.begin, qMin(marked.end, part.end)};
    const QString under = shown(text, visibleMark);
    SourceExcerpt excerpt;
    excerpt.source = margin + before + under + shown(text, {visibleMark.end, part.end}) +
                     (part.end < text.size() ? ellipsis : QString());
    if (marked.end > marked.begin) {
        excerpt.mark = QString(margin.size() - 2, QLatin1Char(' ')) + QLatin1String("| ") +
                       blanksFor(before) + QLatin1Char('^') +
                       QString(qMax(0, cellWidth(under) - 1), QLatin1Char('~'));
    }
    return excerpt;
}
