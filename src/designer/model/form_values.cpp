#include "designer/model/form_values.h"

#include <QFont>

#include <algorithm>
#include <cmath>

void FormWarnings::add(int line, const QString &sentence)
{
    constexpr int most = 100;
    if (m_sentences.size() >= most) {
        ++m_dropped;
        return;
    }
    m_sentences << (line > 0 ? QStringLiteral("第 %1 行: %2").arg(line).arg(sentence) : sentence);
}

QStringList FormWarnings::take()
{
    if (m_dropped > 0)
        m_sentences << QStringLiteral("另有 %1 条警告未列出").arg(m_dropped);
    m_dropped = 0;
    QStringList taken;
    taken.swap(m_sentences);
    return taken;
}

namespace FormValues {

int bounded(const JsonTree &tree, const JsonNode *node, int fallback, int lowest, int highest)
{
    if (!node || node->kind != JsonKind::Number)
        return fallback;
    return int(std::lround(qBound(double(lowest), tree.number(*node), double(highest))));
}

bool isOutside(const JsonTree &tree, const JsonNode *node, int lowest, int highest)
{
    if (!node)
        return false;
    if (node->kind != JsonKind::Number)
        return true;
    const double value = tree.number(*node);
    return value < lowest || value > highest;
}

QString usableText(const QString &text)
{
    const auto isHalf = [&text](int i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate())
            return i + 1 >= text.size() || !text.at(i + 1).isLowSurrogate();
        return c.isLowSurrogate() && (i == 0 || !text.at(i - 1).isHighSurrogate());
    };
    const bool good = std::none_of(text.begin(), text.end(),
                                   [](QChar c) { return c.isNull() || c.isSurrogate(); });
    if (good)
        return text;
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (!text.at(i).isNull())
            out += isHalf(i) ? QChar(QChar::ReplacementCharacter) : text.at(i);
    }
    return out;
}

QVariant usableValue(const QVariant &value)
{
    switch (int(value.type())) {
    case QVariant::String:
        return usableText(value.toString());
    case QVariant::List: {
        QVariantList list = value.toList();
        for (QVariant &element : list)
            element = usableValue(element);
        return list;
    }
    case QVariant::Map: {
        QVariantMap map;
        const QVariantMap old = value.toMap();
        for (auto it = old.begin(); it != old.end(); ++it)
            map.insert(usableText(it.key()), usableValue(it.value()));
        return map;
    }
    default:
        return value;
    }
}

QJsonValue encoded(const QVariant &value)
{
    if (!value.isValid())
        return QJsonValue(QJsonValue::Null);
    if (int(value.type()) == QVariant::Font)
        return value.value<QFont>().toString();
    if (int(value.type()) == QVariant::Double && !std::isfinite(value.toDouble()))
        return QJsonValue(QJsonValue::Null);
    const QJsonValue json = QJsonValue::fromVariant(value);
    return json.isUndefined() ? QJsonValue(value.toString()) : json;
}

QString shown(const QString &text)
{
    constexpr int most = 40;
    QString start = text.left(2 * most).simplified();
    if (text.size() <= 2 * most && start.size() <= most)
        return start;
    return start.left(most) + QStringLiteral("…");
}

namespace {

// Calls `take` with each character and whether an identifier may hold it at its place.
template <typename Take>
void eachCharacter(const QString &name, Take take)
{
    bool first = true;
    for (int i = 0; i < name.size(); ++i) {
        uint code = name.at(i).unicode();
        if (name.at(i).isHighSurrogate() && i + 1 < name.size() &&
            name.at(i + 1).isLowSurrogate()) {
            ++i;
            code = QChar::surrogateToUcs4(name.at(i - 1), name.at(i));
        }
        const bool fits = code == '_' || QChar::isLetter(code) ||
                          (!first && (QChar::isDigit(code) || QChar::isMark(code)));
        take(code, fits);
        first = false;
    }
}

} // namespace

bool isIdentifier(const QString &name)
{
    bool good = !name.isEmpty();
    eachCharacter(name, [&good](uint, bool fits) { good = good && fits; });
    return good;
}

QString madeIdentifier(const QString &name)
{
    QString out;
    eachCharacter(name, [&out](uint code, bool fits) {
        if (!fits)
            out += QLatin1Char('_');
        if (fits || QChar::isDigit(code))
            out += QString::fromUcs4(&code, 1);
    });
    return out.isEmpty() ? QStringLiteral("_") : out;
}

} // namespace FormValues
