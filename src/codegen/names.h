// How names of the source become names of C++.
#pragma once

#include <QString>

namespace Names {

// The C++ identifier of a source name: "_u" and four hexadecimal digits for each letter or digit
// beyond ASCII, "_" for what is neither letter, digit nor "_". Never empty.
QString sanitize(const QString &name);
// `sanitize`, kept apart from C++'s own words: "int" becomes "int_".
QString identifier(const QString &name);
// For component names: one that is all ASCII stays as it is.
QString sanitizeComponent(const QString &name);
// The handle variable of a control, from its sanitised name.
QString handle(const QString &sanitized);
// Unicode form NFKC, in which class, variable and command names are compared.
QString normalized(const QString &name);
// The text behind a component type word ("按钮", ...) when `name` begins with one and goes on with
// digits only, else empty.
QString componentNumber(const QString &name);

} // namespace Names
