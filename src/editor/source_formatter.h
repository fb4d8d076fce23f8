// Formatting of source text: indentation by brackets, blanks around operators.
#pragma once

#include "editor/indentation.h"

#include <QString>

namespace SourceFormatter {

// The text with every line indented by its brackets, one blank around operators and behind commas,
// no blanks at the ends of lines and at most one blank line in a row within brackets. Strings and
// comments stay as they are, and so do the tokens that the compiler reads. From the line on where
// brackets no longer match, indentation and blank lines are left alone.
QString formatted(const QString &source, const Indentation &indentation = {});

} // namespace SourceFormatter
