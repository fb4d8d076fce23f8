// Classes of the program.
#include "codegen/generation.h"

#include "codegen/names.h"
#include "frontend/metadata.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

const QString kPoint = QStringLiteral("POINT");
const QString kRect = QStringLiteral("RECT");

bool isConstructor(const Node *method)
{
    const QString name = method->value.section(QLatin1Char('.'), -1);
    return name == QLatin1String("??") || name == QStringLiteral("构造");
}

// Every name that `node` or anything below it mentions.
void collectNames(const Node *node, QSet<QString> &names)
{
    if (!node->value.isEmpty())
        names.insert(node->value);
    if (!node->metadata.isEmpty()) {
        const QString className = node->metadata.value(Meta::className);
        if (!className.isEmpty())
            names.insert(className);
    }
    for (const Node *child : node->children)
        collectNames(child, names);
}

QString propertyDefault(const Node *node, const QString &cppType)
{
    if (cppType == QLatin1String("std::wstring"))
        return QStringLiteral(" = L\"\"");
    if (cppType == QLatin1String("bool"))
        return QStringLiteral(" = false");
    if (cppType == QLatin1String("intptr_t"))
        return QStringLiteral(" = 0");
    if (cppType == QLatin1String("double"))
        return QStringLiteral(" = 0.0");
    if (cppType == QLatin1String("float"))
        return QStringLiteral(" = 0.0f");
    const QString length = node->metadata.value(Meta::arrayMaxLen);
    return length.isEmpty() ? QString() : QStringLiteral(" = %1(%2)").arg(cppType, length);
}

} // namespace

void Generation::collectMentions()
{
    for (const QString &name : qAsConst(m_userClassOrder)) {
        const ClassSymbol &symbol = m_classes[name];
        QSet<QString> &names = m_mentions[name];
        collectNames(symbol.node, names);
        for (const Node *method : symbol.methodNodes)
            collectNames(method, names);
        for (const ClassSymbol::Property &property : symbol.properties)
            names.insert(property.className);
    }
}

// Appends `name` behind the classes that it mentions. A circle is cut where it was entered.
void Generation::orderClass(const QString &name, QStringList &ordered, QSet<QString> &seen) const
{
    if (seen.contains(name))
        return;
    seen.insert(name);
    QStringList needed;
    for (const QString &mentioned : m_mentions.value(name)) {
        if (m_mentions.contains(mentioned))
            needed << mentioned;
    }
    needed.sort(); // a set has no order of its own
    for (const QString &other : qAsConst(needed))
        orderClass(other, ordered, seen);
    ordered << name;
}

// In the order of their declaration, except that a class follows those whose instances it holds or
// uses: C++ must know them whole.
QList<const ClassSymbol *> Generation::classesInOrder() const
{
    QStringList ordered;
    QSet<QString> seen;
    for (const QString &name : m_userClassOrder)
        orderClass(name, ordered, seen);
    QList<const ClassSymbol *> symbols;
    for (const QString &name : qAsConst(ordered))
        symbols << findClass(name);
    return symbols;
}

QString Generation::writeClasses()
{
    CodeWriter writer;
    for (const ClassSymbol *symbol : classesInOrder())
        writeClass(writer, *symbol);
    return writer.takeText();
}

// Class bodies stand ahead of the globals: those that they mention are announced to them.
void Generation::writeGlobalsForClasses(CodeWriter &writer, const Node *root)
{
    QSet<QString> mentioned;
    for (const QSet<QString> &names : qAsConst(m_mentions))
        mentioned += names;
    QStringList lines;
    for (const Node *node : root->children) {
        if (node->type != Parser::VarDecl || !mentioned.contains(node->value))
            continue;
        const QString type = isInstance(node) ? instanceType(node) : globalCppType(node);
        if (type.startsWith(QLatin1String("VL_User_")))
            lines << QStringLiteral("struct %1;").arg(type);
        lines << QLatin1String("extern ") + type + QLatin1Char(' ') + cppName(node->value) +
                     QLatin1Char(';');
    }
    lines.removeDuplicates();
    for (const QString &line : qAsConst(lines))
        writer.line(line);
}

void Generation::declareMembers(const ClassSymbol &symbol)
{
    for (auto it = symbol.properties.begin(); it != symbol.properties.end(); ++it) {
        Variable variable;
        variable.type = it->type;
        variable.className = it->className;
        m_scopes.declare(it.key(), variable);
    }
}

void Generation::writeClass(CodeWriter &writer, const ClassSymbol &symbol)
{
    const ScopeStack::Guard scope(m_scopes, true);
    m_currentClass = &symbol;
    declareMembers(symbol);
    writer.open(QLatin1String("struct ") + symbol.structName + QLatin1String(" {"));
    writeProperties(writer, symbol);
    writeNativeBridges(writer, symbol);
    const auto constructor =
        std::find_if(symbol.methodNodes.begin(), symbol.methodNodes.end(), isConstructor);
    if (constructor != symbol.methodNodes.end())
        writeConstructor(writer, symbol, *constructor);
    for (const Node *method : symbol.methodNodes) {
        if (!isConstructor(method))
            writeMethod(writer, symbol, method);
    }
    writer.close(QStringLiteral("};"));
    writer.blankLine();
    m_currentClass = nullptr;
}

void Generation::writeProperties(CodeWriter &writer, const ClassSymbol &symbol)
{
    for (const Node *node : symbol.node->children) {
        if (node->type != Parser::VarDecl)
            continue;
        const QString varType = node->metadata.value(Meta::varType, QStringLiteral("VL_Any"));
        QString type = m_tables.returnTypes.value(varType);
        if (type.isEmpty())
            type = varType.startsWith(QLatin1String("VL_")) ? varType : QStringLiteral("VL_Any");
        const QString value = node->children.isEmpty()
                                  ? propertyDefault(node, type)
                                  : QLatin1String(" = ") + expression(node->children.first());
        writer.line(type + QLatin1Char(' ') + cppName(node->value) + value + QLatin1Char(';'));
    }
}

void Generation::writeConstructor(CodeWriter &writer, const ClassSymbol &symbol, const Node *node)
{
    const QString name = node->value.section(QLatin1Char('.'), -1);
    const FunctionSignature signature = symbol.methods.value(name);
    // An instance may be declared without arguments too.
    if (!signature.parameters.isEmpty()) {
        QStringList defaults;
        for (const FunctionParameter &parameter : signature.parameters) {
            if (parameter.defaultValue)
                defaults << expression(parameter.defaultValue);
        }
        const bool complete = defaults.size() == signature.parameters.size();
        writer.line(symbol.structName + QLatin1String("() ") +
                    (complete ? QLatin1String(": ") + symbol.structName + QLatin1Char('(') +
                                    defaults.join(QLatin1String(", ")) + QLatin1String(") {}")
                              : QLatin1String("{}")));
    }
    writer.open(symbol.structName + QLatin1Char('(') + parameterList(signature) +
                QLatin1String(") {"));
    FunctionSignature body = signature;
    body.returnCppType = QStringLiteral("void");
    writeFunctionBody(writer, node, body);
    writer.close();
}

void Generation::writeMethod(CodeWriter &writer, const ClassSymbol &symbol, const Node *node)
{
    const FunctionSignature signature =
        symbol.methods.value(node->value.section(QLatin1Char('.'), -1));
    const QString name = cppName(node->value.section(QLatin1Char('.'), -1));
    writer.open(signature.returnCppType + QLatin1Char(' ') + name + QLatin1Char('(') +
                parameterList(signature) + QLatin1String(") {"));
    writeFunctionBody(writer, node, signature);
    writer.close();
}

// A class with the fields of a point or a rectangle can be handed to the system as one.
void Generation::writeNativeBridges(CodeWriter &writer, const ClassSymbol &symbol)
{
    QStringList fields;
    for (const Node *node : symbol.node->children) {
        if (node->type == Parser::VarDecl)
            fields << cppName(node->value);
    }
    const auto has = [&fields](std::initializer_list<const char *> names) {
        return std::all_of(names.begin(), names.end(), [&fields](const char *name) {
            return fields.contains(QLatin1String(name));
        });
    };
    const auto bridge = [&writer](const QString &type, const QString &cache,
                                  const QString &copies) {
        writer.line(QStringLiteral("mutable %1 %2{};").arg(type, cache));
        writer.line(QStringLiteral("%1 __vl_to_native_%1() const { %1 __v{}; %2 return __v; }")
                        .arg(type, copies));
        writer.line(
            QStringLiteral("operator %1() const { return __vl_to_native_%1(); }").arg(type));
        const QString body =
            QStringLiteral("{ %2 = __vl_to_native_%1(); return &%2; }").arg(type, cache);
        writer.line(QStringLiteral("operator const %1*() const %2").arg(type, body));
        writer.line(QStringLiteral("operator %1*() %2").arg(type, body));
    };
    const auto copy = [](const char *field) {
        return QStringLiteral("__v.%1 = static_cast<LONG>(%1);").arg(QLatin1String(field));
    };
    if (fields.size() == 2 && has({"x", "y"})) {
        bridge(kPoint, QStringLiteral("__vl_native_point_cache"),
               copy("x") + QLatin1Char(' ') + copy("y"));
    } else if (fields.size() == 4 && has({"left", "top", "right", "bottom"})) {
        bridge(kRect, QStringLiteral("__vl_native_rect_cache"),
               copy("left") + QLatin1Char(' ') + copy("top") + QLatin1Char(' ') + copy("right") +
                   QLatin1Char(' ') + copy("bottom"));
    }
}
