// The tables of component types: those of classic forms and those of self-drawn ones.
#pragma once

#include "designer/model/design_component.h"

#include <QString>

#include <vector>

namespace VL {

// One type of the classic designer. Sizes are in logical pixels.
struct ComponentTypeInfo
{
    int type;
    const char *key; // of the toolbox
    QString name;    // shown, and the base of generated names
    QString caption; // in the toolbox
    QString group;   // of the toolbox
    int width;       // of a new component
    int height;
};

// In the order of their numbers.
const std::vector<ComponentTypeInfo> &componentTypes();
// Null for a number that has no type.
const ComponentTypeInfo *componentType(int type);
const ComponentTypeInfo *componentTypeByKey(const QString &toolboxKey);
// "未知" for a number that has no type.
QString componentDisplayName(int type);
// The type of the component that a stored number stands for: 20 is read as a list view. A number
// without a type gives NoComponentType.
int usableComponentType(int stored);

// Stored in self-drawn form files; the numbers never change.
enum VLWinControlType
{
    VLWinWindow = 0,
    VLWinButton = 1,
    VLWinLabel = 2,
    VLWinTextBox = 3,
    VLWinCheckBox = 4,
    VLWinRadioButton = 5,
    VLWinTextArea = 6,
    VLWinComboBox = 7,
    VLWinGroupBox = 8,
    VLWinTableView = 9,
    VLWinPictureBox = 10,
};

// What the generator gets for the table of a self-drawn form; no classic component has it.
constexpr int tableComponentType = 20;

// One type of the self-drawn designer. Sizes are in logical pixels.
struct VLWinControlTypeInfo
{
    int type;
    QString nameBase; // of generated names
    int classicType;  // which the generator sees
    int width;        // of a new component
    int height;
    int minimumWidth;
    int minimumHeight;
};

const std::vector<VLWinControlTypeInfo> &vlwinControlTypes();
// Null for a number that has no type.
const VLWinControlTypeInfo *vlwinControlType(int type);
// The self-drawn twin of a classic type, or null.
const VLWinControlTypeInfo *vlwinControlTypeOfClassic(int classicType);
// "自绘按钮": the name that tells it from its classic twin. "未知" for a number that has no type.
QString vlwinControlDisplayName(int type);
// NoComponentType for a number that has no type.
int classicTypeOfVlwin(int type);

} // namespace VL
