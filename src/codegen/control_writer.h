// ControlWriter: the statements that create one control of a window as it was designed.
#pragma once

#include "codegen/code_writer.h"
#include "codegen/designed_window.h"

#include <QString>

class ControlWriter
{
public:
    ControlWriter(CodeWriter &writer, const DesignedWindow &window, const DesignedControl &control);

    // Writes everything, from the creation to tool tip and colours. `watched`: the program answers
    // events that only a watched control tells.
    void write(bool watched);

private:
    using Part = void (ControlWriter::*)();
    static Part partOf(int type);

    // One for each type (controls_basic.cpp, controls_text.cpp, controls_lists.cpp,
    // controls_drawn.cpp).
    void writeGroupBox();
    void writePanel();
    void writeButton();
    void writeLabel();
    void writeTextBox();
    void writeTextArea();
    void writeRichEdit();
    void writeSuperTextBox();
    void writeCheckBox();
    void writeRadioButton();
    void writeComboBox();
    void writeListBox();
    void writeProgressBar();
    void writeSlider();
    void writeTreeView();
    void writeListView();
    void writeTabWidget();
    void writeDrawingCanvas();
    void writePictureBox();

    void writeSelfDrawnButton();
    void writeButtonTexts();
    void writeSelfDrawnCheck(const QString &kind);
    void writeCheckState(bool threeState);
    void writeEditExtras(bool singleLine);
    void writeRadioGroup();
    void writeTableRows();
    void writeHeaderColors();
    QString ownedBorderStyle(QString *extended) const;

    // `CreateWindowExW` with the told base style and `style` added to it.
    void create(const QString &windowClass, const QString &text, const QString &style,
                const QString &extended = QString());
    void writeFont();
    void writeColors();
    void writeCommon(bool watched);
    // One line that calls `function` with the handle ahead of `arguments`.
    void call(const QString &function, const QString &arguments = QString());
    // Sets a window property of that name to a number.
    void setNumber(const QString &name, const QString &value);
    // The same for a colour of the design, shifted by one so that black is not "none".
    void setColorNumber(const QString &name, const QString &key);
    // `function(handle, RGB)` when the colour is set.
    void callWithColor(const QString &function, const QString &key);

    const QString &handle() const { return m_control.handle; }
    bool selfDrawn() const { return m_window.isSelfDrawn(); }
    // Whether a colour of the design differs from what the type has by itself.
    bool hasOwnColor(const QString &key) const;

    CodeWriter &m_writer;
    const DesignedWindow &m_window;
    const DesignedControl &m_control;
    PropertyBag m_bag;
};

// C++ for the values of a design.
namespace DesignCode {

// `L"text"`
QString wide(const QString &text);
// `RGB(r, g, b)`
QString rgb(int color);
QString boolean(bool value);
// " | A | B" of the parts that are not empty; empty without any.
QString flags(const QStringList &parts);

} // namespace DesignCode
