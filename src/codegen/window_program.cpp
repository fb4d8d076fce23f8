// The main window's frame: event handlers, entry point, the start of the user's code.
#include "codegen/generation.h"

#include "codegen/names.h"

#include <algorithm>

namespace {

using Node = Parser::ASTNode;

const QString kMainFunction = QStringLiteral("主函数");

QString handlerHead(const WindowEvent &event)
{
    return event.result + QLatin1String(" On_MainWindow_") + event.handler + QLatin1Char('(') +
           event.parameters + QLatin1Char(')');
}

} // namespace

const WindowRecord &Generation::startWindow() const
{
    const auto start = std::find_if(m_input.windows.begin(), m_input.windows.end(),
                                    [](const WindowRecord &window) { return window.isStartup; });
    return start == m_input.windows.end() ? m_input.windows.first() : *start;
}

QString Generation::mainWindowDeclarations() const
{
    CodeWriter writer;
    writer.line(QStringLiteral("// Event handler declarations"));
    for (const WindowEvent &event : m_tables.mainWindowEvents)
        writer.line(handlerHead(event) + QLatin1Char(';'));
    writer.blankLine();
    return writer.takeText();
}

QString Generation::createControls() const
{
    CodeWriter writer;
    writer.open(QStringLiteral("void CreateControls(HWND hwnd) {"));
    writer.line(QStringLiteral("(void)hwnd;"));
    writer.close();
    writer.line(QStringLiteral("static void VL_ApplyDesignContextMenuBinds_Main(HWND) {}"));
    writer.blankLine();
    return writer.takeText();
}

// A hidden start window ends the program when the user's code is through and left nothing visible.
QString Generation::entryPoint() const
{
    const bool hidden = startWindow().implicit;
    CodeWriter writer;
    writer.line(QStringLiteral("static int __vl_exitCode = 0;"));
    writer.open(QStringLiteral(
        "int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR, int nCmdShow) {"));
    writer.line(QStringLiteral("__VL_InitGlobalVariables();"));
    writer.line(QStringLiteral("VL_InitOutput();"));
    writer.line(QStringLiteral("(void)nCmdShow;"));
    writer.line(QStringLiteral("g_hInstance = hInstance;"));
    writer.line(QStringLiteral("g_mainThreadId = GetCurrentThreadId();"));
    writer.line(QStringLiteral("srand((unsigned int)time(NULL));"));
    writer.raw(QStringLiteral(
        "    typedef BOOL (WINAPI *DpiContextFn)(HANDLE);\n"
        "    DpiContextFn setDpiContext = (DpiContextFn)(void*)GetProcAddress("
        "GetModuleHandleW(L\"user32.dll\"), \"SetProcessDpiAwarenessContext\");\n"
        "    g_vlDpiAware = setDpiContext && setDpiContext("
        "(HANDLE)DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2);\n"
        "    WNDCLASSW wc = {};\n"
        "    wc.style = CS_DBLCLKS;\n"
        "    wc.lpfnWndProc = WndProc;\n"
        "    wc.hInstance = hInstance;\n"
        "    wc.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);\n"
        "    wc.hCursor = LoadCursor(NULL, IDC_ARROW);\n"
        "    wc.lpszClassName = L\"VLWnd\";\n"
        "    RegisterClassW(&wc);\n"
        "    g_hWndMain = CreateWindowW(L\"VLWnd\", L\"VL Program\", WS_OVERLAPPEDWINDOW, "
        "CW_USEDEFAULT, CW_USEDEFAULT, VL_ScaleX(NULL, 640), VL_ScaleY(NULL, 480), NULL, NULL, "
        "hInstance, NULL);\n"
        "    CreateControls(g_hWndMain);\n"
        "    VL_ApplyDesignContextMenuBinds_Main(g_hWndMain);\n"
        "    On_MainWindow_Create();  // main create\n"));
    if (hidden) {
        writer.open(QStringLiteral("if (!VL_HasVisibleWindow()) {"));
        writer.line(QStringLiteral("VL_Network_ShutdownAll(); VL_Thread_CleanupAll();"));
        writer.line(QStringLiteral("return __vl_exitCode;"));
        writer.close();
    } else {
        writer.line(QStringLiteral("ShowWindow(g_hWndMain, nCmdShow); UpdateWindow(g_hWndMain);"));
    }
    writer.raw(QStringLiteral(
        "    MSG msg; while(GetMessageW(&msg, NULL, 0, 0)) { if (!IsDialogMessageW(g_hWndMain, "
        "&msg)) { TranslateMessage(&msg); DispatchMessageW(&msg); } }\n"
        "    VL_Network_ShutdownAll(); VL_Thread_CleanupAll();\n"));
    writer.line(hidden ? QStringLiteral("return msg.wParam ? (int)msg.wParam : __vl_exitCode;")
                       : QStringLiteral("return (int)msg.wParam;"));
    writer.close();
    writer.blankLine();
    return writer.takeText();
}

QString Generation::eventHandlers(const Node *root)
{
    CodeWriter writer;
    for (const WindowEvent &event : m_tables.mainWindowEvents)
        writeMainWindowEvent(writer, event, root);
    writer.open(QStringLiteral("void VL_CallWindowCreateEvent(const std::wstring& name) {"));
    writer.line(QLatin1String("if (name == ") + CodeWriter::wideString(startWindow().name) +
                QLatin1String(") On_MainWindow_Create();"));
    writer.close();
    return writer.takeText();
}

const Parser::ASTNode *Generation::findEventFunction(const Node *root,
                                                     const QStringList &words) const
{
    if (!root)
        return nullptr;
    for (const Node *node : root->children) {
        if (node->type != Parser::FunctionDecl || node->value.count(QLatin1Char('.')) != 1)
            continue;
        const QString window = Names::normalized(node->value.section(QLatin1Char('.'), 0, 0));
        const QString word = Names::normalized(node->value.section(QLatin1Char('.'), 1));
        const bool mine =
            window == QStringLiteral("主窗口") || window == Names::normalized(startWindow().name);
        if (mine && words.contains(word))
            return node;
    }
    return nullptr;
}

void Generation::writeMainWindowEvent(CodeWriter &writer, const WindowEvent &event,
                                      const Node *root)
{
    writer.open(handlerHead(event) + QLatin1String(" {"));
    const Node *function = findEventFunction(root, event.words);
    if (function)
        writeEventBody(writer, event, function);
    else if (event.handler == QLatin1String("Create"))
        writeStartOfUserCode(writer);
    else if (event.result == QLatin1String("bool"))
        writer.line(QStringLiteral("return true;"));
    writer.close();
    writer.blankLine();
}

// The event's values under the words that the user writes, and under the names of the parameters
// that the user chose; then the user's statements.
void Generation::writeEventBody(CodeWriter &writer, const WindowEvent &event, const Node *function)
{
    FunctionSignature signature = readSignature(function, false);
    for (int i = 0; i < event.locals.size(); ++i) {
        const QString name = event.locals.at(i).section(QLatin1Char('='), 0, 0);
        const QString source = event.locals.at(i).section(QLatin1Char('='), 1);
        const bool text = source == QLatin1String("_VL_text");
        writer.line((text ? QLatin1String("std::wstring ") : QLatin1String("int ")) +
                    cppName(name) + QLatin1String(" = ") + source + QLatin1Char(';'));
        if (i >= signature.parameters.size() || signature.parameters.at(i).name == name)
            continue;
        const FunctionParameter &parameter = signature.parameters.at(i);
        writer.line(parameter.cppType + QLatin1Char(' ') + parameter.cppName +
                    QLatin1String(" = ") + source + QLatin1Char(';'));
    }
    signature.returnCppType = event.result;
    writeFunctionBody(writer, function, signature);
}

void Generation::writeStartOfUserCode(CodeWriter &writer)
{
    const FunctionSignature *function = findFunction(kMainFunction);
    if (!function || !startWindow().implicit)
        return;
    QStringList arguments;
    for (const FunctionParameter &parameter : function->parameters) {
        arguments << (parameter.defaultValue ? expression(parameter.defaultValue)
                                             : zeroValue(parameter));
    }
    const QString call = function->cppName + QLatin1Char('(') +
                         arguments.join(QLatin1String(", ")) + QLatin1Char(')');
    const bool number =
        function->returnType == ValueType::Int || function->returnType == ValueType::Bool ||
        function->returnType == ValueType::Double || function->returnType == ValueType::Any;
    if (!number) {
        writer.line(call + QLatin1Char(';'));
        return;
    }
    writer.line(QLatin1String("__vl_exitCode = (int)(intptr_t)") + call + QLatin1Char(';'));
}
