// The windows of a program: creation of their controls, creation of the windows, entry point.
#include "codegen/control_writer.h"
#include "codegen/generation.h"

#include "designer/model/component_types.h"

#include <QSet>
#include <algorithm>
#include <functional>

using namespace DesignCode;

namespace {

using Node = Parser::ASTNode;

const QString kMainFunction = QStringLiteral("主函数");
const int kWindowGrey = 0xF0F0F0;
const int kDeepestLayout = 100; // parents that run in circles end here

// What a layout or its member takes from its properties, under the runtime's names.
const struct
{
    const char *key;
    const char *option;
} kFlexOptions[] = {
    {"flexDirection", "flexDirection"},
    {"justifyContent", "justifyContent"},
    {"alignItems", "alignItems"},
    {"flexWrap", "flexWrap"},
    {"flexPadding", "flexPadding"},
    {"flexGap", "flexGap"},
    {"flexGrow", "flexGrow"},
    {"flexShrink", "flexShrink"},
    {"flexMinWidth", "flexMinWidth"},
    {"flexMaxWidth", "flexMaxWidth"},
    {"flexMinHeight", "flexMinHeight"},
    {"flexMaxHeight", "flexMaxHeight"},
    {"布局边距", "margin"},
    {"布局间距", "spacing"},
    {"布局列数", "columns"},
};

QString flexOptions(const PropertyBag &bag)
{
    QStringList options;
    for (const auto &row : kFlexOptions) {
        const QString key = QString::fromUtf8(row.key);
        if (bag.has(key))
            options << QLatin1String(row.option) + QLatin1Char('=') + bag.text(key);
    }
    return wide(options.join(QLatin1Char(';')));
}

bool isBox(int type)
{
    return type == VL::HorizontalLayout || type == VL::VerticalLayout || type == VL::GridLayout;
}

bool isSpacer(int type)
{
    return type == VL::HorizontalSpacer || type == VL::VerticalSpacer;
}

QString windowStyle(const DesignedWindow &window)
{
    const PropertyBag bag = window.bag();
    if (bag.flag(QStringLiteral("borderless")) || window.isSelfDrawn())
        return QStringLiteral("WS_POPUP | WS_CLIPCHILDREN");
    QString style = QStringLiteral("WS_OVERLAPPED | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN");
    if (bag.flag(QStringLiteral("resizable"), true))
        style += QLatin1String(" | WS_THICKFRAME");
    if (bag.flag(QStringLiteral("minimizeBox"), true))
        style += QLatin1String(" | WS_MINIMIZEBOX");
    if (bag.flag(QStringLiteral("maximizeBox"), true))
        style += QLatin1String(" | WS_MAXIMIZEBOX");
    return style;
}

QString windowTitle(const DesignedWindow &window)
{
    const PropertyBag bag = window.bag();
    for (const char *key : {"title", "text"}) {
        if (bag.has(QLatin1String(key)))
            return bag.text(QLatin1String(key));
    }
    return QStringLiteral("VL Program");
}

// Of a self-drawn window, with those of the dark theme where the design has none.
int titleColor(const PropertyBag &bag)
{
    return bag.color(QStringLiteral("titleBarColor")).value_or(0x3C3C3C);
}

int clientColor(const PropertyBag &bag)
{
    return bag.color(QStringLiteral("backColor")).value_or(0x302D2D);
}

QString showCommand(const DesignedWindow &window)
{
    const QString state = window.bag().text(QStringLiteral("windowState"));
    if (state == QStringLiteral("最大化"))
        return QStringLiteral("SW_MAXIMIZE");
    return state == QStringLiteral("最小化") ? QStringLiteral("SW_MINIMIZE")
                                             : QStringLiteral("nCmdShow");
}

} // namespace

// --- controls ---

QString Generation::createControls(const DesignedWindow &window) const
{
    CodeWriter writer;
    const QString suffix = window.isStart() ? QString() : QLatin1Char('_') + window.cppName();
    writer.open(QStringLiteral("void CreateControls%1(HWND hwnd) {").arg(suffix));
    const QList<int> order = window.creationOrder();
    if (order.isEmpty() && window.controls().isEmpty()) {
        writer.line(QStringLiteral("(void)hwnd;"));
        writer.close();
        return writer.takeText();
    }
    writer.line(QStringLiteral(
        "HFONT hFont = CreateFontW(-14, 0, 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, DEFAULT_CHARSET, "
        "OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, CLEARTYPE_QUALITY, DEFAULT_PITCH | FF_DONTCARE, "
        "L\"Microsoft YaHei UI\");"));
    // Freed with the window and of the size that its screen wants.
    writer.line(QStringLiteral("hFont = VL_OwnFont(hwnd, hFont);"));
    writer.line(QStringLiteral("SetPropW(hwnd, L\"VL_Creating\", (HANDLE)1);"));
    if (window.isSelfDrawn() && (uses(VL::TextBox) || uses(VL::Button)))
        writer.line(QStringLiteral("VL_D2DStdControls_Register();"));
    for (int index : order) {
        const DesignedControl &control = window.controls().at(index);
        const QList<const ComponentEvent *> events = eventsOf(control);
        const bool watched =
            std::any_of(events.begin(), events.end(),
                        [](const ComponentEvent *event) { return event->watched; });
        ControlWriter(writer, window, control).write(watched);
    }
    writeTabOrder(writer, window);
    for (const DesignedControl &control : window.controls()) {
        if (control.component.type == VL::TabWidget) {
            writer.line(QStringLiteral("if (%1) VL_Tab_ResizePanels(%1);").arg(control.handle));
        }
    }
    writeMenuPermissions(writer, window);
    writeLayout(writer, window);
    writer.line(QStringLiteral("RemovePropW(hwnd, L\"VL_Creating\");"));
    writer.close();
    return writer.takeText();
}

// The order in which Tab goes through the controls is that of the windows' stacking.
void Generation::writeTabOrder(CodeWriter &writer, const DesignedWindow &window)
{
    QList<const DesignedControl *> ordered;
    for (const DesignedControl &control : window.controls()) {
        if (control.hasWindow() && control.bag().has(QStringLiteral("tabOrder")))
            ordered << &control;
    }
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const DesignedControl *a, const DesignedControl *b) {
                         return a->bag().number(QStringLiteral("tabOrder")) <
                                b->bag().number(QStringLiteral("tabOrder"));
                     });
    for (auto it = ordered.crbegin(); it != ordered.crend(); ++it) {
        writer.line(QStringLiteral("SetWindowPos(%1, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | "
                                   "SWP_NOSIZE | SWP_NOACTIVATE);")
                        .arg((*it)->handle));
    }
}

// The boxes of the design's layouts, outer ones first, with what lies in them.
void Generation::writeLayout(CodeWriter &writer, const DesignedWindow &window)
{
    const bool whole = window.bag().flag(QStringLiteral("flexLayout"));
    const auto &controls = window.controls();
    const bool boxes = std::any_of(controls.begin(), controls.end(), [](const DesignedControl &c) {
        return isBox(c.component.type);
    });
    if (!whole && !boxes)
        return;
    if (whole)
        writer.line(QLatin1String("VL_Flex_SetWindow(hwnd, ") + flexOptions(window.bag()) +
                    QLatin1String(");"));
    // In the order of the form, which is that of the places; a box goes ahead of what lies in it.
    QSet<int> written;
    const std::function<void(int, int)> write = [&](int index, int depth) {
        if (written.contains(index) || depth > kDeepestLayout)
            return;
        const int parent =
            window.indexOfId(controls.at(index).bag().text(QStringLiteral("_parentLayout")));
        const bool inBox = parent >= 0 && isBox(controls.at(parent).component.type);
        if (inBox)
            write(parent, depth + 1);
        if (written.contains(index))
            return;
        written.insert(index);
        const QString box = inBox ? QStringLiteral("_vlBox%1").arg(parent) : QStringLiteral("-1");
        if (isBox(controls.at(index).component.type))
            writeLayoutBox(writer, controls.at(index), index, box);
        else if ((inBox || whole) && controls.at(index).tabWidget < 0)
            writeLayoutMember(writer, controls.at(index), box);
    };
    for (int i = 0; i < controls.size(); ++i)
        write(i, 0);
    writer.line(QStringLiteral("VL_ApplyFlexLayout(hwnd);"));
}

void Generation::writeLayoutBox(CodeWriter &writer, const DesignedControl &box, int index,
                                const QString &parent)
{
    writer.line(QStringLiteral("int _vlBox%1 = VL_Flex_AddBox(hwnd, %2, %3, %4, %5, %6, %7, ")
                    .arg(index)
                    .arg(parent)
                    .arg(box.component.type - VL::HorizontalLayout)
                    .arg(box.place.x())
                    .arg(box.place.y())
                    .arg(box.place.width())
                    .arg(box.place.height()) +
                flexOptions(box.bag()) + QLatin1String(");"));
    writer.line(QStringLiteral("(void)_vlBox%1;").arg(index));
}

void Generation::writeLayoutMember(CodeWriter &writer, const DesignedControl &control,
                                   const QString &box)
{
    const QString options = flexOptions(control.bag());
    if (isSpacer(control.component.type)) {
        writer.line(QStringLiteral("VL_Flex_AddSpacer(hwnd, %1, %2, %3, ")
                        .arg(box)
                        .arg(control.place.width())
                        .arg(control.place.height()) +
                    options + QLatin1String(");"));
    } else if (control.hasWindow()) {
        writer.line(QStringLiteral("VL_Flex_AddControl(hwnd, %1, %2, ").arg(box, control.handle) +
                    options + QLatin1String(");"));
    }
}

// --- windows ---

bool Generation::uses(int type) const
{
    return std::any_of(m_windows.all().begin(), m_windows.all().end(),
                       [type](const DesignedWindow &window) {
                           return std::any_of(window.controls().begin(), window.controls().end(),
                                              [type](const DesignedControl &control) {
                                                  return control.component.type == type;
                                              });
                       });
}

// Creates the window under its handle; its size is that of the design's client area.
void Generation::writeWindowCreation(CodeWriter &writer, const DesignedWindow &window,
                                     const QString &className) const
{
    const QString style = windowStyle(window);
    const QString extended = windowExtendedStyle(window);
    const VL::DesignComponent &form = window.component();
    writer.line(QStringLiteral("RECT rc = {0, 0, VL_ScaleX(NULL, %1), VL_ScaleY(NULL, %2)};")
                    .arg(std::max(1, form.width))
                    .arg(std::max(1, form.height)));
    writer.line(QStringLiteral("AdjustWindowRectEx(&rc, %1, FALSE, %2);").arg(style, extended));
    writer.line(QStringLiteral("int adjustedWidth = rc.right - rc.left;"));
    writer.line(QStringLiteral("int adjustedHeight = rc.bottom - rc.top;"));
    writer.line(window.handle() +
                (extended == QLatin1String("0")
                     ? QLatin1String(" = CreateWindowW(")
                     : QLatin1String(" = CreateWindowExW(") + extended + QLatin1String(", ")) +
                className + QLatin1String(", ") + wide(windowTitle(window)) + QLatin1String(", ") +
                style +
                QLatin1String(", CW_USEDEFAULT, CW_USEDEFAULT, adjustedWidth, adjustedHeight, "
                              "NULL, NULL, g_hInstance, NULL);"));
}

QString Generation::windowExtendedStyle(const DesignedWindow &window)
{
    QStringList styles;
    if (!window.bag().flag(QStringLiteral("showInTaskbar"), true))
        styles << QStringLiteral("WS_EX_TOOLWINDOW");
    if (window.bag().flag(QStringLiteral("topMost")))
        styles << QStringLiteral("WS_EX_TOPMOST");
    return styles.isEmpty() ? QStringLiteral("0") : styles.join(QLatin1String(" | "));
}

// What the design says about a window that exists, ahead of its controls.
void Generation::writeWindowSetUp(CodeWriter &writer, const DesignedWindow &window) const
{
    const PropertyBag bag = window.bag();
    const QString &handle = window.handle();
    const auto call = [&](const char *function, const QString &arguments) {
        writer.line(QStringLiteral("%1(%2, %3);").arg(QLatin1String(function), handle, arguments));
    };
    const bool resizable = window.isSelfDrawn() ? bag.flag(QStringLiteral("borderResizable"), true)
                                                : bag.flag(QStringLiteral("borderResizable"));
    if (window.isSelfDrawn()) {
        call("VL_SetWindowBorderless", QLatin1String("true, ") + boolean(resizable));
        call("VL_VlwinPrepareWindow",
             QStringLiteral("(int)%1, (int)%2, %3, %4, %5")
                 .arg(rgb(titleColor(bag)), rgb(clientColor(bag)),
                      boolean(bag.flag(QStringLiteral("minimizeBox"), true)),
                      boolean(bag.flag(QStringLiteral("maximizeBox"), true)), boolean(resizable)));
        writer.line(QStringLiteral("VL_VlwinDisableNcRendering(%1);").arg(handle));
    } else if (bag.flag(QStringLiteral("borderless"))) {
        call("VL_SetWindowBorderless", QLatin1String("true, ") + boolean(resizable));
    }
    if (bag.has(QStringLiteral("icon")))
        call("VL_SetWindowIcon", wide(bag.text(QStringLiteral("icon"))));
    const auto back = bag.color(QStringLiteral("backColor"));
    if (!window.isSelfDrawn() && back && *back != kWindowGrey && *back != 0)
        call("VL_SetBgColor", QLatin1String("(int)") + rgb(*back));
    if (bag.has(QStringLiteral("backgroundImage"))) {
        call("VL_SetWindowBackground",
             wide(bag.text(QStringLiteral("backgroundImage"))) + QLatin1String(", ") +
                 wide(bag.text(QStringLiteral("backgroundMode"), QStringLiteral("拉伸"))));
    }
    writeWindowLimits(writer, window);
    writeWindowPlace(writer, window);
    const int opacity = bag.number(QStringLiteral("opacity"), 100);
    if (opacity >= 0 && opacity < 100)
        call("VL_SetWindowOpacity", QString::number(opacity));
    if (!bag.flag(QStringLiteral("enabled"), true))
        writer.line(QStringLiteral("EnableWindow(%1, FALSE);").arg(handle));
}

// Limits never keep a window from the size that it was designed with.
void Generation::writeWindowLimits(CodeWriter &writer, const DesignedWindow &window)
{
    const PropertyBag bag = window.bag();
    const VL::DesignComponent &form = window.component();
    const auto least = [&](const char *key, int designed) {
        return QString::number(std::max(0, std::min(bag.number(QLatin1String(key)), designed)));
    };
    const auto most = [&](const char *key, int designed) {
        const int limit = bag.number(QLatin1String(key));
        return QString::number(limit > 0 ? std::max(limit, designed) : 0);
    };
    const QStringList limits{least("minWidth", form.width), least("minHeight", form.height),
                             most("maxWidth", form.width), most("maxHeight", form.height)};
    if (limits.count(QStringLiteral("0")) < limits.size())
        writer.line(QStringLiteral("VL_SetWindowLimits(%1, %2);")
                        .arg(window.handle(), limits.join(QLatin1String(", "))));
}

void Generation::writeWindowPlace(CodeWriter &writer, const DesignedWindow &window)
{
    const QString start =
        window.bag().text(QStringLiteral("startPosition"), QStringLiteral("居中"));
    if (start == QStringLiteral("居中")) {
        writer.line(QStringLiteral("VL_CenterWindow(%1);").arg(window.handle()));
    } else if (start == QStringLiteral("手动")) {
        writer.line(
            QStringLiteral("SetWindowPos(%1, NULL, VL_ScaleX(%1, %2), VL_ScaleY(%1, %3), 0, "
                           "0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);")
                .arg(window.handle())
                .arg(window.component().x)
                .arg(window.component().y));
    }
}

// A window that is not the first: its procedure, its creation.
QString Generation::furtherWindow(const DesignedWindow &window) const
{
    CodeWriter writer;
    writer.raw(menuFunctions(window));
    writer.raw(windowProcedure(window));
    writer.raw(createControls(window));
    const QString className = wide(QLatin1String("VLWnd_") + window.cppName());
    writer.open(QStringLiteral("void CreateWindow_%1() {").arg(window.cppName()));
    writer.line(QStringLiteral("if (%1) return; // already created").arg(window.handle()));
    writer.line(QStringLiteral("static bool classRegistered = false;"));
    writer.open(QStringLiteral("if (!classRegistered) {"));
    writeWindowClass(writer, window, className, QStringLiteral("WndProc_%1").arg(window.cppName()));
    writer.line(QStringLiteral("classRegistered = true;"));
    writer.close();
    writeWindowCreation(writer, window, className);
    writer.line(QStringLiteral("if (!%1) return;").arg(window.handle()));
    writeWindowSetUp(writer, window);
    writer.line(QStringLiteral("CreateControls_%1(%2);").arg(window.cppName(), window.handle()));
    writer.line(QStringLiteral("VL_ApplyDesignContextMenuBinds_Sub_%1(%2);")
                    .arg(window.cppName(), window.handle()));
    writer.line(QStringLiteral("VL_Window_Register(%1, %2, NULL, false);")
                    .arg(wide(window.name()), window.handle()));
    writer.close();
    writer.blankLine();
    return writer.takeText();
}

void Generation::writeWindowClass(CodeWriter &writer, const DesignedWindow &window,
                                  const QString &className, const QString &procedure) const
{
    const bool shadow = window.isSelfDrawn() || window.bag().flag(QStringLiteral("borderless"));
    writer.line(QStringLiteral("WNDCLASSW wc = {};"));
    writer.line(QStringLiteral("wc.style = CS_DBLCLKS%1;")
                    .arg(shadow ? QStringLiteral(" | CS_DROPSHADOW") : QString()));
    writer.line(QStringLiteral("wc.lpfnWndProc = %1;").arg(procedure));
    writer.line(QStringLiteral("wc.hInstance = g_hInstance;"));
    writer.line(QStringLiteral("wc.hbrBackground = (HBRUSH)(COLOR_BTNFACE + 1);"));
    writer.line(QStringLiteral("wc.hCursor = LoadCursor(NULL, IDC_ARROW);"));
    writer.line(QStringLiteral("wc.lpszClassName = %1;").arg(className));
    writer.line(QStringLiteral("RegisterClassW(&wc);"));
}

// --- entry point ---

QString Generation::entryPoint() const
{
    const DesignedWindow &window = startWindow();
    CodeWriter writer;
    writer.line(QStringLiteral("static int __vl_exitCode = 0;"));
    writer.open(QStringLiteral(
        "int WINAPI wWinMain(HINSTANCE hInstance, HINSTANCE, LPWSTR, int nCmdShow) {"));
    writer.line(QStringLiteral("__VL_InitGlobalVariables();"));
    writer.line(QStringLiteral("VL_InitOutput();"));
    writer.line(QStringLiteral("(void)nCmdShow;"));
    writer.line(QStringLiteral("typedef BOOL (WINAPI *DpiContextFn)(HANDLE);"));
    writer.line(
        QStringLiteral("DpiContextFn setDpiContext = (DpiContextFn)(void*)GetProcAddress("
                       "GetModuleHandleW(L\"user32.dll\"), \"SetProcessDpiAwarenessContext\");"));
    // The call fails when the program's manifest has settled it already.
    writer.line(QStringLiteral("g_vlDpiAware = (setDpiContext && setDpiContext("
                               "(HANDLE)DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2)) || "
                               "IsProcessDPIAware();"));
    writer.line(QStringLiteral("g_hInstance = hInstance;"));
    writer.line(QStringLiteral("g_mainThreadId = GetCurrentThreadId();"));
    writer.line(QStringLiteral("srand((unsigned int)time(NULL));"));
    if (window.isImplicit())
        writeHiddenWindow(writer, window);
    else
        writeStartWindow(writer, window);
    writer.close();
    writer.blankLine();
    return writer.takeText();
}

// A hidden start window ends the program when the user's code is through and left nothing visible.
void Generation::writeHiddenWindow(CodeWriter &writer, const DesignedWindow &window) const
{
    writeWindowClass(writer, window, QStringLiteral("L\"VLWnd\""), QStringLiteral("WndProc"));
    writer.line(QStringLiteral(
        "g_hWndMain = CreateWindowW(L\"VLWnd\", L\"VL Program\", WS_OVERLAPPEDWINDOW, "
        "CW_USEDEFAULT, CW_USEDEFAULT, VL_ScaleX(NULL, 640), VL_ScaleY(NULL, 480), NULL, NULL, "
        "hInstance, NULL);"));
    writer.line(QStringLiteral("On_MainWindow_Create();  // main create"));
    writer.open(QStringLiteral("if (!VL_HasVisibleWindow()) {"));
    writer.line(QStringLiteral("VL_Network_ShutdownAll(); VL_Thread_CleanupAll();"));
    writer.line(QStringLiteral("return __vl_exitCode;"));
    writer.close();
    writer.line(QStringLiteral(
        "MSG msg; while(GetMessageW(&msg, NULL, 0, 0)) { if (!IsDialogMessageW(g_hWndMain, "
        "&msg)) { TranslateMessage(&msg); DispatchMessageW(&msg); } }"));
    writer.line(QStringLiteral("VL_Network_ShutdownAll(); VL_Thread_CleanupAll();"));
    writer.line(QStringLiteral("return msg.wParam ? (int)msg.wParam : __vl_exitCode;"));
}

void Generation::writeStartWindow(CodeWriter &writer, const DesignedWindow &window) const
{
    writer.line(QStringLiteral("VL_InitGdiPlus();"));
    if (uses(VL::RichEdit))
        writer.line(QStringLiteral("LoadLibraryW(L\"Msftedit.dll\");"));
    writer.line(QStringLiteral(
        "INITCOMMONCONTROLSEX icc = {sizeof(icc), ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | "
        "ICC_LISTVIEW_CLASSES | ICC_TREEVIEW_CLASSES | ICC_BAR_CLASSES | ICC_TAB_CLASSES | "
        "ICC_UPDOWN_CLASS | ICC_DATE_CLASSES | ICC_USEREX_CLASSES | ICC_COOL_CLASSES | "
        "ICC_INTERNET_CLASSES | ICC_PAGESCROLLER_CLASS | ICC_NATIVEFNTCTL_CLASS};"));
    writer.line(QStringLiteral("InitCommonControlsEx(&icc);"));
    if (uses(VL::Label))
        writer.line(QStringLiteral("VL_RegisterOwnerDrawLabelClass();"));
    if (uses(VL::TabWidget))
        writer.line(QStringLiteral("VL_RegisterTabPanelClass();"));
    if (uses(VL::PictureBox))
        writer.line(QStringLiteral("VL_RegisterPictureBoxClass();"));
    if (uses(VL::DrawingCanvas))
        writer.line(QStringLiteral("VL_RegisterDrawCanvasClass(hInstance);"));
    writeWindowClass(writer, window, QStringLiteral("L\"VLWnd\""), QStringLiteral("WndProc"));
    if (window.isSelfDrawn())
        writeSelfDrawnColors(writer, window);
    writeWindowCreation(writer, window, QStringLiteral("L\"VLWnd\""));
    writeWindowSetUp(writer, window);
    writer.line(QStringLiteral("CreateControls(g_hWndMain);"));
    writer.line(QStringLiteral("VL_ApplyDesignContextMenuBinds_Main(g_hWndMain);"));
    writer.line(QStringLiteral("VL_Window_Register(%1, g_hWndMain, NULL, false);")
                    .arg(wide(window.name())));
    for (const DesignedWindow &further : m_windows.all()) {
        if (further.isStart())
            continue;
        writer.line(QStringLiteral("VL_Window_RegisterCreator(%1, CreateWindow_%2, &%3);")
                        .arg(wide(further.name()), further.cppName(), further.handle()));
        writer.line(QStringLiteral("CreateWindow_%1();").arg(further.cppName()));
    }
    writer.line(QStringLiteral("On_MainWindow_Create();  // main create"));
    if (window.bag().flag(QStringLiteral("visible"), true)) {
        writer.line(QStringLiteral("ShowWindow(g_hWndMain, %1); UpdateWindow(g_hWndMain);")
                        .arg(showCommand(window)));
    } else {
        writer.line(QStringLiteral("if (!VL_HasVisibleWindow()) PostQuitMessage(__vl_exitCode);"));
    }
    writer.line(QStringLiteral("int __vl_result = VL_RunMessageLoop();"));
    writer.line(QStringLiteral(
        "VL_Network_ShutdownAll(); VL_Thread_CleanupAll(); VL_DragDrop_UnregisterAll();"));
    writer.line(QStringLiteral("VL_ShutdownGdiPlus();"));
    writer.line(QStringLiteral("return __vl_result;"));
}

void Generation::writeSelfDrawnColors(CodeWriter &writer, const DesignedWindow &window)
{
    const PropertyBag bag = window.bag();
    writer.line(QStringLiteral("g_vlwinSelfDrawActive = true;"));
    writer.line(QStringLiteral("g_vlwinTitleBarColor = %1;").arg(rgb(titleColor(bag))));
    writer.line(QStringLiteral("g_vlwinClientBgColor = %1;").arg(rgb(clientColor(bag))));
    writer.line(QStringLiteral("g_vlwinWndTitle = %1;").arg(wide(windowTitle(window))));
}

void Generation::writeStartOfUserCode(CodeWriter &writer)
{
    const FunctionSignature *function = findFunction(kMainFunction);
    if (!function)
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
    if (!number || !startWindow().isImplicit()) {
        writer.line(call + QLatin1Char(';'));
        return;
    }
    writer.line(QLatin1String("__vl_exitCode = (int)(intptr_t)") + call + QLatin1Char(';'));
}
