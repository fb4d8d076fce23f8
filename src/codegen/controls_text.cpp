// Text boxes of all kinds.
#include "codegen/control_writer.h"

using namespace DesignCode;

namespace {

QString alignStyle(const QString &word)
{
    if (word == QStringLiteral("居中"))
        return QStringLiteral("ES_CENTER");
    return word == QStringLiteral("右对齐") ? QStringLiteral("ES_RIGHT") : QString();
}

QString verticalNumber(const QString &word)
{
    if (word == QStringLiteral("上"))
        return QStringLiteral("VL_VERTICAL_TOP");
    return word == QStringLiteral("下") ? QStringLiteral("VL_VERTICAL_BOTTOM")
                                        : QStringLiteral("VL_VERTICAL_CENTER");
}

} // namespace

// The frame of an edit or list: sunken unless the design says otherwise.
QString ControlWriter::ownedBorderStyle(QString *extended) const
{
    const QString border = m_bag.text(QStringLiteral("borderStyle"));
    const bool none = border == QStringLiteral("无") || selfDrawn();
    const bool single = border == QStringLiteral("单线") && !selfDrawn();
    *extended = none || single ? QStringLiteral("0") : QStringLiteral("WS_EX_CLIENTEDGE");
    return single ? QStringLiteral("WS_BORDER") : QString();
}

void ControlWriter::writeTextBox()
{
    QString extended;
    const QString border = ownedBorderStyle(&extended);
    // The self-drawn designer says "password".
    const bool password =
        m_bag.flag(QStringLiteral("passwordMode")) || m_bag.flag(QStringLiteral("password"));
    create(QStringLiteral("L\"EDIT\""), m_bag.text(QStringLiteral("text")),
           flags({QStringLiteral("ES_AUTOHSCROLL"), border,
                  password ? QStringLiteral("ES_PASSWORD") : QString(),
                  alignStyle(m_bag.text(QStringLiteral("textAlign")))}),
           extended);
    call(QStringLiteral("VL_PrepareEdit"));
    if (selfDrawn()) {
        call(QStringLiteral("VL_VlwinPrepareEdit"),
             QString::number(m_bag.number(QStringLiteral("cornerRadius"), 3)) +
                 QLatin1String(", L\"\""));
    } else {
        call(QStringLiteral("VL_PrepareSingleLineEdit"),
             verticalNumber(m_bag.text(QStringLiteral("verticalAlign"))));
        const int radius = m_bag.number(QStringLiteral("cornerRadius"));
        if (radius > 0)
            call(QStringLiteral("VL_SetEditCornerRadius"), QString::number(radius));
    }
    if (m_bag.has(QStringLiteral("passwordChar")))
        call(QStringLiteral("VL_SetPasswordChar"),
             wide(m_bag.text(QStringLiteral("passwordChar"))));
    const QString charCase = m_bag.text(QStringLiteral("charCase"));
    if (!charCase.isEmpty() && charCase != QStringLiteral("正常"))
        call(QStringLiteral("VL_SetCharCase"), wide(charCase));
    writeEditExtras(true);
}

void ControlWriter::writeTextArea()
{
    QString extended;
    const QString border = ownedBorderStyle(&extended);
    const QString bars = m_bag.text(QStringLiteral("scrollBars"));
    const bool both = bars == QStringLiteral("两者");
    const bool across = both || bars == QStringLiteral("横向");
    const bool wraps = m_bag.flag(QStringLiteral("wordWrap"), !across);
    create(QStringLiteral("L\"EDIT\""), m_bag.text(QStringLiteral("text")),
           flags({QStringLiteral("ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN"), border,
                  wraps ? QString() : QStringLiteral("ES_AUTOHSCROLL"),
                  bars == QStringLiteral("横向") ? QString() : QStringLiteral("WS_VSCROLL"),
                  across ? QStringLiteral("WS_HSCROLL") : QString(),
                  alignStyle(m_bag.text(QStringLiteral("textAlign")))}),
           extended);
    call(QStringLiteral("VL_PrepareEdit"));
    if (selfDrawn()) {
        call(QStringLiteral("VL_VlwinPrepareEdit"),
             QString::number(m_bag.number(QStringLiteral("cornerRadius"), 3)) +
                 QLatin1String(", L\"\""));
    }
    if (m_bag.has(QStringLiteral("acceptTab")))
        call(QStringLiteral("VL_SetAcceptTab"), boolean(m_bag.flag(QStringLiteral("acceptTab"))));
    if (!m_bag.flag(QStringLiteral("acceptReturn"), true))
        call(QStringLiteral("VL_SetAcceptReturn"), QStringLiteral("false"));
    writeEditExtras(false);
}

void ControlWriter::writeEditExtras(bool singleLine)
{
    const int limit = m_bag.number(QStringLiteral("maxLength"));
    m_writer.line(
        QStringLiteral("SendMessageW(%1, EM_SETLIMITTEXT, %2, 0);")
            .arg(handle(), limit > 0 ? QString::number(limit) : QStringLiteral("0x7FFFFFFE")));
    QString cue = m_bag.text(QStringLiteral("cueBanner"));
    if (cue.isEmpty())
        cue = m_bag.text(QStringLiteral("placeholder"));
    if (!cue.isEmpty()) {
        const bool focused = singleLine && m_bag.flag(QStringLiteral("cueBannerFocused"));
        call(QStringLiteral("VL_Edit_SetCueBanner"),
             wide(cue) + QLatin1String(", ") + boolean(focused));
    }
    if (m_bag.flag(QStringLiteral("readOnly")))
        call(QStringLiteral("VL_SetReadOnly"), QStringLiteral("true"));
}

void ControlWriter::writeRichEdit()
{
    const bool wraps = m_bag.flag(QStringLiteral("wordWrap"), true);
    create(QStringLiteral("L\"RICHEDIT50W\""), QString(),
           flags({QStringLiteral("ES_MULTILINE | ES_AUTOVSCROLL | ES_WANTRETURN | ES_NOHIDESEL | "
                                 "WS_VSCROLL"),
                  wraps ? QString() : QStringLiteral("WS_HSCROLL | ES_AUTOHSCROLL")}),
           QStringLiteral("WS_EX_CLIENTEDGE"));
    call(QStringLiteral("VL_PrepareEdit"));
    call(QStringLiteral("VL_PrepareRichEdit"), boolean(wraps));
    if (m_bag.has(QStringLiteral("text")))
        call(QStringLiteral("VL_SetText"), wide(m_bag.text(QStringLiteral("text"))));
    if (m_bag.flag(QStringLiteral("readOnly")))
        call(QStringLiteral("VL_SetReadOnly"), QStringLiteral("true"));
}

void ControlWriter::writeSuperTextBox()
{
    const QRect &place = m_control.place;
    const QString parent =
        m_control.tabWidget >= 0 ? QStringLiteral("hTabPanel") : QStringLiteral("hwnd");
    m_writer.line(handle() +
                  QStringLiteral(" = VL_CreateVirtualTextBox(%1, VL_ScaleX(hwnd, %2), "
                                 "VL_ScaleY(hwnd, %3), VL_ScaleX(hwnd, %4), VL_ScaleY(hwnd, %5), ")
                      .arg(parent)
                      .arg(place.x())
                      .arg(place.y())
                      .arg(place.width())
                      .arg(place.height()) +
                  m_control.idText + QLatin1String(");"));
    m_writer.line(
        QStringLiteral("SendMessageW(%1, WM_SETFONT, (WPARAM)hFont, TRUE);").arg(handle()));
    writeFont();
    call(QStringLiteral("VL_VTB_ShowLineNumbers"),
         boolean(m_bag.flag(QStringLiteral("showLineNumbers"))));
    call(QStringLiteral("VL_VTB_SetSyntaxHighlight"),
         boolean(m_bag.flag(QStringLiteral("syntaxHighlight"), true)));
    setNumber(QStringLiteral("VL_VTB_TabSpaces"),
              QString::number(qBound(1, m_bag.number(QStringLiteral("tabWidth"), 4), 32)));
    if (m_bag.flag(QStringLiteral("wordWrap")))
        call(QStringLiteral("VL_SetWordWrap"), QStringLiteral("true"));
    if (m_bag.has(QStringLiteral("text")))
        call(QStringLiteral("VL_SetText"), wide(m_bag.text(QStringLiteral("text"))));
    if (m_bag.flag(QStringLiteral("readOnly")))
        call(QStringLiteral("VL_VTB_SetReadOnly"), QStringLiteral("true"));
}
