// What the text before the cursor asks completion for.
#pragma once

#include <QString>

struct CompletionContext
{
    enum class Kind
    {
        Nothing,
        Word,           // a name that stands alone
        Member,         // of `object`
        MemberOfMember, // of `member`, which belongs to `object`
    };

    Kind kind = Kind::Nothing;
    QString object;
    QString member;
    QString prefix; // what is typed of the name sought; "#" of a constant included
};

// `line` is the text of the line up to the cursor. In strings, also those with Chinese quotation
// marks, in comments and in numbers nothing is asked for. What lies on the lines before is not
// known here: the caller masks strings and comments that begin there.
CompletionContext completionContext(const QString &line);
