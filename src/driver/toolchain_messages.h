// Says in the user's words what a message of a tool means.
#pragma once

#include "driver/toolchain_names.h"
#include "driver/toolchain_table.h"

#include <QString>

// Where a message was found to belong.
struct MessagePlace
{
    int line = 0;          // of the user's file, 0 when it is not known
    QString generatedLine; // the line of generated C++ that the tool speaks of
    int column = 0;        // in it, as the tool counts
    bool isCaller = false; // the line only asked for what failed elsewhere
    UserText user;
};

struct MessageText
{
    QString text;        // empty when there is nothing to tell
    bool isWeak = false; // tells little
};

// The wording for one message, by the table. Nothing of C++ is in it that has a word of the user's.
MessageText wordMessage(const ToolMessage &message, const MessagePlace &place);

// The identifier of generated C++ that a linker's message is about; empty without one.
QString symbolOf(const ToolMessage &message);
