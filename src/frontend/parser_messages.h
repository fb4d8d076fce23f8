// Parser messages: every sentence that the parser says, by name.
#pragma once

#include <QString>

#include <initializer_list>

enum class ParserMessage : int
{
    ExpectedOpenParen,
    ExpectedCloseParen,
    ExpectedOpenBrace,
    ExpectedCloseBrace,
    ExpectedCloseBracket,
    ExpectedColon,
    MissingOpenParen,
    MissingCloseParen,
    MissingOpenBrace,
    MissingCloseBrace,
    MissingCloseBracket,
    MissingSemicolon,
    MissingComma,
    MissingVariableName,
    MissingIndexVariable,
    MissingElementVariable,
    MissingArrayName,
    MissingParameterName,
    MissingClassName,
    MissingPropertyType,
    MissingPropertyName,
    MissingMethodName,
    MissingInstanceName,
    NotAClassMember,
    KeywordAsVariable,
    BracketAfterVariable,
    CommaRefused,
    GlobalUnknownClass,
    GlobalNoDeclaration,
    FlowAtFileScope,
    JumpAtFileScope,
    NameAtFileScope,
    BlockAtFileScope,
    TokenAtFileScope,
    Stalled,
    PositionOutside,
    NoFunctionToken,
    VariadicParameter,
    MissingParameterComma,
    OptionalNotClosed,
    UnparsableToken,
    LoneIdentifier,
    AssignmentInCondition,
    NestingTooDeep,
    TernaryWithoutColon,
    CallbackMark,
    TooManyMessages,
};

// The sentence with its places %1, %2, %3 filled. Long arguments are cut, so that a message stays
// a message whatever a source quotes.
QString messageText(ParserMessage message, std::initializer_list<QString> arguments = {});

// The full friendly text: line, sentence, the place `nearText`, and a hint for the common mistakes.
QString friendlyText(const QString &sentence, int line, const QString &nearText);

// The short English frame of the same.
QString plainText(const QString &sentence, int line, const QString &nearText);
