// Events: which function of the program answers which, the handlers, and the menus of the design.
#include "codegen/component_tables.h"
#include "codegen/generation.h"

#include "codegen/names.h"
#include "designer/model/component_types.h"
#include "frontend/tree_queries.h"

#include <algorithm>

using Node = Parser::ASTNode;

// Sorts every function with a dot in its name to the window or control that it belongs to.
void Generation::collectEvents(const Node *root)
{
    for (const Node *node : root->children) {
        if (node->type != Parser::FunctionDecl || !node->value.contains(QLatin1Char('.')))
            continue;
        const QStringList parts = node->value.split(QLatin1Char('.'));
        if (parts.size() == 2 && m_userClassOrder.contains(parts.first().trimmed()))
            continue;
        // What belongs to nothing has been reported by the checks ahead of the generator.
        const NamedEvent named = m_windows.event(node->value);
        if (named.control)
            addControlHandler(node, *named.control, named.word);
        else if (named.window)
            addWindowHandler(node, *named.window, named.word);
    }
    collectDesignedHandlers();
}

void Generation::addWindowHandler(const Node *node, const DesignedWindow &window,
                                  const QString &word)
{
    if (word.startsWith(NamedEvent::menuPrefix())) {
        addHandler(window.cppName() + QLatin1String("_Ctx_") +
                       word.mid(NamedEvent::menuPrefix().size()),
                   node, nullptr);
        return;
    }
    const ComponentEvent *event = ComponentTables::instance().windowEvent(word);
    if (!event) {
        report(GeneratorMessage::unknownEvent, node->line,
               {window.name(), QStringLiteral("窗口"), word,
                ComponentTables::instance().windowEventWords().join(QStringLiteral("、"))});
        return;
    }
    addHandler(window.cppName() + QLatin1Char('_') + event->handler, node, event);
}

void Generation::addControlHandler(const Node *node, const DesignedControl &control,
                                   const QString &word)
{
    if (word.startsWith(NamedEvent::menuPrefix())) {
        addHandler(control.stem + QLatin1String("_Ctx_") +
                       word.mid(NamedEvent::menuPrefix().size()),
                   node, nullptr);
        return;
    }
    const int type = control.component.type;
    const ComponentEvent *event = ComponentTables::instance().controlEvent(type, word);
    if (!event || !control.hasWindow()) {
        QStringList words;
        if (control.hasWindow())
            words = ComponentTables::instance().controlEventWords(type);
        words.removeDuplicates();
        report(
            GeneratorMessage::unknownEvent, node->line,
            {control.name, VL::componentDisplayName(type), word, words.join(QStringLiteral("、"))});
        return;
    }
    addHandler(handlerKey(control, *event), node, event);
}

// Two events of one handler name, such as those of a list box's double click, differ by their
// parameters.
QString Generation::handlerKey(const DesignedControl &control, const ComponentEvent &event)
{
    return control.stem + QLatin1Char('_') + event.handler + QLatin1Char('/') +
           QString::number(event.parameters.size());
}

void Generation::addHandler(const QString &key, const Node *node, const ComponentEvent *event)
{
    const auto known = m_handlers.constFind(key);
    if (known != m_handlers.cend() && known->node) {
        report(GeneratorMessage::functionDefinedTwice, node->line,
               {node->value, QString::number(known->node->line)});
        return;
    }
    m_handlers.insert(key, EventHandler{node, event, QString()});
    if (event && node->children.isEmpty())
        return;
    int parameters = 0;
    for (const Node *child : node->children)
        parameters += child->type == Parser::Identifier ? 1 : 0;
    const int most = event ? event->parameters.size() : 0;
    if (parameters > most) {
        report(GeneratorMessage::tooManyEventParameters, node->line,
               {node->value, QString::number(most), QString::number(parameters)});
    }
}

// A form may name a function of the program for an event.
void Generation::collectDesignedHandlers()
{
    for (const DesignedWindow &window : m_windows.all()) {
        for (const DesignedControl &control : window.controls()) {
            const auto &handlers = control.component.eventHandlers;
            for (auto it = handlers.begin(); it != handlers.end(); ++it) {
                const ComponentEvent *event =
                    ComponentTables::instance().controlEvent(control.component.type, it.key());
                if (!event || !control.hasWindow() || !findFunction(it->trimmed()))
                    continue;
                const QString key = handlerKey(control, *event);
                if (!m_handlers.contains(key))
                    m_handlers.insert(key, EventHandler{nullptr, event, it->trimmed()});
            }
        }
    }
}

const Generation::EventHandler *Generation::handlerOf(const DesignedControl &control,
                                                      const ComponentEvent &event) const
{
    const auto found = m_handlers.constFind(handlerKey(control, event));
    return found == m_handlers.cend() ? nullptr : &*found;
}

const Generation::EventHandler *Generation::handlerOf(const DesignedWindow &window,
                                                      const ComponentEvent &event) const
{
    const auto found = m_handlers.constFind(window.cppName() + QLatin1Char('_') + event.handler);
    return found == m_handlers.cend() ? nullptr : &*found;
}

QList<const ComponentEvent *> Generation::eventsOf(const DesignedWindow &window) const
{
    QList<const ComponentEvent *> events;
    for (const ComponentEvent &event : ComponentTables::instance().windowEvents()) {
        if (!event.optional || handlerOf(window, event))
            events << &event;
    }
    return events;
}

// The events of a control that the program answers, in the order of the table.
QList<const ComponentEvent *> Generation::eventsOf(const DesignedControl &control) const
{
    QList<const ComponentEvent *> events;
    const ComponentTables &tables = ComponentTables::instance();
    for (const ComponentEvent *event : tables.controlEvents(control.component.type)) {
        if (handlerOf(control, *event))
            events << event;
    }
    return events;
}

QString Generation::handlerName(const QString &stem, const ComponentEvent &event)
{
    return QLatin1String("On_") + stem + QLatin1Char('_') + event.handler;
}

QString Generation::handlerHead(const QString &stem, const ComponentEvent &event)
{
    return event.result + QLatin1Char(' ') + handlerName(stem, event) + QLatin1Char('(') +
           event.parameterList() + QLatin1Char(')');
}

QString Generation::eventDeclarations() const
{
    CodeWriter writer;
    writer.line(QStringLiteral("// Event handler declarations"));
    for (const DesignedWindow &window : m_windows.all()) {
        if (!window.isStart())
            writer.line(QStringLiteral("// window %1 events").arg(window.name()));
        for (const ComponentEvent *event : eventsOf(window))
            writer.line(handlerHead(window.cppName(), *event) + QLatin1Char(';'));
    }
    for (const DesignedWindow &window : m_windows.all()) {
        for (const DesignedControl &control : window.controls()) {
            for (const ComponentEvent *event : eventsOf(control))
                writer.line(handlerHead(control.stem, *event) + QLatin1Char(';'));
        }
    }
    for (const DesignMenu &menu : m_menus) {
        for (const DesignMenuItem &item : menu.items)
            writer.line(QStringLiteral("void %1();").arg(item.handler));
    }
    writer.blankLine();
    return writer.takeText();
}

QString Generation::eventHandlers()
{
    CodeWriter writer;
    for (const DesignedWindow &window : m_windows.all()) {
        for (const ComponentEvent *event : eventsOf(window)) {
            writeHandler(writer, window.cppName(), *event, handlerOf(window, *event),
                         window.isStart());
        }
    }
    for (const DesignedWindow &window : m_windows.all()) {
        for (const DesignedControl &control : window.controls()) {
            for (const ComponentEvent *event : eventsOf(control))
                writeHandler(writer, control.stem, *event, handlerOf(control, *event), false);
        }
    }
    writeMenuHandlers(writer);
    writer.open(QStringLiteral("void VL_CallWindowCreateEvent(const std::wstring& name) {"));
    for (const DesignedWindow &window : m_windows.all()) {
        writer.line(QLatin1String("if (name == ") + CodeWriter::wideString(window.name()) +
                    QLatin1String(") On_") + window.cppName() + QLatin1String("_Create();"));
    }
    writer.close();
    return writer.takeText();
}

void Generation::writeHandler(CodeWriter &writer, const QString &stem, const ComponentEvent &event,
                              const EventHandler *handler, bool startsUserCode)
{
    writer.open(handlerHead(stem, event) + QLatin1String(" {"));
    if (handler && handler->node)
        writeEventBody(writer, event, handler->node);
    else if (handler)
        writeHandlerCall(writer, event, *findFunction(handler->function));
    else if (startsUserCode && event.handler == QLatin1String("Create"))
        writeStartOfUserCode(writer);
    else if (event.result == QLatin1String("bool"))
        writer.line(QStringLiteral("return true;"));
    writer.close();
    writer.blankLine();
}

namespace {

// A value of an event as the type that a parameter of the user's function has.
QString convertedEventValue(const EventParameter &source, const QString &wanted)
{
    const bool text = source.localType() == QLatin1String("std::wstring");
    QString value = source.localValue();
    if (wanted == QLatin1String("std::wstring"))
        return text ? value : QLatin1String("VL_ToStr((long long)") + value + QLatin1Char(')');
    if (!text)
        return value;
    if (wanted == QLatin1String("VL_Any"))
        return value;
    return wanted == QLatin1String("double") || wanted == QLatin1String("float")
               ? QLatin1String("VL_ToDouble(") + value + QLatin1Char(')')
               : QLatin1String("VL_ToInt(") + value + QLatin1Char(')');
}

bool declaresAtTop(const Node *body, const QString &name)
{
    return body && std::any_of(body->children.begin(), body->children.end(), [&](const Node *node) {
               return node->type == Parser::VarDecl && node->value == name;
           });
}

} // namespace

// The event's values under the words of the event, and under the names of the parameters that the
// user chose; then the user's statements.
void Generation::writeEventBody(CodeWriter &writer, const ComponentEvent &event,
                                const Node *function)
{
    FunctionSignature signature = readSignature(function, false);
    const ScopeStack::Guard scope(m_scopes, true);
    QSet<QString> declared;
    for (const FunctionParameter &parameter : qAsConst(signature.parameters))
        declared.insert(parameter.cppName);
    for (int i = 0; i < event.parameters.size(); ++i) {
        const EventParameter &source = event.parameters.at(i);
        if (i < signature.parameters.size()) {
            const FunctionParameter &parameter = signature.parameters.at(i);
            writer.line(parameter.cppType + QLatin1Char(' ') + parameter.cppName +
                        QLatin1String(" = ") + convertedEventValue(source, parameter.cppType) +
                        QLatin1String("; (void)") + parameter.cppName + QLatin1Char(';'));
        }
        const QString local = cppName(source.word);
        // What the user's own statements declare is theirs.
        if (declared.contains(local) || declaresAtTop(TreeQueries::bodyOf(function), source.word))
            continue;
        declared.insert(local);
        writer.line(source.localType() + QLatin1Char(' ') + local + QLatin1String(" = ") +
                    source.localValue() + QLatin1String("; (void)") + local + QLatin1Char(';'));
        Variable variable;
        variable.type = valueTypeOf(source.localType());
        m_scopes.declare(source.word, variable);
    }
    signature.returnCppType = event.result;
    if (event.result == QLatin1String("bool")) {
        // Without an answer what is asked for may happen.
        signature.returnType = ValueType::Bool;
        signature.fallThrough = QStringLiteral("true");
    }
    writeFunctionBody(writer, function, signature);
}

void Generation::writeHandlerCall(CodeWriter &writer, const ComponentEvent &event,
                                  const FunctionSignature &function)
{
    QStringList arguments;
    for (int i = 0; i < function.parameters.size(); ++i) {
        const FunctionParameter &parameter = function.parameters.at(i);
        if (i < event.parameters.size())
            arguments << convertedEventValue(event.parameters.at(i), parameter.cppType);
        else
            arguments << (parameter.defaultValue ? expression(parameter.defaultValue)
                                                 : zeroValue(parameter));
    }
    const QString call = function.cppName + QLatin1Char('(') + arguments.join(QLatin1String(", ")) +
                         QLatin1Char(')');
    if (event.result != QLatin1String("bool"))
        writer.line(call + QLatin1Char(';'));
    else if (function.returnType == ValueType::Bool || function.returnType == ValueType::Int)
        writer.line(QLatin1String("return (bool)") + call + QLatin1Char(';'));
    else
        writer.line(call + QLatin1String("; return true;"));
}

// A call such as `按钮1.单击()` runs what the event would run.
QString Generation::eventHandlerCall(const Node *node, const ComponentRef &component)
{
    const QString word = node->children.first()->value.trimmed();
    for (const DesignedWindow &window : m_windows.all()) {
        const bool own = window.handle() == component.handle;
        const ComponentEvent *event = own ? ComponentTables::instance().windowEvent(word) : nullptr;
        if (event && handlerOf(window, *event))
            return handlerCallText(node, window.cppName(), *event);
        for (const DesignedControl &control : window.controls()) {
            if (control.handle != component.handle || !control.hasWindow())
                continue;
            event = ComponentTables::instance().controlEvent(component.type, word);
            if (event && handlerOf(control, *event))
                return handlerCallText(node, control.stem, *event);
        }
    }
    return QString();
}

QString Generation::handlerCallText(const Node *node, const QString &stem,
                                    const ComponentEvent &event)
{
    QStringList arguments;
    for (int i = 0; i < event.parameters.size(); ++i) {
        const QString type = event.parameters.at(i).type;
        const Node *argument = node->children.value(i + 1);
        if (argument && !isEmptyArgument(argument))
            arguments << (type == QLatin1String("HTREEITEM")
                              ? QLatin1String("(HTREEITEM)") + expression(argument)
                              : expression(argument));
        else
            arguments << event.parameters.at(i).localType() + QLatin1String("()");
    }
    return handlerName(stem, event) + QLatin1Char('(') + arguments.join(QLatin1String(", ")) +
           QLatin1Char(')');
}
