#include "project/legacy_text.h"

LegacyText splitLegacyText(const QString &text)
{
    static const QString codeMark = QStringLiteral("===VL_CODE===");
    static const QString designMark = QStringLiteral("===VL_UI===");
    const int codeAt = text.indexOf(codeMark);
    if (codeAt < 0)
        return {text, QString()};
    const int begin = codeAt + codeMark.size();
    const int designAt = text.indexOf(designMark, begin);
    if (designAt < 0)
        return {text.mid(begin).trimmed(), QString()};
    return {text.mid(begin, designAt - begin).trimmed(), text.mid(designAt + designMark.size())};
}
