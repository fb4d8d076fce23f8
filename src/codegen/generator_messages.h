// Every message of the generator, with and without a line number.
#pragma once

#include <QString>
#include <QStringList>

namespace GeneratorMessage {

// `withLine` begins with the line as %1; its other arguments are those of `withoutLine`, one
// higher.
struct Text
{
    const char *withLine;
    const char *withoutLine;
};

extern const Text initialValueMissing;
extern const Text arrayFromLiteral;
extern const Text dimensionsDiffer;
extern const Text arrayWithoutValue;
extern const Text typeMismatch;
extern const Text undefinedCommand;
extern const Text emptyArgument;
extern const Text missingArguments;
extern const Text tooManyArguments;
extern const Text unknownProperty;
extern const Text layoutHasNoWindow;
extern const Text propertyOnlyRead;
extern const Text propertyOnlyWritten;
extern const Text memberType;
extern const Text unknownEvent;
extern const Text tooManyEventParameters;
extern const Text balloonWithoutText;
extern const Text balloonEmptyFirst;
extern const Text argumentType;
extern const Text unknownMethod;
extern const Text emptyMethodArgument;
extern const Text missingMethodArguments;
extern const Text timeCalcArguments;
extern const Text noResultPrinted;
extern const Text noVariableToChange;
extern const Text breakOutsideLoop;
extern const Text continueOutsideLoop;
extern const Text missingCondition;
extern const Text missingLoopCount;
extern const Text valueFromVoidFunction;
extern const Text functionDefinedTwice;
extern const Text classNamesCollide;
extern const Text classDefinedTwice;
extern const Text globalDefinedTwice;
extern const Text classUnavailable;
extern const Text commandUnavailable;
extern const Text incompleteExpression;

// The message for `line`, or the form without one when `line` is not positive.
QString format(const Text &text, int line, const QStringList &arguments);

} // namespace GeneratorMessage
