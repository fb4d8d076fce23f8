// The numbered component types and the flat record of a designed component.
#pragma once

#include <QList>
#include <QMap>
#include <QMetaType>
#include <QString>
#include <QVariant>

namespace VL {

// The numbers are stored in form files and never change.
enum ComponentType
{
    Window = 0,
    GroupBox = 1,
    TabWidget = 2,
    Panel = 3,
    Button = 4,
    Label = 5,
    TextBox = 6,
    TextArea = 7,
    RichEdit = 8,
    SuperTextBox = 9,
    CheckBox = 10,
    RadioButton = 11,
    ComboBox = 12,
    ListBox = 13,
    ProgressBar = 14,
    Slider = 15,
    TreeView = 18,
    ListView = 19,
    DrawingCanvas = 21,
    PictureBox = 22,
    HorizontalLayout = 26,
    VerticalLayout = 27,
    GridLayout = 28,
    HorizontalSpacer = 29,
    VerticalSpacer = 30,
    NoComponentType = 36,
};

// A component as it passes through build requests, undo, clipboard and form files. Geometry is in
// logical pixels at 96 DPI.
struct DesignComponent
{
    // The name that source code uses: the property "name", else the name given at creation.
    QString name() const;

    QString id;
    QString originalName;
    int type = NoComponentType;
    QMap<QString, QVariant> properties;
    QMap<QString, QString> eventHandlers;
    QList<DesignComponent> children;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    int zOrder = 0;
    bool selected = false;
    bool locked = false;
};

} // namespace VL

Q_DECLARE_METATYPE(VL::DesignComponent)
