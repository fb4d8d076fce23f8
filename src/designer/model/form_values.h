// The single values of form files: numbers within bounds, texts and names fit for use, warnings.
#pragma once

#include "designer/model/json_tree.h"

#include <QStringList>

// Collects Chinese sentences for whoever builds; the number of them is limited.
class FormWarnings
{
public:
    // `line` is 1-based; 0 leaves the place out.
    void add(int line, const QString &sentence);
    QStringList take();

private:
    QStringList m_sentences;
    int m_dropped = 0;
};

namespace FormValues {

// Sizes are 0 to 32767 pixels, positions as far to both sides.
constexpr int largestPixel = 32767;

// The number rounded and brought into the bounds; `fallback` for anything but a number.
int bounded(const JsonTree &tree, const JsonNode *node, int fallback, int lowest, int highest);
// Whether `bounded` would give another number than the one that stands there.
bool isOutside(const JsonTree &tree, const JsonNode *node, int lowest, int highest);

// Without NUL characters, which end texts in the program; half surrogate pairs become U+FFFD.
QString usableText(const QString &text);
// The same for all texts inside a property value.
QVariant usableValue(const QVariant &value);
// A property value as it is written: fonts by QFont::toString, what JSON does not have as text.
QJsonValue encoded(const QVariant &value);

// A text of any length as part of a message: in one line, cut short.
QString shown(const QString &text);
// Letters, digits and "_", no digit first.
bool isIdentifier(const QString &name);
// `name` with "_" for what an identifier cannot hold. Never empty.
QString madeIdentifier(const QString &name);

} // namespace FormValues
