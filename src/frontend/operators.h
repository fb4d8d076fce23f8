// Operators: signs of one and two characters, and the texts of their tokens.
#pragma once

#include <QString>

struct Operator
{
    int kind;
    // Characters of the source.
    int length;
};

// The operator that starts at `current`, `next` being the character behind it (NUL at the end of
// the text). What is no operator has the kind `Error` and the length 1.
Operator findOperator(QChar current, QChar next);

// The text of an operator token, which is the ASCII form whatever was typed.
const QString &operatorText(int kind);
