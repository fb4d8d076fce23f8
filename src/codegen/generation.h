// Generation: one run of the generator over one program.
#pragma once

#include "catalog/command_library.h"
#include "catalog/command_syntax.h"
#include "codegen/code_writer.h"
#include "codegen/generator_messages.h"
#include "codegen/generator_tables.h"
#include "codegen/program_text.h"
#include "codegen/program_windows.h"
#include "codegen/symbols.h"
#include "designer/model/design_component.h"
#include "frontend/parser.h"

#include <QHash>
#include <QJsonArray>
#include <QMap>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

// What a generation is given.
struct GenerationInput
{
    QList<WindowRecord> windows;
    QString uiBackend = QStringLiteral("win32");
    ClassRegistryMap classRegistry;
    const CommandLibrary *commands = nullptr;
    bool marksEveryStatement = false;
};

// All state of a run lives here, so nothing of one build can leak into the next. The member
// functions are spread over files by matter: classes, declarations, statements, loops, expressions,
// calls, special calls, types, members of components, windows, events, menus.
class Generation
{
public:
    using Node = Parser::ASTNode;

    explicit Generation(const GenerationInput &input);

    ProgramText program(const Node *root);
    // Classes, globals and functions; and the classes alone.
    QString wholeUserCode(const Node *root);
    QString userClasses(const Node *root);

    QStringList errors;
    QStringList warnings;

private:
    // --- names and symbols (generation.cpp) ---
    void collectSymbols(const Node *root);
    void collectFunctions(const Node *root);
    void collectClasses(const Node *root);
    void addUserClass(const Node *node);
    void addDottedMethods(const Node *root);
    void addBuiltinClass(const Parser::ClassInfo &info);
    void collectGlobals(const Node *root);
    void renameClashes(const Node *root);
    FunctionSignature readSignature(const Node *node, bool method);
    FunctionParameter readParameter(const Node *node, bool method);
    void report(const GeneratorMessage::Text &text, int line, const QStringList &arguments);
    // The C++ name of a variable, function or member of the program.
    const QString &cppName(const QString &name);
    const ClassSymbol *findClass(const QString &name) const;
    const ClassSymbol *findClassByStruct(const QString &structName) const;
    // The first function of that name.
    const FunctionSignature *findFunction(const QString &name) const;
    // The one that a call means; null when there is none of that name.
    const FunctionSignature *calledFunction(const Node *call) const;
    const FunctionSignature *signatureOf(const Node *function) const;

    // --- the order of the whole text (program_skeleton.cpp) ---
    static void appendRuntime(ProgramText &text, int from, int to);
    QString controlIds() const;
    QString handleDeclarations() const;
    QString forwardDeclarations();
    QString minimalProgram() const;

    // --- user code (user_code.cpp) ---
    QString userCode(const Node *root);
    void writeTimerGuard(CodeWriter &writer, const Node *root);
    bool isMentionedByClass(const QString &name) const;
    QString globalCppType(const Node *node) const;
    void writeGlobals(CodeWriter &writer, const Node *root);
    void writeFunctionDeclarations(CodeWriter &writer, const Node *root);
    void writeFunctionDefinitions(CodeWriter &writer, const Node *root);
    void writeFunctionBody(CodeWriter &writer, const Node *node,
                           const FunctionSignature &signature);
    QString parameterList(const FunctionSignature &signature) const;
    static bool isPlainFunction(const Node *node);

    // --- classes (classes.cpp) ---
    QString writeClasses();
    void writeClass(CodeWriter &writer, const ClassSymbol &symbol);
    void writeProperties(CodeWriter &writer, const ClassSymbol &symbol);
    void writeConstructor(CodeWriter &writer, const ClassSymbol &symbol, const Node *node);
    void writeMethod(CodeWriter &writer, const ClassSymbol &symbol, const Node *node);
    void writeNativeBridges(CodeWriter &writer, const ClassSymbol &symbol);
    void declareMembers(const ClassSymbol &symbol);
    void writeGlobalsForClasses(CodeWriter &writer, const Node *root);
    void collectMentions();
    void orderClass(const QString &name, QStringList &ordered, QSet<QString> &seen) const;
    QList<const ClassSymbol *> classesInOrder() const;

    // --- declarations (declarations.cpp) ---
    void writeDeclaration(CodeWriter &writer, const Node *node);
    void writeInstance(CodeWriter &writer, const Node *node);
    void writeDictionary(CodeWriter &writer, const Node *node);
    bool isInstance(const Node *node) const;
    QString instanceType(const Node *node) const;
    QString instanceClass(const Node *node) const;
    void checkDeclaration(const Node *node);
    void checkArrayDeclaration(const Node *node);
    QString variableCppType(const QString &varType) const;
    void declareVariable(const Node *node);

    // --- statements (statements.cpp, loops.cpp) ---
    void markForDebugger(CodeWriter &writer, int start, const Node *node) const;
    void openStatement(CodeWriter &writer, const Node *node, const QString &text) const;
    void writeBlock(CodeWriter &writer, const Node *block);
    void writeStatement(CodeWriter &writer, const Node *node);
    void writeNestedBlock(CodeWriter &writer, const Node *node);
    void writeIf(CodeWriter &writer, const Node *node);
    void writeSwitch(CodeWriter &writer, const Node *node);
    void writeSwitchBody(CodeWriter &writer, const Node *node);
    void writeReturn(CodeWriter &writer, const Node *node);
    void writeBreak(CodeWriter &writer, const Node *node);
    void writeContinue(CodeWriter &writer, const Node *node);
    void writeWhile(CodeWriter &writer, const Node *node);
    void writeLoop(CodeWriter &writer, const Node *node);
    void writeCStyleLoop(CodeWriter &writer, const Node *node);
    void writeCountVarLoop(CodeWriter &writer, const Node *node);
    void writeRangeLoop(CodeWriter &writer, const Node *node, bool step);
    void writeForEach(CodeWriter &writer, const Node *node);
    void writeForEachOnce(CodeWriter &writer, const Node *node, const QString &array,
                          const QString &index, const QString &element);
    void writeLoopBody(CodeWriter &writer, const Node *block, const QString &step = QString());
    QString caseLabel(const Node *node);
    QString loopVariable(const Node *node);
    QString condition(const Node *node);
    QString requiredCondition(const Node *parent, const Node *node, const QString &word);

    // --- expressions (expressions.cpp) ---
    QString expression(const Node *node);
    QString literal(const Node *node) const;
    QString identifier(const Node *node);
    // Reports an operation that lacks an operand; its text stays empty.
    QString incomplete(const Node *node, const QString &sign);
    QString binary(const Node *node);
    bool isOverloaded(const Node *operation);
    QString unary(const Node *node);
    QString ternary(const Node *node);
    bool isEntry(const Node *node) const;
    QString index(const Node *node);
    // `mayBeTable`: a literal of literals is a table; else an array that holds arrays.
    QString arrayLiteral(const Node *node, bool mayBeTable = true);
    // `value` as an initial or new value of a variable of type `target`.
    QString valueFor(ValueType target, const Node *value);
    QString dictionaryLiteral(const Node *node);
    QString assignment(const Node *node);
    QString itemTarget(const Node *node);
    QString member(const Node *node);
    bool isDictionary(const Node *node) const;
    bool givesDictionary(const Node *node) const;
    void noteDictionary(const Node *target, const Node *value);

    // --- types of expressions (type_inference.cpp) ---
    ValueType inferType(const Node *node) const;
    ValueType inferBinary(const Node *node) const;
    ValueType inferCall(const Node *node) const;
    ValueType inferMember(const Node *node) const;
    ValueType inferIndex(const Node *node) const;
    // The class whose instance an expression is; null when it is none.
    const ClassSymbol *classOf(const Node *node) const;

    // --- calls (calls.cpp, special_calls.cpp) ---
    QString call(const Node *node);
    QString namedCall(const Node *node, const QString &name);
    // `function(arguments)`, the arguments evaluated from left to right where that matters.
    QString callText(const Node *node, const QString &function, const QStringList &arguments) const;
    bool orderMatters(const Node *node) const;
    bool hasEffect(const Node *node) const;
    QString userFunctionCall(const Node *node, const FunctionSignature &signature);
    QString constructorCall(const Node *node, const ClassSymbol &symbol);
    QString conversionCall(const Node *node, const QString &function);
    QString methodCall(const Node *node, const ClassSymbol &symbol);
    QString commandCall(const Node *node, const QString &name, const QString &cppFunction,
                        const CommandInfo *info);
    QString changedEntryCall(const Node *node, const QString &function, QStringList arguments,
                             const CommandInfo &info);
    QString unknownCall(const Node *node, const QString &name);
    QStringList filledArguments(const Node *node, const FunctionSignature &signature,
                                const QString &owner);
    QString zeroValue(const FunctionParameter &parameter) const;
    void checkArguments(const Node *node, const QString &name, const QString &cppFunction,
                        const CommandInfo *info);
    void checkArgumentTypes(const Node *node, const QString &name, const CommandOverload &overload);
    QStringList commandArguments(const Node *node, const QString &cppFunction,
                                 const CommandInfo *info);
    QString commandArgument(const Node *node, const QString &cppFunction, int position,
                            const CommandParameter *parameter);
    void completeArguments(QStringList &arguments, const QString &cppFunction) const;
    const CommandInfo *findCommand(const QString &name) const;
    QString cppFunctionOf(const QString &name, const CommandInfo **info) const;
    int lineOf(const Node *node) const;
    static bool isEmptyArgument(const Node *node);

    // A call whose text is not just "function(arguments)"; empty when the plain form serves.
    QString specialCall(const Node *node, const QString &cppFunction);
    QString printCall(const Node *node);
    QString printArgument(const Node *node);
    QString windowCall(const Node *node, const QString &cppFunction);
    QString threadCall(const Node *node, const QString &cppFunction, int functionIndex,
                       const QString &resultType);
    QString uiCall(const Node *node);
    QString hotkeyCall(const Node *node, const QString &cppFunction);
    QString callbackCall(const Node *node, const QString &cppFunction);
    QString callbackArgument(const Node *node);
    QString joinAllCall(const Node *node);
    QString narrowCall(const Node *node, const QString &cppFunction, const QString &codePage);
    QString httpBytesCall(const Node *node, const QString &cppFunction);
    QStringList plainArguments(const Node *node, int from = 1);
    void checkChangedArray(const Node *node, const QString &name);

    // --- components and windows as objects (member_access.cpp) ---
    std::optional<ComponentRef> componentOf(const Node *node) const;
    QString usedHandle(const ComponentRef &component);
    QString typeWordOf(const ComponentRef &component) const;
    QString componentRead(const Node *node, const ComponentRef &component);
    QString componentWrite(const Node *node, const ComponentRef &component);
    QString componentAssign(const Node *target, const ComponentRef &component, const QString &sign,
                            QString text, ValueType given);
    QString componentValue(const QString &wanted, const QString &text, ValueType given,
                           const Node *place, const QString &what);
    QString componentCall(const Node *node, const ComponentRef &component);
    bool refusesBalloon(const Node *node);
    QString methodText(const ComponentMethod &method, const QString &handle,
                       const QStringList &arguments) const;
    QStringList methodArguments(const Node *node, const ComponentRef &component,
                                const ComponentMethod &method);
    QString unknownMember(const Node *node, const ComponentRef &component);

    // --- events (event_handlers.cpp) ---
    struct EventHandler
    {
        const Node *node = nullptr; // the user's event function
        const ComponentEvent *event = nullptr;
        QString function; // else a function that the form names
    };
    void collectEvents(const Node *root);
    void addWindowHandler(const Node *node, const DesignedWindow &window, const QString &word);
    void collectDesignedHandlers();
    void addControlHandler(const Node *node, const DesignedControl &control, const QString &word);
    void addHandler(const QString &key, const Node *node, const ComponentEvent *event);
    static QString handlerKey(const DesignedControl &control, const ComponentEvent &event);
    const EventHandler *handlerOf(const DesignedControl &control,
                                  const ComponentEvent &event) const;
    const EventHandler *handlerOf(const DesignedWindow &window, const ComponentEvent &event) const;
    QList<const ComponentEvent *> eventsOf(const DesignedControl &control) const;
    QList<const ComponentEvent *> eventsOf(const DesignedWindow &window) const;
    static QString handlerName(const QString &stem, const ComponentEvent &event);
    static QString handlerHead(const QString &stem, const ComponentEvent &event);
    QString eventDeclarations() const;
    QString eventHandlers();
    void writeHandler(CodeWriter &writer, const QString &stem, const ComponentEvent &event,
                      const EventHandler *handler, bool startsUserCode);
    void writeEventBody(CodeWriter &writer, const ComponentEvent &event, const Node *function);
    void writeHandlerCall(CodeWriter &writer, const ComponentEvent &event,
                          const FunctionSignature &function);
    QString eventHandlerCall(const Node *node, const ComponentRef &component);
    QString handlerCallText(const Node *node, const QString &stem, const ComponentEvent &event);

    // --- menus of the design (design_menus.cpp) ---
    struct DesignMenuItem
    {
        QString key;
        QString handler;
    };
    struct DesignMenu
    {
        const DesignedWindow *window;
        QString handle;
        bool isWindow;
        bool allowed;
        QString function;
        QString body;
        QList<DesignMenuItem> items;
    };
    void collectMenus();
    void addMenu(const DesignedWindow &window, const VL::DesignComponent &component,
                 const QString &stem, const QString &handle);
    void addMenuItems(DesignMenu &menu, const QJsonArray &items, const QString &stem,
                      const QString &parent, CodeWriter &writer, int &number, int depth);
    void warnOfMenuHandlers();
    QString menuFunctions(const DesignedWindow &window) const;
    void writeMenuMessage(CodeWriter &writer, const DesignedWindow &window) const;
    void writeMenuPermissions(CodeWriter &writer, const DesignedWindow &window) const;
    void writeMenuHandlers(CodeWriter &writer);

    // --- window procedures (window_procedure.cpp) ---
    QString windowProcedure(const DesignedWindow &window) const;
    bool answers(const DesignedWindow &window, const QString &word) const;
    void writeEarlyEvents(CodeWriter &writer, const DesignedWindow &window) const;
    void writeCommandMessage(CodeWriter &writer, const DesignedWindow &window) const;
    void writeNotifyMessage(CodeWriter &writer, const DesignedWindow &window) const;
    void writeNotifyCase(CodeWriter &writer, const DesignedControl &control) const;
    void writeScrollMessages(CodeWriter &writer, const DesignedWindow &window) const;
    void writeCloseMessages(CodeWriter &writer, const DesignedWindow &window) const;

    // --- creation of windows and controls, entry point (window_program.cpp) ---
    QString createControls(const DesignedWindow &window) const;
    static void writeTabOrder(CodeWriter &writer, const DesignedWindow &window);
    static void writeLayout(CodeWriter &writer, const DesignedWindow &window);
    static void writeLayoutBox(CodeWriter &writer, const DesignedControl &box, int index,
                               const QString &parent);
    static void writeLayoutMember(CodeWriter &writer, const DesignedControl &control,
                                  const QString &box);
    QString furtherWindow(const DesignedWindow &window) const;
    void writeWindowClass(CodeWriter &writer, const DesignedWindow &window,
                          const QString &className, const QString &procedure) const;
    void writeWindowCreation(CodeWriter &writer, const DesignedWindow &window,
                             const QString &className) const;
    static QString windowExtendedStyle(const DesignedWindow &window);
    void writeWindowSetUp(CodeWriter &writer, const DesignedWindow &window) const;
    static void writeWindowLimits(CodeWriter &writer, const DesignedWindow &window);
    static void writeWindowPlace(CodeWriter &writer, const DesignedWindow &window);
    QString entryPoint() const;
    void writeHiddenWindow(CodeWriter &writer, const DesignedWindow &window) const;
    void writeStartWindow(CodeWriter &writer, const DesignedWindow &window) const;
    static void writeSelfDrawnColors(CodeWriter &writer, const DesignedWindow &window);
    void writeStartOfUserCode(CodeWriter &writer);
    // Whether any window has a component of that type.
    bool uses(int type) const;
    // The window the program starts with; there is one whenever there is any window.
    const DesignedWindow &startWindow() const { return m_windows.all().first(); }

    const GenerationInput &m_input;
    const GeneratorTables &m_tables;
    QHash<QString, QList<FunctionSignature>> m_functions; // by name in NFKC, overloads in order
    QHash<QString, ClassSymbol> m_classes;
    QStringList m_userClassOrder;
    QHash<QString, QSet<QString>> m_mentions; // for each class, all names in it
    QHash<QString, QString> m_cppNames;
    const ProgramWindows m_windows;
    QHash<QString, EventHandler> m_handlers; // by the end of the handler's name
    QList<DesignMenu> m_menus;
    QSet<QString> m_menuHandlers;
    QStringList m_referencedControls;
    ScopeStack m_scopes;
    QSet<QString> m_reported;
    // Where the walk is.
    const ClassSymbol *m_currentClass = nullptr;
    const FunctionSignature *m_currentFunction = nullptr;
    int m_line = 0;          // the last source line seen; for nodes without a line of their own
    QStringList m_loopSteps; // for each loop around: what `继续` must do first
    int m_forEachDepth = 0;
};
