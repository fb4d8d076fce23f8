#include "shell/color_picker_tool.h"

#include <QClipboard>
#include <QColorDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>

QString ColorText::hex(const QColor &color)
{
    return color.name(QColor::HexRgb).toUpper();
}

QString ColorText::rgb(const QColor &color)
{
    return QStringLiteral("%1, %2, %3").arg(color.red()).arg(color.green()).arg(color.blue());
}

int ColorText::value(const QColor &color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}

QColor ColorText::parsed(const QString &text)
{
    static const QRegularExpression hexForm(QStringLiteral("^\\s*#([0-9A-Fa-f]{6})\\s*$"));
    static const QRegularExpression rgbForm(
        QStringLiteral("^\\s*(\\d{1,3})\\s*[,，]\\s*(\\d{1,3})\\s*[,，]\\s*(\\d{1,3})\\s*$"));
    const auto hex = hexForm.match(text);
    if (hex.hasMatch())
        return QColor(QLatin1Char('#') + hex.captured(1));
    const auto rgb = rgbForm.match(text);
    if (rgb.hasMatch()) // out of range makes an invalid colour
        return QColor::fromRgb(rgb.captured(1).toInt(), rgb.captured(2).toInt(),
                               rgb.captured(3).toInt());
    bool isNumber = false;
    const int value = text.trimmed().toInt(&isNumber);
    if (!isNumber || value < 0 || value > 0xFFFFFF)
        return {};
    return QColor(value & 255, value >> 8 & 255, value >> 16 & 255);
}

ColorPickerTool::ColorPickerTool(QWidget *parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("颜色选择器"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    auto *rows = new QVBoxLayout(this);
    m_choice = new QColorDialog(this);
    m_choice->setWindowFlags(Qt::Widget);
    m_choice->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    rows->addWidget(m_choice);
    auto *grid = new QGridLayout;
    rows->addLayout(grid);
    m_hex = addRow(grid, QStringLiteral("#RRGGBB"), QStringLiteral("属性里的颜色写法"));
    m_rgb = addRow(grid, QStringLiteral("红, 绿, 蓝"), QStringLiteral("三个 0 到 255 的数"));
    m_value = addRow(grid, QStringLiteral("整数"), QStringLiteral("命令和属性使用的颜色值"));
    connect(m_choice, &QColorDialog::currentColorChanged, this, &ColorPickerTool::showColor);
    setColor(QColor(0x42, 0x82, 0xDA));
    showColor(m_choice->currentColor());
}

QLineEdit *ColorPickerTool::addRow(QGridLayout *grid, const QString &name, const QString &toolTip)
{
    const int row = grid->rowCount();
    auto *field = new QLineEdit(this);
    field->setAccessibleName(name);
    field->setToolTip(toolTip);
    connect(field, &QLineEdit::editingFinished, this, [this, field] { readRow(field); });
    auto *copy = new QPushButton(QStringLiteral("复制"), this);
    connect(copy, &QPushButton::clicked, this,
            [field] { QGuiApplication::clipboard()->setText(field->text()); });
    auto *insert = new QPushButton(QStringLiteral("插入到编辑器"), this);
    connect(insert, &QPushButton::clicked, this,
            [this, field] { emit insertRequested(field->text()); });
    for (QPushButton *button : {copy, insert})
        button->setAutoDefault(false);
    grid->addWidget(new QLabel(name, this), row, 0);
    grid->addWidget(field, row, 1);
    grid->addWidget(copy, row, 2);
    grid->addWidget(insert, row, 3);
    return field;
}

void ColorPickerTool::setColor(const QColor &color)
{
    m_choice->setCurrentColor(color);
}

void ColorPickerTool::showColor(const QColor &color)
{
    m_hex->setText(ColorText::hex(color));
    m_rgb->setText(ColorText::rgb(color));
    m_value->setText(QString::number(ColorText::value(color)));
}

// A text that is no colour goes back to the one there was.
void ColorPickerTool::readRow(QLineEdit *field)
{
    const QColor color = ColorText::parsed(field->text());
    if (color.isValid())
        setColor(color);
    showColor(m_choice->currentColor());
}
