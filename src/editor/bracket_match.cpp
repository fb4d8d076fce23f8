#include "editor/bracket_match.h"

#include "editor/masked_code.h"

#include <QVector>

namespace {

// The bracket that closes `sign`; null for what is no opening bracket.
QChar closerOf(QChar sign)
{
    switch (sign.unicode()) {
    case u'(':
        return u')';
    case u'[':
        return u']';
    case u'{':
        return u'}';
    default:
        return QChar();
    }
}

} // namespace

std::optional<std::pair<int, int>> matchedBrackets(const QString &text, int position)
{
    struct Opening
    {
        int place;
        QChar closer;
    };
    QVector<Opening> openings;
    // The line added last takes the rules for the line that is being typed.
    const QString code = maskedCode(text + QLatin1Char('\n')).text;
    for (int place = 0; place < code.size(); ++place) {
        const QChar sign = code.at(place);
        if (sign.unicode() >= 0x80)
            continue;
        if (const QChar closer = closerOf(sign); !closer.isNull()) {
            openings.append({place, closer});
        } else if (!openings.isEmpty() && sign == openings.last().closer) {
            const int opening = openings.takeLast().place;
            const auto isTouched = [&](int bracket) {
                return bracket == position || bracket == position - 1;
            };
            if (isTouched(opening) || isTouched(place))
                return std::make_pair(opening, place);
        }
    }
    return std::nullopt;
}
