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
