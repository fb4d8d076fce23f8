// Controls that show a value or a picture.
#include "codegen/control_writer.h"

using namespace DesignCode;

void ControlWriter::writeProgressBar()
{
    const QString style = m_bag.text(QStringLiteral("style"));
    const bool marquee = m_bag.flag(QStringLiteral("marquee")) || style == QStringLiteral("滚动");
    const bool vertical = m_bag.text(QStringLiteral("orientation")) == QStringLiteral("垂直");
    create(QStringLiteral("PROGRESS_CLASSW"), QString(),
           flags({vertical ? QStringLiteral("PBS_VERTICAL") : QString(),
                  marquee ? QStringLiteral("PBS_MARQUEE") : QString(),
                  style == QStringLiteral("块状") ? QString() : QStringLiteral("PBS_SMOOTH")}));
    call(QStringLiteral("VL_PrepareProgressBar"));
    m_writer.line(QStringLiteral("SendMessageW(%1, PBM_SETRANGE32, %2, %3);")
                      .arg(handle())
                      .arg(m_bag.number(QStringLiteral("min"), 0))
                      .arg(m_bag.number(QStringLiteral("max"), 100)));
    call(QStringLiteral("VL_SetStep"), QString::number(m_bag.number(QStringLiteral("step"), 10)));
    m_writer.line(QStringLiteral("SendMessageW(%1, PBM_SETPOS, %2, 0);")
                      .arg(handle())
                      .arg(m_bag.number(QStringLiteral("value"), 50)));
    if (m_bag.color(QStringLiteral("foreColor")))
        callWithColor(QStringLiteral("VL_ProgressBar_SetBarColor"), QStringLiteral("foreColor"));
    if (m_bag.color(QStringLiteral("backColor")))
        callWithColor(QStringLiteral("VL_ProgressBar_SetBkColor"), QStringLiteral("backColor"));
    if (m_bag.flag(QStringLiteral("showText")))
        call(QStringLiteral("VL_ProgressBar_SetText"),
             QLatin1String("true, ") +
                 wide(m_bag.text(QStringLiteral("textFormat"), QStringLiteral("%p%"))));
    if (marquee)
        call(QStringLiteral("VL_ProgressBar_SetMarquee"),
             QStringLiteral("true, %1").arg(m_bag.number(QStringLiteral("marqueeSpeed"), 30)));
    const QString state = m_bag.text(QStringLiteral("state"));
    if (state == QStringLiteral("错误"))
        call(QStringLiteral("VL_ProgressBar_SetError"));
    else if (state == QStringLiteral("暂停"))
        call(QStringLiteral("VL_ProgressBar_SetPaused"));
}

void ControlWriter::writeSlider()
{
    const bool vertical = m_bag.text(QStringLiteral("orientation")) == QStringLiteral("垂直");
    const QString ticks = m_bag.text(QStringLiteral("tickStyle"), QStringLiteral("无"));
    const bool withoutTicks = ticks == QStringLiteral("无");
    create(QStringLiteral("TRACKBAR_CLASSW"), QString(),
           flags({vertical ? QStringLiteral("TBS_VERT") : QStringLiteral("TBS_HORZ"),
                  withoutTicks ? QStringLiteral("TBS_NOTICKS") : QStringLiteral("TBS_AUTOTICKS"),
                  ticks == QStringLiteral("上方/左侧") ? QStringLiteral("TBS_TOP") : QString(),
                  ticks == QStringLiteral("两侧") ? QStringLiteral("TBS_BOTH") : QString(),
                  m_bag.flag(QStringLiteral("showValue")) ? QStringLiteral("TBS_TOOLTIPS")
                                                          : QString()}));
    // The range as two messages: one message would cut both ends to 16 bits.
    const auto send = [this](const char *message, const QString &first, const QString &second) {
        m_writer.line(QStringLiteral("SendMessageW(%1, %2, %3, %4);")
                          .arg(handle(), QLatin1String(message), first, second));
    };
    const QString zero = QStringLiteral("0");
    send("TBM_SETRANGEMIN", zero, QString::number(m_bag.number(QStringLiteral("min"), 0)));
    send("TBM_SETRANGEMAX", zero, QString::number(m_bag.number(QStringLiteral("max"), 100)));
    send("TBM_SETLINESIZE", zero, QString::number(m_bag.number(QStringLiteral("step"), 1)));
    send("TBM_SETPAGESIZE", zero, QString::number(m_bag.number(QStringLiteral("largeChange"), 10)));
    if (!withoutTicks)
        send("TBM_SETTICFREQ",
             QString::number(qMax(1, m_bag.number(QStringLiteral("tickFrequency"), 10))), zero);
    call(QStringLiteral("VL_PrepareSlider"),
         QStringLiteral("%1, %2").arg(boolean(m_bag.flag(QStringLiteral("showValue"))),
                                      boolean(m_bag.flag(QStringLiteral("inverted")))));
    send("TBM_SETPOS", QStringLiteral("TRUE"),
         QString::number(m_bag.number(QStringLiteral("value"), 50)));
}

void ControlWriter::writeDrawingCanvas()
{
    create(QStringLiteral("L\"VL_DrawCanvas\""), QString(), QString());
    const auto back = m_bag.color(QStringLiteral("backColor"));
    call(QStringLiteral("VL_DrawCanvas_ApplyProps"),
         QLatin1String("(int)") + rgb(back ? *back : 0xFFFFFF) + QLatin1String(", ") +
             boolean(m_bag.flag(QStringLiteral("antialias"), true)));
}

void ControlWriter::writePictureBox()
{
    create(QStringLiteral("g_pictureBoxClassName"), QString(), QString());
    call(QStringLiteral("VL_PictureBox_SetMode"),
         wide(m_bag.text(QStringLiteral("imageScaleMode"), QStringLiteral("缩放"))));
    const int border = m_bag.number(QStringLiteral("pictureBorderWidth"));
    if (border > 0) {
        const auto color = m_bag.color(QStringLiteral("pictureBorderColor"));
        call(QStringLiteral("VL_PictureBox_SetBorder"),
             QStringLiteral("%1, (int)").arg(border) + rgb(color ? *color : 0x585050));
    }
    const QString image = m_bag.text(QStringLiteral("imagePath"));
    if (!image.isEmpty())
        call(QStringLiteral("VL_PictureBox_SetImage"), wide(image));
}
