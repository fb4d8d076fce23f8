// The colour picker: a colour in every way of writing it.
#pragma once

#include <QColor>
#include <QDialog>
#include <QString>

class QColorDialog;
class QGridLayout;
class QLineEdit;

namespace ColorText {

// "#RRGGBB".
QString hex(const QColor &color);
// "255, 128, 0".
QString rgb(const QColor &color);
// What colour properties and the colour arguments of commands take: red in the lowest byte.
int value(const QColor &color);
// Reads any of these three ways of writing; invalid for other text.
QColor parsed(const QString &text);

} // namespace ColorText

// Chooses from a palette or from the screen.
class ColorPickerTool : public QDialog
{
    Q_OBJECT

public:
    explicit ColorPickerTool(QWidget *parent = nullptr);

    void setColor(const QColor &color);

signals:
    // The user wants this text in the editor.
    void insertRequested(QString text);

private:
    QLineEdit *addRow(QGridLayout *grid, const QString &name, const QString &toolTip);
    void showColor(const QColor &color);
    void readRow(QLineEdit *field);

    QColorDialog *m_choice;
    QLineEdit *m_hex;
    QLineEdit *m_rgb;
    QLineEdit *m_value;
};
