// Combo boxes, list boxes, trees, list views and tab widgets.
#include "codegen/control_writer.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace DesignCode;

namespace {

// A tree of a design is bounded in depth; a form is not to be trusted.
const int kDeepestTree = 60;

QString alignNumber(const QJsonValue &value)
{
    const QString word = value.toString();
    if (word == QStringLiteral("居中") || word == QLatin1String("center"))
        return QStringLiteral("L\"\\u5C45\\u4E2D\"");
    if (word == QStringLiteral("右对齐") || word == QLatin1String("right"))
        return QStringLiteral("L\"\\u53F3\\u5BF9\\u9F50\"");
    return QString();
}

QJsonArray arrayOf(const PropertyBag &bag, const QString &key)
{
    return QJsonDocument::fromJson(bag.text(key).toUtf8()).array();
}

// Items: one a line; ';' separates them when there is a single line.
QString itemsText(const PropertyBag &bag)
{
    return bag.text(QStringLiteral("items")).trimmed();
}

int treeNodes(CodeWriter &writer, const QString &tree, const QJsonArray &items,
              const QString &parent, int depth, int number)
{
    for (const QJsonValue &value : items) {
        const QJsonObject item = value.toObject();
        const QString text = wide(item.value(QLatin1String("text")).toString());
        const QJsonArray children = item.value(QLatin1String("children")).toArray();
        const QString added =
            parent.isEmpty()
                ? QStringLiteral("VL_TreeView_AddRoot(%1, ").arg(tree) + text + QLatin1Char(')')
                : QStringLiteral("VL_TreeView_AddChild(%1, %2, ").arg(tree, parent) + text +
                      QLatin1Char(')');
        if (children.isEmpty() || depth >= kDeepestTree) {
            writer.line(added + QLatin1Char(';'));
            continue;
        }
        const QString node = QStringLiteral("_tvP%1").arg(number++);
        writer.open(QStringLiteral("{"));
        writer.line(QStringLiteral("HTREEITEM %1 = (HTREEITEM)").arg(node) + added +
                    QLatin1Char(';'));
        number = treeNodes(writer, tree, children, node, depth + 1, number);
        if (item.value(QLatin1String("expanded")).toBool(true))
            writer.line(QStringLiteral("VL_TreeView_Expand(%1, %2);").arg(tree, node));
        writer.close();
    }
    return number;
}

} // namespace

void ControlWriter::writeComboBox()
{
    const QString kind = m_bag.text(QStringLiteral("dropDownStyle"));
    const bool editable =
        m_bag.flag(QStringLiteral("editable")) || kind == QStringLiteral("下拉组合");
    const bool simple = kind == QStringLiteral("简单");
    create(QStringLiteral("L\"COMBOBOX\""), QString(),
           flags({simple     ? QStringLiteral("CBS_SIMPLE | CBS_AUTOHSCROLL")
                  : editable ? QStringLiteral("CBS_DROPDOWN | CBS_AUTOHSCROLL")
                             : QStringLiteral("CBS_DROPDOWNLIST"),
                  m_bag.flag(QStringLiteral("sorted")) ? QStringLiteral("CBS_SORT") : QString(),
                  QStringLiteral("WS_VSCROLL")}));
    if (!simple) {
        call(QStringLiteral("VL_PrepareComboBox"),
             QStringLiteral("%1, %2")
                 .arg(m_control.place.height())
                 .arg(m_bag.number(QStringLiteral("maxDropDownItems"), 8)));
    }
    if (selfDrawn())
        call(QStringLiteral("VL_VlwinApplyComboNoTheme"));
    const QString items = itemsText(m_bag);
    if (!items.isEmpty())
        call(QStringLiteral("VL_FillItems"), wide(items));
    const int selected = m_bag.number(QStringLiteral("selectedIndex"), -1);
    if (selected >= 0)
        call(QStringLiteral("VL_SetSelectedIndex"), QString::number(selected));
    else if (m_bag.has(QStringLiteral("selectedText")))
        call(QStringLiteral("VL_SelectText"), wide(m_bag.text(QStringLiteral("selectedText"))));
    else if (editable && m_bag.has(QStringLiteral("text")))
        call(QStringLiteral("VL_SetText"), wide(m_bag.text(QStringLiteral("text"))));
}

void ControlWriter::writeListBox()
{
    QString extended;
    const QString border = ownedBorderStyle(&extended);
    const QString mode = m_bag.text(QStringLiteral("selectionMode"));
    const int columnWidth = m_bag.number(QStringLiteral("columnWidth"));
    const bool across = m_bag.flag(QStringLiteral("horizontalScroll"));
    create(QStringLiteral("L\"LISTBOX\""), QString(),
           flags({border, QStringLiteral("WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT"),
                  mode == QStringLiteral("多选")       ? QStringLiteral("LBS_MULTIPLESEL")
                  : mode == QStringLiteral("扩展选择") ? QStringLiteral("LBS_EXTENDEDSEL")
                  : mode == QStringLiteral("无")       ? QStringLiteral("LBS_NOSEL")
                                                       : QString(),
                  m_bag.flag(QStringLiteral("sorted")) ? QStringLiteral("LBS_SORT") : QString(),
                  columnWidth > 0 ? QStringLiteral("LBS_MULTICOLUMN") : QString(),
                  across || columnWidth > 0 ? QStringLiteral("WS_HSCROLL") : QString()}),
           extended);
    const int itemHeight = m_bag.number(QStringLiteral("itemHeight"));
    if (itemHeight > 0 || columnWidth > 0 || across) {
        call(QStringLiteral("VL_PrepareListBox"),
             QStringLiteral("%1, %2, %3").arg(itemHeight).arg(columnWidth).arg(boolean(across)));
    }
    const QString items = itemsText(m_bag);
    if (!items.isEmpty())
        call(QStringLiteral("VL_FillItems"), wide(items));
    const int selected = m_bag.number(QStringLiteral("selectedIndex"), -1);
    if (selected >= 0)
        call(QStringLiteral("VL_SetSelectedIndex"), QString::number(selected));
}

void ControlWriter::writeTreeView()
{
    const auto style = [this](const char *key, bool fallback, const char *flag) {
        return m_bag.flag(QLatin1String(key), fallback) ? QLatin1String(flag) : QLatin1String();
    };
    create(QStringLiteral("WC_TREEVIEWW"), QString(),
           flags({QStringLiteral("TVS_SHOWSELALWAYS"), style("showLines", true, "TVS_HASLINES"),
                  style("showButtons", true, "TVS_HASBUTTONS"),
                  style("rootLines", true, "TVS_LINESATROOT"),
                  style("editLabels", false, "TVS_EDITLABELS"),
                  style("fullRowSelect", false, "TVS_FULLROWSELECT")}),
           QStringLiteral("WS_EX_CLIENTEDGE"));
    // This style only works when it is set after the creation.
    if (m_bag.flag(QStringLiteral("checkBoxes"))) {
        m_writer.line(QStringLiteral("SetWindowLongPtrW(%1, GWL_STYLE, GetWindowLongPtrW(%1, "
                                     "GWL_STYLE) | TVS_CHECKBOXES);")
                          .arg(handle()));
    }
    call(QStringLiteral("VL_PrepareTreeView"));
    if (m_bag.flag(QStringLiteral("autoSyncCheckbox")))
        call(QStringLiteral("VL_TreeView_SetAutoSyncCheckbox"), QStringLiteral("true"));
    treeNodes(m_writer, handle(), arrayOf(m_bag, QStringLiteral("treeViewItems")), QString(), 0, 0);
}

void ControlWriter::writeListView()
{
    // A table of the self-drawn designer is always one with columns.
    const QString mode = selfDrawn()
                             ? QStringLiteral("详细")
                             : m_bag.text(QStringLiteral("viewMode"), QStringLiteral("图标"));
    const bool details = mode == QStringLiteral("详细") ||
                         mode.compare(QLatin1String("report"), Qt::CaseInsensitive) == 0;
    const QString view = details                            ? QStringLiteral("LVS_REPORT")
                         : mode == QStringLiteral("小图标") ? QStringLiteral("LVS_SMALLICON")
                         : mode == QStringLiteral("列表")   ? QStringLiteral("LVS_LIST")
                                                            : QStringLiteral("LVS_ICON");
    create(QStringLiteral("WC_LISTVIEWW"), QString(),
           flags({QStringLiteral("LVS_SHOWSELALWAYS"), view,
                  m_bag.flag(QStringLiteral("editLabels")) ? QStringLiteral("LVS_EDITLABELS")
                                                           : QString(),
                  m_bag.flag(QStringLiteral("multiSelect")) ? QString()
                                                            : QStringLiteral("LVS_SINGLESEL"),
                  m_bag.flag(QStringLiteral("headerVisible"), true)
                      ? QString()
                      : QStringLiteral("LVS_NOCOLUMNHEADER")}),
           selfDrawn() ? QStringLiteral("0") : QStringLiteral("WS_EX_CLIENTEDGE"));
    QStringList extended{QStringLiteral("LVS_EX_DOUBLEBUFFER")};
    if (m_bag.flag(QStringLiteral("fullRowSelect"), true))
        extended << QStringLiteral("LVS_EX_FULLROWSELECT");
    if (m_bag.flag(QStringLiteral("gridLines")))
        extended << QStringLiteral("LVS_EX_GRIDLINES");
    if (m_bag.flag(QStringLiteral("checkBoxes")))
        extended << QStringLiteral("LVS_EX_CHECKBOXES");
    const QString set = extended.join(QLatin1String(" | "));
    m_writer.line(QStringLiteral("ListView_SetExtendedListViewStyle(%1, %2);").arg(handle(), set));
    call(QStringLiteral("VL_PrepareListView"),
         QStringLiteral("%1, %2")
             .arg(qBound(16, m_bag.number(QStringLiteral("iconWidth"), 32), 256))
             .arg(qBound(16, m_bag.number(QStringLiteral("iconHeight"), 32), 256)));
    writeHeaderColors();
    writeTableRows();
}

void ControlWriter::writeHeaderColors()
{
    if (!selfDrawn()) {
        setColorNumber(QStringLiteral("VL_LvHdrBg"), QStringLiteral("headerBackColor"));
        setColorNumber(QStringLiteral("VL_LvHdrFg"), QStringLiteral("headerForeColor"));
        return;
    }
    const auto color = [this](const char *key) {
        const auto found = m_bag.color(QLatin1String(key));
        return found ? QLatin1String("(int)") + rgb(*found) : QStringLiteral("-1");
    };
    call(QStringLiteral("VL_VlwinPrepareTable"),
         boolean(m_bag.flag(QStringLiteral("rowHeaderVisible"))) +
             QStringLiteral(", %1, ").arg(m_bag.number(QStringLiteral("rowHeaderWidth"), 50)) +
             wide(m_bag.text(QStringLiteral("rowHeaderTitle"))) + QLatin1String(", ") +
             color("headerBackColor") + QLatin1String(", ") + color("headerForeColor"));
}

void ControlWriter::writeTableRows()
{
    const QJsonArray headers = arrayOf(m_bag, QStringLiteral("listViewHeaders"));
    for (const QJsonValue &value : headers) {
        const QJsonObject header = value.toObject();
        const QString align = alignNumber(header.value(QLatin1String("align")));
        call(QStringLiteral("VL_ListView_AddColumn"),
             wide(header.value(QLatin1String("title")).toString()) +
                 QStringLiteral(", %1").arg(header.value(QLatin1String("width")).toInt(100)) +
                 (align.isEmpty() ? QString() : QLatin1String(", ") + align));
    }
    const QJsonArray rows = arrayOf(m_bag, QStringLiteral("listViewItems"));
    for (const QJsonValue &value : rows) {
        const QJsonArray columns = value.toArray();
        QStringList cells;
        for (const QJsonValue &cell : columns)
            cells << QLatin1String("std::wstring(") +
                         wide(cell.isString() ? cell.toString() : cell.toVariant().toString()) +
                         QLatin1Char(')');
        if (!cells.isEmpty())
            call(QStringLiteral("VL_ListView_AddRow"),
                 QLatin1Char('{') + cells.join(QLatin1String(", ")) + QLatin1Char('}'));
    }
}

void ControlWriter::writeTabWidget()
{
    const QString style = m_bag.text(QStringLiteral("tabStyle"), QStringLiteral("选项卡式"));
    const QString position = m_bag.text(QStringLiteral("tabPosition"));
    const auto flag = [this](const char *key, const char *flagText) {
        return m_bag.flag(QLatin1String(key)) ? QLatin1String(flagText) : QLatin1String();
    };
    const QString side = position == QStringLiteral("下方") ? QStringLiteral("TCS_BOTTOM")
                         : position == QStringLiteral("左侧")
                             ? QStringLiteral("TCS_VERTICAL | TCS_MULTILINE")
                         : position == QStringLiteral("右侧")
                             ? QStringLiteral("TCS_VERTICAL | TCS_MULTILINE | TCS_RIGHT")
                             : QString();
    create(QStringLiteral("WC_TABCONTROLW"), QString(),
           flags({QStringLiteral("WS_CLIPCHILDREN"),
                  style == QStringLiteral("选项卡式")   ? QStringLiteral("TCS_TABS")
                  : style == QStringLiteral("平面按钮") ? QStringLiteral("TCS_BUTTONS | "
                                                                         "TCS_FLATBUTTONS")
                                                        : QStringLiteral("TCS_BUTTONS"),
                  side, flag("hotTrack", "TCS_HOTTRACK"), flag("multiLine", "TCS_MULTILINE"),
                  flag("fixedWidth", "TCS_FIXEDWIDTH"), flag("rightJustify", "TCS_RIGHTJUSTIFY"),
                  flag("showTooltips", "TCS_TOOLTIPS")}),
           m_bag.flag(QStringLiteral("border")) ? QStringLiteral("WS_EX_CLIENTEDGE") : QString());
    QString titles = m_bag.text(QStringLiteral("tabTitles"));
    if (titles.isEmpty())
        titles = m_bag.text(QStringLiteral("tabTitlesStr"));
    const QStringList names = titles.split(QLatin1Char(';'));
    const int count = qBound(0, m_bag.number(QStringLiteral("tabCount"), 2), 200);
    for (int i = 0; i < count; ++i) {
        const QString title = names.value(i).trimmed();
        call(QStringLiteral("VL_Tab_AddTab"),
             wide(title.isEmpty() ? QStringLiteral("页面%1").arg(i + 1) : title));
    }
    const int paddingX = m_bag.number(QStringLiteral("tabPaddingX"));
    const int paddingY = m_bag.number(QStringLiteral("tabPaddingY"));
    if (paddingX > 0 || paddingY > 0)
        call(QStringLiteral("VL_Tab_SetPadding"),
             QStringLiteral("%1, %2").arg(paddingX).arg(paddingY));
    const int minWidth = m_bag.number(QStringLiteral("tabMinWidth"));
    if (minWidth > 0)
        call(QStringLiteral("VL_Tab_SetMinTabWidth"), QString::number(minWidth));
    const int current = m_bag.number(QStringLiteral("currentIndex"));
    if (count > 0)
        call(QStringLiteral("VL_Tab_SetCurrentTab"),
             QString::number(qBound(0, current, count - 1)));
}
