#include "editor/punctuation.h"

#include <QHash>

namespace {

QChar asciiSign(QChar sign)
{
    static const QHash<QChar, QChar> signs{
        {u'，', u','}, {u'、', u','}, {u'；', u';'}, {u'（', u'('}, {u'）', u')'}, {u'“', u'"'},
        {u'”', u'"'},  {u'‘', u'\''}, {u'’', u'\''}, {u'：', u':'}, {u'【', u'['}, {u'［', u'['},
        {u'】', u']'}, {u'］', u']'}, {u'｛', u'{'}, {u'｝', u'}'}};
    return signs.value(sign, sign);
}

} // namespace

QString withAsciiPunctuation(const QString &line)
{
    QString result = line;
    bool inString = false;
    for (int i = 0; i < line.size(); ++i) {
        const bool isEscaped = i > 0 && line.at(i - 1) == QLatin1Char('\\');
        if (line.at(i) == QLatin1Char('"') && !isEscaped)
            inString = !inString;
        else if (!inString)
            result[i] = asciiSign(line.at(i));
    }
    return result;
}
