// The two brackets that belong together.
#pragma once

#include <QString>

#include <optional>
#include <utility>

// The places of the bracket that stands right before or behind `position` and of its partner, the
// opening one first. Brackets in strings and comments do not count. Reads the whole text.
std::optional<std::pair<int, int>> matchedBrackets(const QString &text, int position);
