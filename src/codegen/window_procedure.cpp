// Window procedures: which message of Windows runs which handler of the program.
#include "codegen/component_tables.h"
#include "codegen/generation.h"

#include <QFile>

namespace {

// The lines of an event's code with its handler and the control's handle filled in.
QStringList eventLines(const ComponentEvent &event, const QString &handler, const QString &handle)
{
    QStringList lines;
    for (QString line : event.lines) {
        line.replace(QLatin1String("%call"), handler);
        line.replace(QLatin1String("%h"), handle);
        lines << line;
    }
    return lines;
}

// `if (test) statement;` or `if (test) {` with all lines; lines that end a case by `return` are no
// different.
void writeGuarded(CodeWriter &writer, const QString &test, const QStringList &lines)
{
    if (lines.size() == 1) {
        writer.line(QLatin1String("if (") + test + QLatin1String(") ") + lines.first());
        return;
    }
    writer.open(QLatin1String("if (") + test + QLatin1String(") {"));
    for (const QString &line : lines)
        writer.line(line);
    writer.close();
}

QString codeTest(const QString &variable, const QStringList &codes)
{
    QStringList tests;
    for (const QString &code : codes)
        tests << variable + QLatin1String(" == ") + code;
    return tests.join(QLatin1String(" || "));
}

// The text of a resource with "%W" as the stem of the window's handlers.
QString messageCases(const QString &name, const QString &stem)
{
    QFile file(QStringLiteral(":/codegen/") + name);
    QString text = file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    return text.replace(QLatin1String("%W"), stem);
}

} // namespace

QString Generation::windowProcedure(const DesignedWindow &window) const
{
    CodeWriter writer;
    writer.open(QStringLiteral("LRESULT CALLBACK WndProc%1(HWND hwnd, UINT msg, WPARAM wParam, "
                               "LPARAM lParam) {")
                    .arg(window.isStart() ? QString() : QLatin1Char('_') + window.cppName()));
    if (!window.isImplicit()) {
        writer.line(QStringLiteral("LRESULT _vlResult = 0;"));
        if (window.isSelfDrawn()) {
            writer.line(QStringLiteral("if (VL_VlwinMessage(hwnd, msg, wParam, lParam, "
                                       "&_vlResult)) return _vlResult;"));
        }
        writer.line(QStringLiteral("if (VL_WindowMessage(hwnd, msg, wParam, lParam, &_vlResult)) "
                                   "return _vlResult;"));
    }
    writeEarlyEvents(writer, window);
    writer.line(QStringLiteral("switch (msg) {"));
    writeCommandMessage(writer, window);
    if (!window.isImplicit()) {
        writeNotifyMessage(writer, window);
        writeScrollMessages(writer, window);
        writeMenuMessage(writer, window);
    }
    writer.raw(messageCases(QStringLiteral("window_messages.inc"), window.cppName()));
    if (!window.isImplicit() || answers(window, QStringLiteral("自定义事件")) ||
        answers(window, QStringLiteral("接收文本")))
        writer.raw(messageCases(QStringLiteral("designed_window_messages.inc"), window.cppName()));
    writeCloseMessages(writer, window);
    writer.line(QStringLiteral("}"));
    writer.line(QStringLiteral("return DefWindowProcW(hwnd, msg, wParam, lParam);"));
    writer.close();
    writer.blankLine();
    return writer.takeText();
}

void Generation::writeCommandMessage(CodeWriter &writer, const DesignedWindow &window) const
{
    writer.open(QStringLiteral("case WM_COMMAND: {"));
    writer.line(QStringLiteral("WORD notifyCode = HIWORD(wParam);"));
    writer.line(QStringLiteral("WORD ctrlId = LOWORD(wParam);"));
    writer.line(QStringLiteral("(void)notifyCode;"));
    if (!window.controls().isEmpty())
        writer.line(QStringLiteral("if (GetPropW(hwnd, L\"VL_Creating\")) break;"));
    writer.line(QStringLiteral("switch(ctrlId) {"));
    for (const DesignedControl &control : window.controls()) {
        bool any = false;
        for (const ComponentEvent *event : eventsOf(control)) {
            if (event->source != ComponentEvent::Source::Command)
                continue;
            if (!any)
                writer.open(QStringLiteral("case %1:").arg(control.idText));
            any = true;
            writeGuarded(writer, codeTest(QStringLiteral("notifyCode"), event->codes),
                         eventLines(*event, handlerName(control.stem, *event), control.handle));
        }
        if (any)
            writer.close(QStringLiteral("    break;"));
    }
    writer.line(QStringLiteral("case 0: (void)ctrlId; break;"));
    writer.line(QStringLiteral("default: break;"));
    writer.line(QStringLiteral("}"));
    writer.line(QStringLiteral("break;"));
    writer.close();
}

void Generation::writeNotifyMessage(CodeWriter &writer, const DesignedWindow &window) const
{
    writer.open(QStringLiteral("case WM_NOTIFY: {"));
    writer.line(QStringLiteral("NMHDR* nmhdr = (NMHDR*)lParam;"));
    writer.line(QStringLiteral("if (!nmhdr || GetPropW(hwnd, L\"VL_Creating\")) break;"));
    if (window.isSelfDrawn() && uses(VL::ListView)) {
        writer.open(QStringLiteral("if (nmhdr->code == NM_CUSTOMDRAW) {"));
        writer.line(QStringLiteral("LRESULT _vlDrawn = VL_VlwinListViewNmCustomDraw(lParam);"));
        writer.line(QStringLiteral("if (_vlDrawn) return _vlDrawn;"));
        writer.close();
    }
    writer.line(QStringLiteral("switch(nmhdr->idFrom) {"));
    for (const DesignedControl &control : window.controls())
        writeNotifyCase(writer, control);
    writer.line(QStringLiteral("case 0: (void)nmhdr; break;"));
    writer.line(QStringLiteral("}"));
    writer.line(QStringLiteral("break;"));
    writer.close();
}

void Generation::writeNotifyCase(CodeWriter &writer, const DesignedControl &control) const
{
    const int type = control.component.type;
    if (type != VL::TabWidget && type != VL::TreeView && type != VL::ListView)
        return;
    CodeWriter body(writer.level() + 1);
    const QString code = QStringLiteral("nmhdr->code");
    if (type == VL::TreeView) {
        writeGuarded(body, codeTest(code, {QStringLiteral("NM_CUSTOMDRAW")}),
                     {QStringLiteral("return VL_Subclass_HandleTreeViewCustomDraw(lParam);")});
    }
    if (type == VL::TabWidget) {
        writeGuarded(body, codeTest(code, {QStringLiteral("TCN_SELCHANGE")}),
                     {QStringLiteral("VL_Tab_OnSelChange(nmhdr->hwndFrom);")});
    }
    for (const ComponentEvent *event : eventsOf(control)) {
        if (event->source != ComponentEvent::Source::Notify)
            continue;
        writeGuarded(body, codeTest(code, event->codes),
                     eventLines(*event, handlerName(control.stem, *event), control.handle));
    }
    if (body.text().isEmpty())
        return;
    writer.line(QStringLiteral("case %1:").arg(control.idText));
    writer.raw(body.takeText());
    writer.line(QStringLiteral("    break;"));
}

void Generation::writeScrollMessages(CodeWriter &writer, const DesignedWindow &window) const
{
    CodeWriter body(writer.level() + 1);
    for (const DesignedControl &control : window.controls()) {
        if (control.component.type != VL::Slider)
            continue;
        QStringList lines;
        for (const ComponentEvent *event : eventsOf(control)) {
            if (event->source != ComponentEvent::Source::Scroll)
                continue;
            const QString call =
                eventLines(*event, handlerName(control.stem, *event), control.handle).first();
            // The same value comes while the thumb is dragged and again when it is let go; without
            // tracking only the latter counts.
            const bool tracks = control.bag().flag(QStringLiteral("tracking"), true);
            const QString test = event->handler != QLatin1String("ValueChange")
                                     ? event->codes.first()
                                     : QLatin1String("_vlTbCode != TB_ENDTRACK && _vlTbCode != ") +
                                           (tracks ? QLatin1String("TB_THUMBPOSITION")
                                                   : QLatin1String("TB_THUMBTRACK"));
            lines << (test == QLatin1String("true")
                          ? call
                          : QLatin1String("if (") + test + QLatin1String(") ") + call);
        }
        if (lines.isEmpty())
            continue;
        body.open(QStringLiteral("if (ctrlHwnd == %1) {").arg(control.handle));
        body.line(QStringLiteral("UINT _vlTbCode = (UINT)LOWORD(wParam); (void)_vlTbCode;"));
        body.line(QStringLiteral("int pos = VL_GetValue(%1);").arg(control.handle));
        for (const QString &line : qAsConst(lines))
            body.line(line);
        body.line(QStringLiteral("return 0;"));
        body.close();
    }
    if (body.text().isEmpty())
        return;
    writer.line(QStringLiteral("case WM_HSCROLL:"));
    writer.open(QStringLiteral("case WM_VSCROLL: {"));
    writer.line(QStringLiteral("HWND ctrlHwnd = (HWND)lParam;"));
    writer.raw(body.takeText());
    writer.line(QStringLiteral("break;"));
    writer.close();
}

bool Generation::answers(const DesignedWindow &window, const QString &word) const
{
    const ComponentEvent *event = ComponentTables::instance().windowEvent(word);
    return event && handlerOf(window, *event);
}

// Events beside others of the same message, in programs that answer them.
void Generation::writeEarlyEvents(CodeWriter &writer, const DesignedWindow &window) const
{
    const QString on = QLatin1String("On_") + window.cppName();
    if (answers(window, QStringLiteral("单击")))
        writer.line(QStringLiteral("if (msg == WM_LBUTTONUP) %1_Click();").arg(on));
    if (answers(window, QStringLiteral("双击")))
        writer.line(QStringLiteral("if (msg == WM_LBUTTONDBLCLK) %1_DoubleClick();").arg(on));
    if (answers(window, QStringLiteral("鼠标按住"))) {
        writer.line(QStringLiteral("const UINT_PTR _vlHold = 0x7A11;"));
        writer.line(
            QStringLiteral("if (msg == WM_LBUTTONDOWN) SetTimer(hwnd, _vlHold, 100, NULL);"));
        writer.line(QStringLiteral("if (msg == WM_LBUTTONUP) KillTimer(hwnd, _vlHold);"));
        writer.open(QStringLiteral("if (msg == WM_TIMER && wParam == _vlHold) {"));
        writer.line(QStringLiteral("POINT _vlAt = VL_CursorIn(hwnd);"));
        writer.line(QStringLiteral("if (GetKeyState(VK_LBUTTON) < 0) "
                                   "%1_MouseHold((int)_vlAt.x, (int)_vlAt.y, 0);")
                        .arg(on));
        writer.line(QStringLiteral("else KillTimer(hwnd, _vlHold);"));
        writer.line(QStringLiteral("return 0;"));
        writer.close();
    }
    if (answers(window, QStringLiteral("绘制"))) {
        writer.open(QStringLiteral("if (msg == WM_PAINT) {"));
        writer.line(
            QStringLiteral("LRESULT _vlPainted = DefWindowProcW(hwnd, msg, wParam, lParam);"));
        writer.line(QStringLiteral("%1_Paint();").arg(on));
        writer.line(QStringLiteral("return _vlPainted;"));
        writer.close();
    }
}

void Generation::writeCloseMessages(CodeWriter &writer, const DesignedWindow &window) const
{
    const QString on = QLatin1String("On_") + window.cppName();
    writer.line(QStringLiteral("case WM_CLOSE:"));
    writer.line(QStringLiteral("    if (!%1_CloseQuery()) return 0;").arg(on));
    if (!window.isStart()) {
        // Closing hides; a program of which nothing can be seen any more ends.
        writer.line(QStringLiteral("    %1_Close();").arg(on));
        writer.line(QStringLiteral("    ShowWindow(hwnd, SW_HIDE);"));
        // Shown again it is as new.
        writer.line(QStringLiteral("    g_windowRegistry[%1].createEventCalled = false;")
                        .arg(CodeWriter::wideString(window.name())));
        writer.line(QStringLiteral("    if (!VL_HasVisibleWindow()) DestroyWindow(g_hWndMain);"));
        writer.line(QStringLiteral("    return 0;"));
        writer.line(QStringLiteral("case WM_DESTROY:"));
        writer.line(QStringLiteral("    %1 = NULL;").arg(window.handle()));
        writer.line(QStringLiteral("    break;"));
        return;
    }
    writer.line(QStringLiteral("    break;"));
    writer.line(QStringLiteral("case WM_DESTROY:"));
    writer.line(QStringLiteral("    %1_Close();").arg(on));
    writer.line(QStringLiteral("    PostQuitMessage(0);"));
    writer.line(QStringLiteral("    return 0;"));
}
