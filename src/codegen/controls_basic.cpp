// Buttons, check boxes, radio buttons, group boxes, panels, labels.
#include "codegen/control_writer.h"

#include <QColor>

using namespace DesignCode;

namespace {

// A value inside "key=value;key=value": the separators are escaped.
QString optionValue(QString value)
{
    value.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    value.replace(QLatin1Char(';'), QLatin1String("\\;"));
    value.replace(QLatin1Char('='), QLatin1String("\\="));
    return value;
}

// What the label class takes beside text, font and colours.
const char *const kLabelOptions[] = {
    "textAlign",   "verticalAlign",   "ellipsis",          "padding",           "wordWrap",
    "autoSize",    "borderStyle",     "borderColor",       "borderWidth",       "borderRadius",
    "borderSides", "backColor2",      "gradientPreset",    "gradientDirection", "backImage",
    "textShadow",  "textShadowColor", "textShadowOffsetX", "textShadowOffsetY", "textShadowBlur",
    "text3D",      "text3DDepth",     "textGlow",          "textGlowColor",     "textGlowSize",
    "textStroke",  "textStrokeColor", "textStrokeWidth",
};

int alignNumber(const QString &word)
{
    return word == QStringLiteral("左对齐") ? 1 : word == QStringLiteral("右对齐") ? 2 : 0;
}

} // namespace

void ControlWriter::writeGroupBox()
{
    const QString drawn = selfDrawn() ? QStringLiteral(" | BS_OWNERDRAW") : QString();
    create(QStringLiteral("L\"BUTTON\""), m_bag.text(QStringLiteral("text")),
           QLatin1String(" | BS_GROUPBOX") + drawn);
    if (selfDrawn()) {
        setColorNumber(QStringLiteral("VL_VlwinBorderColor"), QStringLiteral("borderColor"));
        call(QStringLiteral("VL_VlwinPrepareGroupBox"));
        return;
    }
    const QString flat = m_bag.text(QStringLiteral("flatStyle"));
    if (flat == QStringLiteral("扁平"))
        setNumber(QStringLiteral("VL_GroupFlat"), QStringLiteral("3"));
    else if (flat == QStringLiteral("系统"))
        setNumber(QStringLiteral("VL_GroupFlat"), QStringLiteral("2"));
    call(QStringLiteral("VL_PrepareGroupBox"));
    // What lies on it shows its colour.
    if (hasOwnColor(QStringLiteral("backColor")))
        call(QStringLiteral("VL_AddBackdrop"));
}

void ControlWriter::writePanel()
{
    create(QStringLiteral("L\"STATIC\""), QString(), QString());
    call(QStringLiteral("VL_PreparePanel"));
    call(QStringLiteral("VL_KeepBehind"));
    for (const char *key : {"backgroundImage", "backImage"}) {
        const QString image = m_bag.text(QLatin1String(key));
        if (!image.isEmpty())
            call(QStringLiteral("VL_SetWindowBackground"), wide(image));
    }
}

void ControlWriter::writeButton()
{
    if (selfDrawn()) {
        writeSelfDrawnButton();
        return;
    }
    const QString kind = m_bag.text(QStringLiteral("buttonType"));
    const bool link = kind == QStringLiteral("命令链接");
    const bool split = kind == QStringLiteral("分割按钮");
    const int align = alignNumber(m_bag.text(QStringLiteral("textAlign")));
    const int radius = m_bag.number(QStringLiteral("cornerRadius"));
    const QString icon = m_bag.text(QStringLiteral("icon"));
    const bool flat = m_bag.flag(QStringLiteral("flatStyle"));
    const bool drawn = !icon.isEmpty() || align != 0 || radius > 0 || flat ||
                       hasOwnColor(QStringLiteral("foreColor")) ||
                       hasOwnColor(QStringLiteral("backColor"));
    const bool isDefault = m_bag.flag(QStringLiteral("isDefault"));
    const QString style = drawn   ? QStringLiteral(" | BS_OWNERDRAW")
                          : link  ? QStringLiteral(" | BS_COMMANDLINK")
                          : split ? QStringLiteral(" | BS_SPLITBUTTON")
                                  : QStringLiteral(" | BS_PUSHBUTTON");
    create(QStringLiteral("L\"BUTTON\""), m_bag.text(QStringLiteral("text")),
           style + (isDefault && !drawn ? QLatin1String(" | BS_DEFPUSHBUTTON") : QLatin1String()));
    if (align)
        setNumber(QStringLiteral("VL_ButtonTextAlign"), QString::number(align));
    if (radius > 0)
        setNumber(QStringLiteral("VL_ButtonCornerRadius"), QString::number(radius));
    if (flat)
        setNumber(QStringLiteral("VL_ButtonFlat"), QStringLiteral("1"));
    if (drawn && (link || split))
        call(QStringLiteral("VL_SetButtonKind"),
             link ? QStringLiteral("VL_BUTTON_COMMAND_LINK") : QStringLiteral("VL_BUTTON_SPLIT"));
    if (drawn || link || split)
        call(QStringLiteral("VL_PrepareButton"));
    if (!icon.isEmpty())
        call(QStringLiteral("VL_Button_SetImage"), wide(icon));
    writeButtonTexts();
}

void ControlWriter::writeSelfDrawnButton()
{
    create(QStringLiteral("L\"VL_D2DPushButton\""), m_bag.text(QStringLiteral("text")), QString());
    const QString kind = m_bag.text(QStringLiteral("buttonType"));
    if (kind == QStringLiteral("命令链接"))
        setNumber(QStringLiteral("VL_VlwinButtonType"), QStringLiteral("1"));
    else if (kind == QStringLiteral("分割按钮"))
        setNumber(QStringLiteral("VL_VlwinButtonType"), QStringLiteral("2"));
    call(QStringLiteral("VL_VlwinButton_SetOptions"),
         QStringLiteral("%1, %2, ")
                 .arg(m_bag.number(QStringLiteral("cornerRadius")))
                 .arg(alignNumber(m_bag.text(QStringLiteral("textAlign")))) +
             wide(m_bag.text(QStringLiteral("icon"))));
    writeButtonTexts();
}

// What both kinds of buttons have.
void ControlWriter::writeButtonTexts()
{
    if (m_bag.has(QStringLiteral("note")))
        call(QStringLiteral("VL_Button_SetNote"), wide(m_bag.text(QStringLiteral("note"))));
    if (m_bag.has(QStringLiteral("dropDownMenu")))
        call(QStringLiteral("VL_Button_SetDropDownItems"),
             wide(m_bag.text(QStringLiteral("dropDownMenu"))));
    if (m_bag.flag(QStringLiteral("isDefault")))
        call(QStringLiteral("VL_SetDefaultButton"));
    if (m_bag.flag(QStringLiteral("isCancel")))
        call(QStringLiteral("VL_SetCancelButton"));
}

void ControlWriter::writeLabel()
{
    create(QStringLiteral("g_ownerDrawLabelClassName"), m_bag.text(QStringLiteral("text")),
           QString());
    QStringList options;
    for (const char *key : kLabelOptions) {
        const QString name = QLatin1String(key);
        if (!m_bag.has(name))
            continue;
        const bool isColor =
            name.endsWith(QLatin1String("Color")) || name == QLatin1String("backColor2");
        QString value = m_bag.text(name);
        if (isColor) {
            const auto color = m_bag.color(name);
            if (!color)
                continue;
            value = QColor(*color & 0xFF, (*color >> 8) & 0xFF, (*color >> 16) & 0xFF).name();
        }
        options << name + QLatin1Char('=') + optionValue(value);
    }
    // The self-drawn designer has a name of its own for it.
    if (!m_bag.has(QStringLiteral("textAlign")) && m_bag.has(QStringLiteral("alignment")))
        options << QLatin1String("textAlign=") +
                       optionValue(m_bag.text(QStringLiteral("alignment")));
    if (!options.isEmpty())
        call(QStringLiteral("VL_Label_SetOptions"), wide(options.join(QLatin1Char(';'))));
}

void ControlWriter::writeCheckBox()
{
    const bool threeState = m_bag.flag(QStringLiteral("threeState"));
    if (selfDrawn()) {
        writeSelfDrawnCheck(threeState ? QStringLiteral("VL_VLWIN_OD_3STATE")
                                       : QStringLiteral("VL_VLWIN_OD_CHECKBOX"));
    } else {
        const bool right = m_bag.text(QStringLiteral("checkAlign")) == QStringLiteral("右侧");
        create(
            QStringLiteral("L\"BUTTON\""), m_bag.text(QStringLiteral("text")),
            (threeState ? QLatin1String(" | BS_AUTO3STATE") : QLatin1String(" | BS_AUTOCHECKBOX")) +
                (right ? QLatin1String(" | BS_RIGHTBUTTON") : QLatin1String()));
    }
    writeCheckState(threeState);
    if (m_bag.flag(QStringLiteral("autoSize")))
        call(QStringLiteral("VL_SetAutoSize"), QStringLiteral("true"));
}

void ControlWriter::writeRadioButton()
{
    if (selfDrawn()) {
        writeSelfDrawnCheck(QStringLiteral("VL_VLWIN_OD_RADIO"));
    } else {
        const bool right = m_bag.text(QStringLiteral("checkAlign")) == QStringLiteral("右侧");
        create(QStringLiteral("L\"BUTTON\""), m_bag.text(QStringLiteral("text")),
               QLatin1String(" | BS_AUTORADIOBUTTON") +
                   (right ? QLatin1String(" | BS_RIGHTBUTTON") : QLatin1String()));
    }
    writeRadioGroup();
    writeCheckState(false);
    if (m_bag.flag(QStringLiteral("autoSize")))
        call(QStringLiteral("VL_SetAutoSize"), QStringLiteral("true"));
}

void ControlWriter::writeSelfDrawnCheck(const QString &kind)
{
    create(QStringLiteral("L\"BUTTON\""), m_bag.text(QStringLiteral("text")),
           QStringLiteral(" | BS_OWNERDRAW"));
    setNumber(QStringLiteral("VL_VlwinOdKind"), kind);
    if (m_bag.text(QStringLiteral("checkAlign")) == QStringLiteral("右侧"))
        setNumber(QStringLiteral("VL_VlwinCheckRight"), QStringLiteral("1"));
    call(QStringLiteral("VL_Win32StripCheckRadioTheme"));
    call(QStringLiteral("VL_VlwinAttachOdSubclass"));
}

void ControlWriter::writeCheckState(bool threeState)
{
    const QString state = m_bag.text(QStringLiteral("checkState"));
    const bool undetermined = threeState && state == QStringLiteral("不确定");
    const bool checked = m_bag.flag(QStringLiteral("checked")) || state == QStringLiteral("选中");
    if (undetermined || checked) {
        m_writer.line(QStringLiteral("SendMessageW(%1, BM_SETCHECK, %2, 0);")
                          .arg(handle(), undetermined ? QStringLiteral("BST_INDETERMINATE")
                                                      : QStringLiteral("BST_CHECKED")));
    }
}

// Radio buttons without a group of their own exclude each other inside what they stand in.
void ControlWriter::writeRadioGroup()
{
    QString group = m_bag.text(QStringLiteral("groupName"));
    if (group.isEmpty())
        group = m_bag.text(QStringLiteral("_parentGroupBox"));
    if (group.isEmpty() && m_control.tabWidget >= 0)
        group = QStringLiteral("%1/%2")
                    .arg(m_bag.text(QStringLiteral("_parentTabWidget")))
                    .arg(m_control.page);
    if (group.isEmpty())
        group = QStringLiteral("*");
    if (selfDrawn())
        call(QStringLiteral("VL_SetTextProperty"),
             QLatin1String("L\"VL_VlwinRadioGroup\", ") + wide(group));
    else
        call(QStringLiteral("VL_SetRadioGroup"), wide(group));
}
