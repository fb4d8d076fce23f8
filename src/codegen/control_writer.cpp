#include "codegen/control_writer.h"

#include "designer/model/component_types.h"

#include <QHash>

namespace DesignCode {

QString wide(const QString &text)
{
    return QLatin1String("L\"") + CodeWriter::escaped(text) + QLatin1Char('"');
}

QString rgb(int color)
{
    return QStringLiteral("RGB(%1, %2, %3)")
        .arg(color & 0xFF)
        .arg((color >> 8) & 0xFF)
        .arg((color >> 16) & 0xFF);
}

QString boolean(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString flags(const QStringList &parts)
{
    QString text;
    for (const QString &part : parts) {
        if (!part.isEmpty())
            text += QLatin1String(" | ") + part;
    }
    return text;
}

} // namespace DesignCode

namespace {

using namespace DesignCode;

const int kWhite = 0xFFFFFF;
const int kBlack = 0;

// What the designer writes for a colour that nobody chose: white for what is white by itself, the
// greys of buttons and boxes.
bool isTypeColor(int type, const QString &key, int color)
{
    if (key != QLatin1String("backColor"))
        return color == kBlack;
    switch (type) {
    case VL::TextBox:
    case VL::TextArea:
    case VL::RichEdit:
    case VL::SuperTextBox:
    case VL::ComboBox:
    case VL::ListBox:
    case VL::TreeView:
    case VL::ListView:
        return color == kWhite;
    case VL::Button:
        return color == 0xF2F2F2 || color == kWhite;
    case VL::GroupBox:
    case VL::Panel:
        return color == 0xF0F0F0;
    default:
        return false;
    }
}

// Whether Tab stops there.
bool takesFocus(int type)
{
    return type != VL::Label && type != VL::GroupBox && type != VL::Panel &&
           type != VL::ProgressBar && type != VL::PictureBox && type != VL::DrawingCanvas;
}

bool drawsText(int type)
{
    return type != VL::Panel && type != VL::DrawingCanvas && type != VL::PictureBox;
}

} // namespace

ControlWriter::ControlWriter(CodeWriter &writer, const DesignedWindow &window,
                             const DesignedControl &control)
    : m_writer(writer), m_window(window), m_control(control), m_bag(control.component)
{}

ControlWriter::Part ControlWriter::partOf(int type)
{
    static const QHash<int, Part> parts{
        {VL::GroupBox, &ControlWriter::writeGroupBox},
        {VL::TabWidget, &ControlWriter::writeTabWidget},
        {VL::Panel, &ControlWriter::writePanel},
        {VL::Button, &ControlWriter::writeButton},
        {VL::Label, &ControlWriter::writeLabel},
        {VL::TextBox, &ControlWriter::writeTextBox},
        {VL::TextArea, &ControlWriter::writeTextArea},
        {VL::RichEdit, &ControlWriter::writeRichEdit},
        {VL::SuperTextBox, &ControlWriter::writeSuperTextBox},
        {VL::CheckBox, &ControlWriter::writeCheckBox},
        {VL::RadioButton, &ControlWriter::writeRadioButton},
        {VL::ComboBox, &ControlWriter::writeComboBox},
        {VL::ListBox, &ControlWriter::writeListBox},
        {VL::ProgressBar, &ControlWriter::writeProgressBar},
        {VL::Slider, &ControlWriter::writeSlider},
        {VL::TreeView, &ControlWriter::writeTreeView},
        {VL::ListView, &ControlWriter::writeListView},
        {VL::DrawingCanvas, &ControlWriter::writeDrawingCanvas},
        {VL::PictureBox, &ControlWriter::writePictureBox},
    };
    return parts.value(type, nullptr);
}

void ControlWriter::write(bool watched)
{
    const Part part = partOf(m_control.component.type);
    if (!part)
        return;
    const bool onPage = m_control.tabWidget >= 0;
    if (onPage) {
        const QString &tab = m_window.controls().at(m_control.tabWidget).handle;
        m_writer.open(QStringLiteral("if (HWND hTabPanel = VL_Tab_GetTabPanel(%1, %2)) {")
                          .arg(tab)
                          .arg(m_control.page));
    }
    (this->*part)();
    writeCommon(watched);
    if (onPage) {
        m_writer.line(QStringLiteral("g_childTabInfo[%1] = std::make_pair(%2, %3);")
                          .arg(handle(), m_window.controls().at(m_control.tabWidget).handle)
                          .arg(m_control.page));
        m_writer.close();
    }
}

void ControlWriter::create(const QString &windowClass, const QString &text, const QString &style,
                           const QString &extended)
{
    const QRect &place = m_control.place;
    const QString parent =
        m_control.tabWidget >= 0 ? QStringLiteral("hTabPanel") : QStringLiteral("hwnd");
    m_writer.line(
        handle() + QLatin1String(" = ") +
        (extended.isEmpty() ? QLatin1String("CreateWindowW(")
                            : QLatin1String("CreateWindowExW(") + extended + QLatin1String(", ")) +
        windowClass + QLatin1String(", ") + wide(text) +
        QLatin1String(", WS_CHILD | WS_VISIBLE | ") +
        (takesFocus(m_control.component.type) ? QLatin1String("WS_TABSTOP | ") : QLatin1String()) +
        QLatin1String("WS_CLIPSIBLINGS") + style +
        QStringLiteral(", VL_ScaleX(hwnd, %1), VL_ScaleY(hwnd, %2), VL_ScaleX(hwnd, %3), "
                       "VL_ScaleY(hwnd, %4), ")
            .arg(place.x())
            .arg(place.y())
            .arg(place.width())
            .arg(place.height()) +
        parent + QLatin1String(", (HMENU)") + m_control.idText +
        QLatin1String(", g_hInstance, NULL);"));
    if (!drawsText(m_control.component.type))
        return;
    m_writer.line(
        QStringLiteral("SendMessageW(%1, WM_SETFONT, (WPARAM)hFont, TRUE);").arg(handle()));
    writeFont();
}

void ControlWriter::writeFont()
{
    const char *const keys[] = {"fontName",   "fontSize",      "fontBold",
                                "fontItalic", "fontUnderline", "fontStrikeout"};
    bool any = false;
    for (const char *key : keys)
        any = any || m_bag.has(QLatin1String(key));
    if (!any)
        return;
    call(QStringLiteral("VL_SetControlFont"),
         wide(m_bag.text(QStringLiteral("fontName"))) + QLatin1String(", ") +
             QString::number(m_bag.number(QStringLiteral("fontSize"))) + QLatin1String(", ") +
             boolean(m_bag.flag(QStringLiteral("fontBold"))) + QLatin1String(", ") +
             boolean(m_bag.flag(QStringLiteral("fontItalic"))) + QLatin1String(", ") +
             boolean(m_bag.flag(QStringLiteral("fontUnderline"))) + QLatin1String(", ") +
             boolean(m_bag.flag(QStringLiteral("fontStrikeout"))));
}

bool ControlWriter::hasOwnColor(const QString &key) const
{
    const auto color = m_bag.color(key);
    return color && !isTypeColor(m_control.component.type, key, *color);
}

void ControlWriter::callWithColor(const QString &function, const QString &key)
{
    if (const auto color = m_bag.color(key))
        call(function, QLatin1String("(int)") + rgb(*color));
}

void ControlWriter::writeColors()
{
    const int type = m_control.component.type;
    // These take their colours in their own part.
    if (type == VL::ProgressBar || type == VL::DrawingCanvas)
        return;
    if (hasOwnColor(QStringLiteral("backColor")))
        callWithColor(QStringLiteral("VL_SetBgColor"), QStringLiteral("backColor"));
    else if (selfDrawn() && type == VL::Panel)
        call(QStringLiteral("VL_SetBgColor"), QStringLiteral("(int)g_vlwinClientBgColor"));
    if (hasOwnColor(QStringLiteral("foreColor")) ||
        (selfDrawn() && m_bag.color(QStringLiteral("foreColor"))))
        callWithColor(QStringLiteral("VL_SetTextColor"), QStringLiteral("foreColor"));
    else if (selfDrawn() && drawsText(type) && type != VL::Button)
        call(QStringLiteral("VL_SetTextColor"), QStringLiteral("(int)RGB(204, 204, 204)"));
}

void ControlWriter::writeCommon(bool watched)
{
    writeColors();
    const QString tooltip = m_bag.text(QStringLiteral("tooltip"));
    if (!tooltip.isEmpty()) {
        call(QStringLiteral("VL_SetTooltip"), wide(tooltip));
        // What lets the mouse through to what lies behind it must catch it for this.
        watched = watched || !takesFocus(m_control.component.type);
    }
    if (m_bag.has(QStringLiteral("cursor")) &&
        m_bag.text(QStringLiteral("cursor")) != QStringLiteral("默认"))
        call(QStringLiteral("VL_SetCursorStyle"), wide(m_bag.text(QStringLiteral("cursor"))));
    if (!m_bag.flag(QStringLiteral("visible"), true))
        call(QStringLiteral("VL_SetVisible"), QStringLiteral("false"));
    if (!m_bag.flag(QStringLiteral("enabled"), true))
        call(QStringLiteral("VL_SetEnabled"), QStringLiteral("false"));
    if (watched)
        call(QStringLiteral("VL_WatchControlEvents"));
}

void ControlWriter::call(const QString &function, const QString &arguments)
{
    m_writer.line(function + QLatin1Char('(') + handle() +
                  (arguments.isEmpty() ? QString() : QLatin1String(", ") + arguments) +
                  QLatin1String(");"));
}

void ControlWriter::setNumber(const QString &name, const QString &value)
{
    m_writer.line(QStringLiteral("SetPropW(%1, L\"%2\", (HANDLE)(intptr_t)(%3));")
                      .arg(handle(), name, value));
}

void ControlWriter::setColorNumber(const QString &name, const QString &key)
{
    if (const auto color = m_bag.color(key))
        setNumber(name, rgb(*color) + QLatin1String(" + 1"));
}
