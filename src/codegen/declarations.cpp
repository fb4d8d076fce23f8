// Declarations of variables, class instances and dictionaries.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "codegen/runtime_library.h"
#include "frontend/metadata.h"
#include "frontend/tree_queries.h"

namespace {

QString arrayWord(const QString &varType)
{
    return wordOf(valueTypeOf(varType));
}

QString declaredType(const Parser::ASTNode *node)
{
    const QString type = node->metadata.value(Meta::varType).trimmed();
    return type.isEmpty() ? QStringLiteral("auto") : type;
}

bool isNumber(ValueType type)
{
    return type == ValueType::Int || type == ValueType::Double;
}

bool isArray(ValueType type)
{
    return type == ValueType::Array || type == ValueType::Array2D || type == ValueType::Array3D;
}

bool compatible(ValueType declared, ValueType value)
{
    if (declared == value || declared == ValueType::Any || value == ValueType::Any)
        return true;
    if (isNumber(declared) && (isNumber(value) || value == ValueType::Handle))
        return true;
    // Two- and three-dimensional arrays do not convert into each other.
    return isArray(declared) && isArray(value) &&
           (declared == ValueType::Array || value == ValueType::Array);
}

} // namespace

QString Generation::variableCppType(const QString &varType) const
{
    return m_tables.variableTypes.value(varType, varType);
}

bool Generation::isInstance(const Node *node) const
{
    const QString flag = node->metadata.value(Meta::isClassInstance);
    const QString type = node->metadata.value(Meta::cppClass).trimmed();
    return flag == Meta::flagOn || flag == QLatin1String("1") ||
           (!type.isEmpty() && type != QLatin1String("auto"));
}

QString Generation::instanceClass(const Node *node) const
{
    const ClassSymbol *symbol = findClass(node->metadata.value(Meta::className));
    return symbol ? symbol->name : node->metadata.value(Meta::className);
}

QString Generation::instanceType(const Node *node) const
{
    QString type = node->metadata.value(Meta::cppClass).trimmed();
    const QString className = node->metadata.value(Meta::className);
    const ClassSymbol *symbol = findClass(className);
    if (type.isEmpty() || type == QLatin1String("auto"))
        type = symbol ? symbol->structName : QString();
    if (type.startsWith(QLatin1String("VL_User_"))) {
        if (symbol)
            return symbol->structName;
        if (!className.isEmpty())
            return QStringLiteral("VL_User_%1_t").arg(Names::sanitize(className));
    }
    return type.isEmpty() ? QStringLiteral("VL_DragDropClass") : type;
}

void Generation::declareVariable(const Node *node)
{
    Variable variable;
    if (isInstance(node)) {
        variable.type = ValueType::Object;
        variable.className = instanceClass(node);
    } else {
        const QString type = declaredType(node);
        variable.type = type == QLatin1String("auto") && !node->children.isEmpty()
                            ? inferType(node->children.first())
                            : valueTypeOf(type);
        if (variable.type == ValueType::Object) {
            const ClassSymbol *symbol = classOf(node->children.first());
            variable.className = symbol ? symbol->name : QString();
        }
        variable.dictionary =
            type == QLatin1String("VL_Any") && givesDictionary(node->children.value(0));
    }
    m_scopes.declare(node->value, variable);
}

void Generation::writeDeclaration(CodeWriter &writer, const Node *node)
{
    if (isInstance(node)) {
        writeInstance(writer, node);
        return;
    }
    checkDeclaration(node);
    const QString type = declaredType(node);
    const Node *value = node->children.value(0);
    if (type == QLatin1String("VL_Any") && value && value->flag(Meta::braceLiteral)) {
        writeDictionary(writer, node);
        return;
    }
    QString text = variableCppType(type) + QLatin1Char(' ') + cppName(node->value);
    if (value) {
        text += QLatin1String(" = ") + valueFor(valueTypeOf(type), value);
    } else if (type == QLatin1String("array")) {
        const QString hint = node->metadata.value(Meta::lengthHint);
        if (!hint.isEmpty())
            text += QLatin1Char('(') + hint + QLatin1Char(')');
    } else if (type == QLatin1String("auto")) {
        // "变量 甲" takes whatever comes later.
        text = QLatin1String("VL_Any ") + cppName(node->value);
    }
    writer.line(text + QLatin1Char(';'));
    declareVariable(node);
}

void Generation::writeDictionary(CodeWriter &writer, const Node *node)
{
    const QString &name = cppName(node->value);
    writer.line(QStringLiteral("VL_Any %1 = VL_NewDictAny();").arg(name));
    const Node *literal = node->children.first();
    for (int i = 0; i + 1 < literal->children.size(); i += 2) {
        writer.line(QStringLiteral("VL_DictSet(") + name + QLatin1String(", ") +
                    expression(literal->children.at(i)) + QLatin1String(", VL_Any(") +
                    expression(literal->children.at(i + 1)) + QLatin1String("));"));
    }
    declareVariable(node);
}

void Generation::writeInstance(CodeWriter &writer, const Node *node)
{
    const QString type = instanceType(node);
    // A class whose runtime nobody brings cannot be had, whatever else the text says of it.
    if (!type.startsWith(QLatin1String("VL_User_")) &&
        !RuntimeLibrary::instance().definesClass(type)) {
        report(GeneratorMessage::classUnavailable, node->line,
               {node->metadata.value(Meta::className), node->value});
    }
    QString text = type + QLatin1Char(' ') + cppName(node->value);
    if (!node->children.isEmpty())
        text += QLatin1String(" = ") + expression(node->children.first());
    writer.line(text + QLatin1Char(';'));
    declareVariable(node);
}

void Generation::checkDeclaration(const Node *node)
{
    if (!node->children.isEmpty() && !node->children.first()) {
        report(GeneratorMessage::initialValueMissing, node->line, {node->value});
        return;
    }
    const QString type = declaredType(node);
    if (TreeQueries::isArrayType(type)) {
        checkArrayDeclaration(node);
        return;
    }
    if (type == QLatin1String("auto") || type == QLatin1String("VL_Any") ||
        node->children.isEmpty())
        return;
    const ValueType declared = valueTypeOf(type);
    const ValueType value = inferType(node->children.first());
    if (value == ValueType::Unknown || compatible(declared, value))
        return;
    const QString word = value == ValueType::Object ? QStringLiteral("对象") : wordOf(value);
    report(GeneratorMessage::typeMismatch, node->line, {wordOf(declared), node->value, word});
}

void Generation::checkArrayDeclaration(const Node *node)
{
    const QString type = declaredType(node);
    const QString word = arrayWord(type);
    const Node *value = node->children.value(0);
    if (!value) {
        // Tables have no length in their brackets and start empty; a plain array needs either.
        if (node->metadata.value(Meta::lengthHint).isEmpty())
            report(GeneratorMessage::arrayWithoutValue, node->line, {word, node->value});
        return;
    }
    const int declared = node->metadata.value(Meta::dimensions).toInt();
    if (value->type == Parser::Literal) {
        const bool text = value->metadata.value(Meta::literalType) == Meta::literalString;
        const QStringList brackets{QStringLiteral("[]"), QStringLiteral("[][]"),
                                   QStringLiteral("[][][]")};
        if (text || (!value->value.isEmpty() && !brackets.contains(value->value))) {
            const QString name = node->value + QStringLiteral("[]").repeated(qMax(declared, 1));
            report(GeneratorMessage::arrayFromLiteral, node->line,
                   {word, name, wordOf(inferType(value)), name, value->value});
        }
        return;
    }
    const int given = TreeQueries::literalDimensions(value);
    // An array of arrays is still an array, and [] fits every number of dimensions.
    const bool plainArray = type == QLatin1String("array");
    if (declared > 0 && given > 0 && declared != given && !(plainArray && declared == 1) &&
        !value->children.isEmpty()) {
        report(
            GeneratorMessage::dimensionsDiffer, node->line,
            {node->value, TreeQueries::dimensionWord(declared), TreeQueries::dimensionWord(given)});
    }
}
