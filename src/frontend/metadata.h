// Metadata: the keys and fixed values of the syntax tree's metadata, as shared texts.
#pragma once

#include <QString>

// One text object for each key and fixed value, so that a million nodes share it. A key's constant
// has the key's own name. Not for use before main() starts.
namespace Meta {

// Keys.
extern const QString varType;
extern const QString dimensions;
extern const QString lengthHint;
extern const QString arrayMaxLen;
extern const QString className;
extern const QString isClassInstance;
extern const QString cppClass;
extern const QString classProperty;
extern const QString classMethod;
extern const QString paramType;
extern const QString hasDefault;
extern const QString isOptional;
extern const QString isReference;
extern const QString returnType;
extern const QString isElse;
extern const QString literalType;
extern const QString isEmpty;
extern const QString loopType;
extern const QString indexVar;
extern const QString elementVar;
extern const QString postfix;
extern const QString isClassMethod;
extern const QString isClassProperty;
extern const QString cppMethod;
extern const QString cppGetter;
extern const QString braceLiteral;
extern const QString callbackRef;

// The value of every flag that is set.
extern const QString flagOn;

// Values of `literalType`.
extern const QString literalInt;
extern const QString literalDouble;
extern const QString literalString;
extern const QString literalBool;
extern const QString literalEmpty;

// Values of `loopType`.
extern const QString loopCStyle;
extern const QString loopRange;
extern const QString loopRangeStep;
extern const QString loopWhileCond;
extern const QString loopCount;
extern const QString loopCountVar;

} // namespace Meta
