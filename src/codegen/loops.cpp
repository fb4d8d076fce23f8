// Loops.
#include "codegen/generation.h"

#include "frontend/metadata.h"

namespace {

using Node = Parser::ASTNode;

const Node *lastBlock(const Node *node)
{
    return !node->children.isEmpty() && node->children.last()->type == Parser::Block
               ? node->children.last()
               : nullptr;
}

// Whether `跳出` or `继续` in `node` belongs to the loop around it.
bool leavesLoop(const Node *node)
{
    switch (node->type) {
    case Parser::Break:
    case Parser::Continue:
        return true;
    case Parser::While:
    case Parser::Loop:
    case Parser::ForEach:
    case Parser::FunctionDecl:
        return false;
    default:
        for (const Node *child : node->children) {
            if (leavesLoop(child))
                return true;
        }
        return false;
    }
}

// The parts of a C-style header. A part that was left empty has no node, so the others are told
// apart by what they are.
struct LoopHeader
{
    const Node *init = nullptr;
    const Node *test = nullptr;
    const Node *step = nullptr;
};

LoopHeader readHeader(const Node *node)
{
    QList<const Node *> parts;
    for (const Node *child : node->children) {
        if (child->type != Parser::Block)
            parts << child;
    }
    LoopHeader header;
    if (parts.size() == 3)
        return {parts.at(0), parts.at(1), parts.at(2)};
    for (const Node *part : qAsConst(parts)) {
        const bool changes = part->type == Parser::Assign ||
                             (part->type == Parser::Unary && part->flag(Meta::postfix));
        const bool starts = part->type == Parser::VarDecl ||
                            (changes && part == parts.first() && parts.size() > 1 && !header.test);
        if (starts)
            header.init = part;
        else if (changes)
            header.step = part;
        else
            header.test = part;
    }
    return header;
}

} // namespace

void Generation::writeLoopBody(CodeWriter &writer, const Node *block, const QString &step)
{
    const ScopeStack::Guard scope(m_scopes, true);
    m_loopSteps << step;
    writeBlock(writer, block);
    m_loopSteps.removeLast();
}

void Generation::writeWhile(CodeWriter &writer, const Node *node)
{
    openStatement(writer, node,
                  QLatin1String("while (") +
                      requiredCondition(node, node->children.value(0), QStringLiteral("当")) +
                      QLatin1String(") {"));
    writeLoopBody(writer, lastBlock(node));
    writer.close();
}

void Generation::writeLoop(CodeWriter &writer, const Node *node)
{
    const QString kind = node->metadata.value(Meta::loopType);
    if (kind == Meta::loopCStyle) {
        writeCStyleLoop(writer, node);
    } else if (kind == Meta::loopCountVar) {
        writeCountVarLoop(writer, node);
    } else if (kind == Meta::loopRange || kind == Meta::loopRangeStep) {
        writeRangeLoop(writer, node, kind == Meta::loopRangeStep);
    } else if (kind == Meta::loopWhileCond) {
        writeWhile(writer, node);
    } else {
        const Node *count = node->children.value(0);
        if (!count || count->type == Parser::Block)
            report(GeneratorMessage::missingLoopCount, node->line, {});
        openStatement(writer, node,
                      QLatin1String("for (int _n = 0; _n < ") + expression(count) +
                          QLatin1String("; _n = _n + 1) {"));
        writeLoopBody(writer, lastBlock(node));
        writer.close();
    }
}

void Generation::writeCStyleLoop(CodeWriter &writer, const Node *node)
{
    const ScopeStack::Guard scope(m_scopes, true);
    const LoopHeader header = readHeader(node);
    QString init;
    if (header.init && header.init->type == Parser::VarDecl) {
        const QString type = header.init->metadata.value(Meta::varType, QStringLiteral("auto"));
        init = variableCppType(type) + QLatin1Char(' ') + cppName(header.init->value);
        if (!header.init->children.isEmpty())
            init += QLatin1String(" = ") + expression(header.init->children.first());
        checkDeclaration(header.init);
        declareVariable(header.init);
    } else if (header.init) {
        init = expression(header.init);
    }
    const QString test = condition(header.test);
    openStatement(writer, node,
                  QLatin1String("for (") + init + QLatin1String("; ") + test + QLatin1String("; ") +
                      expression(header.step) + QLatin1String(") {"));
    writeLoopBody(writer, lastBlock(node));
    writer.close();
}

QString Generation::loopVariable(const Node *node)
{
    if (!node || node->type == Parser::Block)
        return QStringLiteral("_i");
    return node->type == Parser::Identifier ? cppName(node->value) : expression(node);
}

void Generation::writeCountVarLoop(CodeWriter &writer, const Node *node)
{
    const QString variable = loopVariable(node->children.value(1));
    const QString step = variable + QLatin1String(" = ") + variable + QLatin1String(" + 1;");
    openStatement(writer, node,
                  QLatin1String("while (") + variable + QLatin1String(" < ") +
                      expression(node->children.value(0)) + QLatin1String(") {"));
    writeLoopBody(writer, lastBlock(node), step);
    writer.line(step);
    writer.close();
}

void Generation::writeRangeLoop(CodeWriter &writer, const Node *node, bool step)
{
    const auto part = [this, node](int i, const QString &missing) {
        const Node *child = node->children.value(i);
        return child && child->type != Parser::Block ? expression(child) : missing;
    };
    const QString variable = loopVariable(node->children.value(0));
    const QString from = part(1, QStringLiteral("0"));
    const QString to = part(2, QStringLiteral("0"));
    const QString by = step ? part(3, QStringLiteral("1")) : QStringLiteral("1");
    openStatement(writer, node,
                  QStringLiteral("for (") + variable + QLatin1String(" = ") + from +
                      QLatin1String("; ") + variable + QLatin1String(" < ") + to +
                      QLatin1String("; ") + variable + QLatin1String(" = ") + variable +
                      QLatin1String(" + ") + by + QLatin1String(") {"));
    writeLoopBody(writer, lastBlock(node));
    writer.close();
}

void Generation::writeForEach(CodeWriter &writer, const Node *node)
{
    const Node *block = lastBlock(node);
    const Node *source = node->children.value(0);
    if (!source || source == block)
        report(GeneratorMessage::missingCondition, node->line, {QStringLiteral("遍历")});
    const QString array = source == block ? QString() : expression(source);
    const auto name = [this, node](const QString &key, const QString &missing) {
        const QString given = node->metadata.value(key);
        return given.isEmpty() ? missing : cppName(given);
    };
    const QString index = name(Meta::indexVar, QStringLiteral("_idx"));
    const QString element = name(Meta::elementVar, QStringLiteral("_elem"));

    // The body stands twice, so each further level would double the text once more.
    const ScopeStack::Guard scope(m_scopes, true);
    writer.open(QStringLiteral("{"));
    const int start = writer.position();
    writer.line(QStringLiteral("const int _vl_fe_n = VL_ArrayLen(") + array + QLatin1String(");"));
    markForDebugger(writer, start, node);
    if (m_forEachDepth >= 2) {
        writeForEachOnce(writer, block, array, index, element);
        writer.close();
        return;
    }
    ++m_forEachDepth;
    const bool leaves = block && leavesLoop(block);
    writer.open(QLatin1String("if (") + index + QLatin1String(" >= _vl_fe_n) {"));
    writer.line(element + QLatin1String(" = VL_Any();"));
    if (leaves)
        writer.open(QStringLiteral("do {"));
    writeLoopBody(writer, block);
    if (leaves)
        writer.close(QStringLiteral("} while (false);"));
    writer.reopen(QStringLiteral("} else {"));
    writer.open(QLatin1String("for (; ") + index + QLatin1String(" < _vl_fe_n; ++") + index +
                QLatin1String(") {"));
    writer.line(element + QLatin1String(" = VL_ArrayGet(") + array + QLatin1String(", ") + index +
                QLatin1String(");"));
    writeLoopBody(writer, block);
    writer.close();
    writer.close();
    writer.close();
    --m_forEachDepth;
}

// The same loop with its body written once: `_vl_fe_once` is 1 for the single round with an empty
// element, 2 behind it.
void Generation::writeForEachOnce(CodeWriter &writer, const Node *block, const QString &array,
                                  const QString &index, const QString &element)
{
    writer.open(QStringLiteral("for (int _vl_fe_once = %1 >= _vl_fe_n ? 1 : 0; _vl_fe_once == 1 || "
                               "(_vl_fe_once == 0 && %1 < _vl_fe_n); "
                               "_vl_fe_once == 1 ? (void)(_vl_fe_once = 2) : (void)++%1) {")
                    .arg(index));
    writer.line(QStringLiteral("if (_vl_fe_once == 1)"));
    writer.line(QStringLiteral("    %1 = VL_Any();").arg(element));
    writer.line(QStringLiteral("else"));
    writer.line(QStringLiteral("    %1 = VL_ArrayGet(").arg(element) + array + QLatin1String(", ") +
                index + QLatin1String(");"));
    writeLoopBody(writer, block);
    writer.close();
}
