// The right-click menus that the designer gave to windows and components.
#include "codegen/generation.h"

#include "codegen/names.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

// A menu's depth and size are bounded; a form is not to be trusted.
const int kDeepestMenu = 20;
const int kMostItems = 2000;

// What the runtime takes for an icon: a file beside the program, or "#" and a resource number.
QString iconText(const QJsonObject &icon)
{
    const QString mode = icon.value(QLatin1String("mode")).toString();
    if (mode == QLatin1String("embed"))
        return QLatin1Char('#') + QString::number(icon.value(QLatin1String("embedId")).toInt());
    const QString file = icon.value(QLatin1String("fileName")).toString();
    return mode == QLatin1String("resource") && !file.isEmpty() ? QLatin1String("resource/") + file
                                                                : QString();
}

QString wide(const QString &text)
{
    return QLatin1String("L\"") + CodeWriter::escaped(text) + QLatin1Char('"');
}

} // namespace

void Generation::collectMenus()
{
    for (const DesignedWindow &window : m_windows.all()) {
        addMenu(window, window.component(), window.cppName(), window.handle());
        for (const DesignedControl &control : window.controls()) {
            if (control.hasWindow())
                addMenu(window, control.component, control.stem, control.handle);
        }
    }
}

void Generation::addMenu(const DesignedWindow &window, const VL::DesignComponent &component,
                         const QString &stem, const QString &handle)
{
    const QString json = component.properties.value(QStringLiteral("designContextMenu")).toString();
    const QJsonArray items =
        QJsonDocument::fromJson(json.toUtf8()).object().value(QLatin1String("items")).toArray();
    if (items.isEmpty())
        return;
    DesignMenu menu;
    menu.window = &window;
    menu.handle = handle;
    menu.allowed = PropertyBag(component).flag(QStringLiteral("contextMenuEnabled"), true);
    menu.isWindow = handle == window.handle();
    menu.function =
        (window.isStart() ? QLatin1String("VL_DesignCtx_Main_") : QLatin1String("VL_DesignCtx_S")) +
        QString::number(m_menus.size());
    CodeWriter writer(1);
    int number = 0;
    addMenuItems(menu, items, stem, QStringLiteral("r"), writer, number, 0);
    menu.body = writer.takeText();
    m_menus << menu;
}

void Generation::addMenuItems(DesignMenu &menu, const QJsonArray &items, const QString &stem,
                              const QString &parent, CodeWriter &writer, int &number, int depth)
{
    for (const QJsonValue &value : items) {
        const QJsonObject item = value.toObject();
        const QString kind = item.value(QLatin1String("kind")).toString();
        const QString text = wide(item.value(QLatin1String("text")).toString());
        if (number >= kMostItems)
            return;
        const int id = ++number;
        const QString icon = wide(iconText(item.value(QLatin1String("icon")).toObject()));
        if (kind == QLatin1String("separator")) {
            writer.line(QStringLiteral("VL_ContextMenu_AddSeparator((intptr_t)%1, %2);")
                            .arg(parent)
                            .arg(id));
        } else if (kind == QLatin1String("submenu") && depth < kDeepestMenu) {
            writer.open(QStringLiteral("{"));
            const QString sub =
                QStringLiteral("_vlSub") + (depth ? QString::number(depth) : QString());
            writer.line(QStringLiteral("intptr_t %1 = VL_ContextMenu_AddSubmenu((intptr_t)%2, ")
                            .arg(sub, parent) +
                        text + QLatin1String(");"));
            addMenuItems(menu, item.value(QLatin1String("items")).toArray(), stem, sub, writer,
                         number, depth + 1);
            writer.close();
        } else if (kind == QLatin1String("item")) {
            const QString identifier = item.value(QLatin1String("handler")).toString().trimmed();
            if (identifier.isEmpty())
                continue;
            const QString key = stem + QLatin1String("_Ctx_") + identifier;
            const QString handler =
                QLatin1String("On_") + stem + QLatin1String("_Ctx_") + Names::sanitize(identifier);
            if (!m_menuHandlers.contains(key)) {
                m_menuHandlers.insert(key);
                menu.items << DesignMenuItem{key, handler};
            }
            writer.line(QLatin1String("VL_ContextMenu_AddItem((intptr_t)") + parent +
                        QLatin1String(", ") + QString::number(id) + QLatin1String(", ") + text +
                        QLatin1String(", [](intptr_t _vlH,int _vlC){ (void)_vlH;(void)_vlC; ") +
                        handler + QLatin1String("(); }, ") + icon + QLatin1String(", 0);"));
        }
    }
}

// Functions of the program for menu items that no design has.
void Generation::warnOfMenuHandlers()
{
    for (auto it = m_handlers.cbegin(); it != m_handlers.cend(); ++it) {
        if (it->event || !it->node || m_menuHandlers.contains(it.key()))
            continue;
        warnings << QStringLiteral("第%1行：「%2」没有对应的右键菜单项，这个函数不会被调用。")
                        .arg(it->node->line)
                        .arg(it->node->value);
    }
}

QString Generation::menuFunctions(const DesignedWindow &window) const
{
    CodeWriter writer;
    for (const DesignMenu &menu : m_menus) {
        if (menu.window != &window)
            continue;
        writer.open(QStringLiteral("static intptr_t %1() {").arg(menu.function));
        writer.line(QStringLiteral("static intptr_t _vlRid = 0;"));
        writer.line(QStringLiteral("if (_vlRid) return _vlRid;"));
        writer.line(QStringLiteral("_vlRid = VL_ContextMenu_Create();"));
        writer.line(QStringLiteral("if (!_vlRid) return 0;"));
        writer.line(QStringLiteral("intptr_t r = _vlRid;"));
        writer.raw(menu.body);
        writer.line(QStringLiteral("return _vlRid;"));
        writer.close();
    }
    writer.open(window.isStart()
                    ? QStringLiteral("static void VL_ApplyDesignContextMenuBinds_Main(HWND "
                                     "hwndMain) {")
                    : QStringLiteral("static void VL_ApplyDesignContextMenuBinds_Sub_%1(HWND "
                                     "hwndMain) {")
                          .arg(window.cppName()));
    writer.line(QStringLiteral("(void)hwndMain;"));
    for (const DesignMenu &menu : m_menus) {
        if (menu.window == &window && !menu.isWindow) {
            writer.line(QStringLiteral("VL_ContextMenu_Bind((intptr_t)%1, %2(), true);")
                            .arg(menu.handle, menu.function));
        }
    }
    writer.close();
    writer.blankLine();
    return writer.takeText();
}

void Generation::writeMenuMessage(CodeWriter &writer, const DesignedWindow &window) const
{
    bool any = false;
    for (const DesignMenu &menu : m_menus) {
        if (menu.window != &window)
            continue;
        if (!any) {
            writer.open(QStringLiteral("case WM_CONTEXTMENU: {"));
            writer.line(QStringLiteral("HWND _vlTgt = (HWND)wParam;"));
            writer.line(QStringLiteral("POINT _vlPt = {(int)(short)LOWORD(lParam), "
                                       "(int)(short)HIWORD(lParam)};"));
            writer.line(QStringLiteral("if (lParam == (LPARAM)-1) GetCursorPos(&_vlPt);"));
        }
        any = true;
        const QString target = menu.isWindow ? QStringLiteral("hwnd") : menu.handle;
        writer.open(QStringLiteral("if (_vlTgt == %1 && "
                                   "VL_ContextMenu_IsDesignContextAllowed((intptr_t)_vlTgt)) {")
                        .arg(target));
        writer.line(QStringLiteral("intptr_t _vlRoot = %1();").arg(menu.function));
        writer.open(QStringLiteral("if (_vlRoot) {"));
        writer.line(QStringLiteral(
            "VL_ContextMenu_InvokeDesignPreTrackCallback((intptr_t)_vlTgt, _vlRoot);"));
        writer.line(QStringLiteral("int _vlSel = (int)VL_ContextMenu_TrackAt((intptr_t)hwnd, "
                                   "_vlRoot, _vlPt.x, _vlPt.y);"));
        writer.line(QStringLiteral("if (_vlSel) VL_ContextMenu_InvokeItemCallback(_vlRoot, "
                                   "(intptr_t)_vlTgt, _vlSel);"));
        writer.line(QStringLiteral("return 0;"));
        writer.close();
        writer.close();
    }
    if (!any)
        return;
    writer.line(QStringLiteral("break;"));
    writer.close();
}

void Generation::writeMenuPermissions(CodeWriter &writer, const DesignedWindow &window) const
{
    for (const DesignMenu &menu : m_menus) {
        if (menu.window == &window) {
            writer.line(QStringLiteral("VL_ContextMenu_SetDesignContextAllowed((intptr_t)%1, %2);")
                            .arg(menu.isWindow ? QStringLiteral("hwnd") : menu.handle,
                                 menu.allowed ? QStringLiteral("true") : QStringLiteral("false")));
        }
    }
}

void Generation::writeMenuHandlers(CodeWriter &writer)
{
    for (const DesignMenu &menu : qAsConst(m_menus)) {
        for (const DesignMenuItem &item : menu.items) {
            writer.open(QStringLiteral("void %1() {").arg(item.handler));
            const EventHandler handler = m_handlers.value(item.key);
            if (handler.node) {
                FunctionSignature signature = readSignature(handler.node, false);
                signature.returnCppType = QStringLiteral("void");
                writeFunctionBody(writer, handler.node, signature);
            }
            writer.close();
            writer.blankLine();
        }
    }
}
