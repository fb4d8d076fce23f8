// The texts that a word becomes on Tab, and those that a selection is wrapped in.
#pragma once

#include "editor/indentation.h"

#include <QStringList>

#include <optional>

// The tables are read from ":/editor/templates.json".
namespace CodeTemplates {

// The words that Tab expands.
QStringList words();
// The words that a selection can be wrapped in.
QStringList wrapWords();

// What takes the place of `word` in a line that is `depth` columns deep; nothing for other words.
std::optional<QString> expanded(const QString &word, int depth, const Indentation &indentation);

// The whole lines `lines` inside of the statement `word`, which stands as deep as the first of
// them; nothing for other words. They take the statement's first empty line; where it has none,
// they stand in front of the first line of its body.
std::optional<QStringList> wrapped(const QString &word, const QStringList &lines,
                                   const Indentation &indentation);

} // namespace CodeTemplates
