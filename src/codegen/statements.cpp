// Statements other than loops.
#include "codegen/generation.h"

#include "frontend/metadata.h"

void Generation::writeBlock(CodeWriter &writer, const Node *block)
{
    if (!block)
        return;
    for (const Node *child : block->children)
        writeStatement(writer, child);
}

void Generation::writeStatement(CodeWriter &writer, const Node *node)
{
    if (!node)
        return;
    if (node->line > 0)
        m_line = node->line;
    const int start = writer.position();
    switch (node->type) {
    case Parser::VarDecl:
        writeDeclaration(writer, node);
        writer.markSourceLine(start, node->line);
        break;
    case Parser::Block:
        writeNestedBlock(writer, node);
        break;
    case Parser::If:
        writeIf(writer, node);
        break;
    case Parser::Switch:
        writeSwitch(writer, node);
        break;
    case Parser::While:
        writeWhile(writer, node);
        break;
    case Parser::Loop:
        writeLoop(writer, node);
        break;
    case Parser::ForEach:
        writeForEach(writer, node);
        break;
    case Parser::Return:
        writeReturn(writer, node);
        writer.markSourceLine(start, node->line);
        break;
    case Parser::Break:
        writeBreak(writer, node);
        markForDebugger(writer, start, node);
        break;
    case Parser::Continue:
        writeContinue(writer, node);
        markForDebugger(writer, start, node);
        break;
    case Parser::ExprStmt:
        if (!node->children.isEmpty()) {
            const QString text = expression(node->children.first());
            writer.line(text + QLatin1Char(';'));
            writer.markSourceLine(start, node->line);
        }
        break;
    default:
        break;
    }
}

void Generation::markForDebugger(CodeWriter &writer, int start, const Node *node) const
{
    if (m_input.marksEveryStatement)
        writer.markSourceLine(start, node->line);
}

// The head of a statement with a block of its own.
void Generation::openStatement(CodeWriter &writer, const Node *node, const QString &text) const
{
    const int start = writer.position();
    writer.open(text);
    markForDebugger(writer, start, node);
}

// A block in a block has no braces of its own, unless it declares what the block around it declares
// already.
void Generation::writeNestedBlock(CodeWriter &writer, const Node *node)
{
    bool clash = false;
    for (const Node *child : node->children)
        clash =
            clash || (child->type == Parser::VarDecl && m_scopes.declaredInCppBlock(child->value));
    if (!clash) {
        writeBlock(writer, node);
        return;
    }
    const ScopeStack::Guard scope(m_scopes, true);
    writer.open(QStringLiteral("{"));
    writeBlock(writer, node);
    writer.close();
}

QString Generation::requiredCondition(const Node *parent, const Node *node, const QString &word)
{
    if (!node || node->type == Parser::Block) {
        report(GeneratorMessage::missingCondition, lineOf(parent), {word});
        return QString();
    }
    return condition(node);
}

QString Generation::condition(const Node *node)
{
    if (!node)
        return QString();
    if (node->type == Parser::Assign && node->value == QLatin1String("=") &&
        node->children.size() == 2) {
        const QString value = expression(node->children.at(1));
        return expression(node->children.at(0)) + QLatin1String(" == ") + value;
    }
    const bool logical = node->value == QLatin1String("&&") || node->value == QLatin1String("||");
    if (node->type == Parser::Binary && logical && node->children.size() == 2) {
        const QString left = condition(node->children.at(0));
        return QLatin1Char('(') + left + QLatin1Char(' ') + node->value + QLatin1Char(' ') +
               condition(node->children.at(1)) + QLatin1Char(')');
    }
    const bool negation = node->value == QLatin1String("!") || node->value == QStringLiteral("非");
    if (node->type == Parser::Unary && negation && !node->children.isEmpty())
        return QLatin1String("!(") + condition(node->children.first()) + QLatin1Char(')');
    return expression(node);
}

void Generation::writeIf(CodeWriter &writer, const Node *node)
{
    const auto writeBody = [this, &writer](const Node *block) {
        const ScopeStack::Guard scope(m_scopes, true);
        writeBlock(writer, block);
    };
    const Node *first = node->children.value(0);
    openStatement(writer, node,
                  QLatin1String("if (") + requiredCondition(node, first, QStringLiteral("如果")) +
                      QLatin1String(") {"));
    const int bodyIndex = first && first->type == Parser::Block ? 0 : 1;
    writeBody(node->children.value(bodyIndex));
    for (int i = bodyIndex + 1; i < node->children.size(); ++i) {
        const Node *branch = node->children.at(i);
        if (branch->type == Parser::If) {
            const Node *test = branch->children.value(0);
            writer.reopen(QLatin1String("} else if (") +
                          requiredCondition(branch, test, QStringLiteral("否则如果")) +
                          QLatin1String(") {"));
            writeBody(branch->children.value(test && test->type == Parser::Block ? 0 : 1));
        } else if (branch->type == Parser::Block && branch->flag(Meta::isElse)) {
            writer.reopen(QStringLiteral("} else {"));
            writeBody(branch);
        }
    }
    writer.close();
}

void Generation::writeSwitch(CodeWriter &writer, const Node *node)
{
    if (node->children.isEmpty())
        return;
    // A second `_switch_val` in the same C++ block needs a block of its own.
    if (!m_scopes.takeSwitchValue()) {
        writeSwitchBody(writer, node);
        return;
    }
    const ScopeStack::Guard scope(m_scopes, true);
    m_scopes.takeSwitchValue();
    writer.open(QStringLiteral("{"));
    writeSwitchBody(writer, node);
    writer.close();
}

void Generation::writeSwitchBody(CodeWriter &writer, const Node *node)
{
    const auto writeBody = [this, &writer](const Node *label) {
        const ScopeStack::Guard scope(m_scopes, true);
        writeBlock(writer, label->children.value(0));
    };
    const Node *subject = node->children.first();
    const bool noSubject = subject->type == Parser::Case || subject->type == Parser::Default;
    const int start = writer.position();
    writer.line(QLatin1String("auto _switch_val = ") +
                requiredCondition(node, noSubject ? nullptr : subject, QStringLiteral("选择")) +
                QLatin1Char(';'));
    markForDebugger(writer, start, node);
    const Node *otherwise = nullptr;
    bool anyCase = false;
    for (const Node *label : node->children) {
        if (label->type == Parser::Default)
            otherwise = label;
        if (label->type != Parser::Case)
            continue;
        const QString test =
            QLatin1String("if (_switch_val == ") + caseLabel(label) + QLatin1String(") {");
        if (anyCase)
            writer.reopen(QLatin1String("} else ") + test);
        else
            writer.open(test);
        anyCase = true;
        writeBody(label);
    }
    if (otherwise) {
        if (anyCase)
            writer.reopen(QStringLiteral("} else {"));
        else
            writer.open(QStringLiteral("{"));
        writeBody(otherwise);
    }
    if (otherwise || anyCase)
        writer.close();
}

QString Generation::caseLabel(const Node *node)
{
    const QString type = node->metadata.value(Meta::literalType);
    if (type == Meta::literalString)
        return CodeWriter::wideString(node->value);
    if (!type.isEmpty())
        return node->value;
    return node->label ? expression(node->label) : node->value;
}

void Generation::writeReturn(CodeWriter &writer, const Node *node)
{
    const Node *value = node->children.value(0);
    if (!value) {
        const bool needsValue =
            m_currentFunction && m_currentFunction->returnCppType != QLatin1String("void");
        writer.line(needsValue ? QStringLiteral("return %1;").arg(m_currentFunction->emptyResult())
                               : QStringLiteral("return;"));
        return;
    }
    const bool givesNothing =
        !m_currentFunction || m_currentFunction->returnCppType == QLatin1String("void");
    const ValueType type = inferType(value);
    if (givesNothing && type != ValueType::Void && type != ValueType::Unknown) {
        const QString name =
            m_currentFunction ? m_currentFunction->name : QStringLiteral("事件函数");
        report(GeneratorMessage::valueFromVoidFunction, node->line, {name});
    }
    writer.line(QLatin1String("return ") + expression(value) + QLatin1Char(';'));
}

void Generation::writeBreak(CodeWriter &writer, const Node *node)
{
    if (m_loopSteps.isEmpty())
        report(GeneratorMessage::breakOutsideLoop, lineOf(node), {});
    writer.line(QStringLiteral("break;"));
}

void Generation::writeContinue(CodeWriter &writer, const Node *node)
{
    if (m_loopSteps.isEmpty())
        report(GeneratorMessage::continueOutsideLoop, lineOf(node), {});
    else if (!m_loopSteps.last().isEmpty())
        writer.line(m_loopSteps.last());
    writer.line(QStringLiteral("continue;"));
}
