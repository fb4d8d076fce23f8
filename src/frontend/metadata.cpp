// The texts behind metadata.h.
#include "frontend/metadata.h"

namespace Meta {

const QString varType = QStringLiteral("varType");
const QString dimensions = QStringLiteral("dimensions");
const QString lengthHint = QStringLiteral("lengthHint");
const QString arrayMaxLen = QStringLiteral("arrayMaxLen");
const QString className = QStringLiteral("className");
const QString isClassInstance = QStringLiteral("isClassInstance");
const QString cppClass = QStringLiteral("cppClass");
const QString classProperty = QStringLiteral("classProperty");
const QString classMethod = QStringLiteral("classMethod");
const QString paramType = QStringLiteral("paramType");
const QString hasDefault = QStringLiteral("hasDefault");
const QString isOptional = QStringLiteral("isOptional");
const QString isReference = QStringLiteral("isReference");
const QString returnType = QStringLiteral("returnType");
const QString isElse = QStringLiteral("isElse");
const QString literalType = QStringLiteral("literalType");
const QString isEmpty = QStringLiteral("isEmpty");
const QString loopType = QStringLiteral("loopType");
const QString indexVar = QStringLiteral("indexVar");
const QString elementVar = QStringLiteral("elementVar");
const QString postfix = QStringLiteral("postfix");
const QString isClassMethod = QStringLiteral("isClassMethod");
const QString isClassProperty = QStringLiteral("isClassProperty");
const QString cppMethod = QStringLiteral("cppMethod");
const QString cppGetter = QStringLiteral("cppGetter");
const QString braceLiteral = QStringLiteral("braceLiteral");
const QString callbackRef = QStringLiteral("callbackRef");

const QString flagOn = QStringLiteral("true");

const QString literalInt = QStringLiteral("int");
const QString literalDouble = QStringLiteral("double");
const QString literalString = QStringLiteral("string");
const QString literalBool = QStringLiteral("bool");
const QString literalEmpty = QStringLiteral("empty");

const QString loopCStyle = QStringLiteral("c_style");
const QString loopRange = QStringLiteral("range");
const QString loopRangeStep = QStringLiteral("range_step");
const QString loopWhileCond = QStringLiteral("while_cond");
const QString loopCount = QStringLiteral("count");
const QString loopCountVar = QStringLiteral("count_var");

} // namespace Meta
