// CheckMessage: every sentence of the semantic checks, by name, with its grade.
#pragma once

#include <QString>
#include <QStringList>

// Where arguments follow, their order is that of the placeholders behind the line number.
enum class CheckMessage : int
{
    // Declarations.
    OverloadDiffersInReturn, // function, line of the other, its type, this type
    FunctionRepeated,        // function, line of the other
    GlobalRepeated,          // name
    VariableRepeated,        // name
    VariableLikeParameter,   // name
    ParameterRepeated,       // name
    MemberRepeated,          // class, member
    FunctionAndGlobal,       // name
    MainTakesParameters,     // function
    EventParameterType,      // function, parameter, type
    GlobalUsedTooEarly,      // name
    UnusedGlobal,            // name
    UnusedParameter,         // name
    UnusedVariable,          // name
    NoEffect,
    // Names.
    HashBeforeGlobal,    // name
    HashMissing,         // name
    UnknownName,         // name, suggestion
    UnknownType,         // word, suggestion
    FunctionWithoutCall, // name
    MethodWithoutCall,   // object.method
    CommandWithoutCall,  // name
    ClassAsValue,        // name
    NoSuchMember,        // class, member, suggestion
    NoMembersAtAll,      // expression, type, member
    CallOfVariable,      // name
    CallOfExpression,
    // Calls.
    NoFittingOverload,   // function, count
    TooManyForFunction,  // function, count
    PropertyCalled,      // property
    ConstructorTooFew,   // class, count, least
    ConstructorTooMany,  // class, count, most, advice
    NoConstructor,       // class
    UnknownFunction,     // name, hint
    TooFewArguments,     // command, names
    TooFewForAnyForm,    // command, count
    TooManyArguments,    // command, count, most, advice
    EmptyArgument,       // command, ordinal
    CallbackWithoutMark, // command, position
    TimestampSecondArgument,
    TimestampWantsText,
    ArgumentNeedsType,      // command, ordinal, type
    ArgumentOfOtherType,    // command, ordinal, types
    ReferenceNeedsVariable, // function, ordinal, type
    MemberPropertyCalled,   // object, property
    MethodTooFew,           // object, method, count, least
    MethodTooMany,          // object, method, count, most
    MethodCallbackMark,     // object, method, position
    UnknownMethod,          // object, method
                            // Values.
    TextAssigned,           // type, name
    BoolAssignedToText,     // type, name
    AssignmentMismatch,     // type, name, type of the value, advice
    AssignmentWithoutValue, // name
    AssignmentTarget,
    TextElementAssigned, // name
    ReadOnlyProperty,    // object, property
    ValueOfNothing,      // function
    OperandType,         // type, sign, advice
    LogicalOperand,      // type, sign
    NegationOperand,     // type
    UseOfType,           // statement or sign, type
    ConditionType,       // word, type
    StepType,            // sign, type
    NoElements,          // expression, type
    ElementByText,       // type
    DictionaryVariable,  // type, name
    HandleAsValue,       // type, name, component
    LabelWithoutValue,
    ObjectInArray,
    ArrayValue,        // name, form
    ArrayValueUnknown, // name
    ArrayDimensions,   // name, declared, given
    ArrayMalformed,    // name
                       // Returns.
    ValueReturned,     // function, type
    ValueMissing,      // function, type
    ReturnType,        // function, wanted, given
    TooManyWarnings,
    TooManyMessages,
};

// "第 n 行：" and the sentence with its arguments. The first placeholder of a sentence is the line.
QString checkText(CheckMessage message, int line, const QStringList &arguments = {});
// Warnings never stop a build.
bool isWarning(CheckMessage message);
