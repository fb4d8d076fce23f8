// OpenCall: the call whose arguments are being written.
#pragma once

#include <QString>
#include <QStringList>

#include <optional>

struct OpenCall
{
    QStringList path;   // the name called, the objects it is a member of before it
    int argument = 0;   // which one the cursor is in, from 0
    int openingAt = -1; // the place of its "("

    const QString &name() const { return path.last(); }
};

// The innermost call that is open at the end of `code`, which is masked (see masked_code.h).
// Parentheses without a name and brackets are passed over. A call goes on over lines only where a
// line ends or begins with a sign that asks for it, so that one left open does not reach into the
// statements below. Heads of functions are no calls.
std::optional<OpenCall> openCall(const QString &code);

// The names before the last dot of `code`, the outermost first, for what is written behind that dot
// at its end; empty without one, or where something other than names stands there.
QStringList objectPath(const QString &code);

// Whether `code` ends where an argument begins, or in its first word; a "&" may stand before that.
bool beginsArgument(const QString &code);

// The word that only blanks part from the name, or from where a name could begin, at the end of
// `code`; empty where there is none.
QString wordBeforeName(const QString &code);
