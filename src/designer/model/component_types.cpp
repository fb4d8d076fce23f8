#include "designer/model/component_types.h"

#include <algorithm>

namespace VL {

const std::vector<ComponentTypeInfo> &componentTypes()
{
    const auto zh = [](const char *utf8) { return QString::fromUtf8(utf8); };
    const QString containers = QStringLiteral("容器组件");
    const QString basics = QStringLiteral("基础组件");
    const QString advanced = QStringLiteral("高级组件");
    const QString layouts = QStringLiteral("布局组件");
    // clang-format off
    static const std::vector<ComponentTypeInfo> types = {
        {Window, "Window", zh("窗口"), zh("窗口"), containers, 640, 480},
        {GroupBox, "GroupBox", zh("分组框"), zh("分组框"), containers, 200, 150},
        {TabWidget, "TabWidget", zh("选项卡"), zh("选项卡"), containers, 300, 200},
        {Panel, "Panel", zh("面板"), zh("面板"), containers, 200, 150},
        {Button, "Button", zh("按钮"), zh("按钮"), basics, 80, 28},
        {Label, "Label", zh("标签"), zh("标签"), basics, 80, 25},
        {TextBox, "TextBox", zh("文本框"), zh("文本框"), basics, 120, 24},
        {TextArea, "TextArea", zh("多行文本框"), zh("多行文本框"), basics, 200, 100},
        {RichEdit, "RichEdit", zh("富文本框"), zh("富文本框"), basics, 200, 120},
        {SuperTextBox, "SuperTextBox", zh("超级文本框"), zh("超级文本框"), advanced, 250, 150},
        {CheckBox, "CheckBox", zh("复选框"), zh("复选框"), basics, 100, 20},
        {RadioButton, "RadioButton", zh("单选按钮"), zh("单选按钮"), basics, 100, 20},
        {ComboBox, "ComboBox", zh("下拉框"), zh("下拉列表"), basics, 120, 24},
        {ListBox, "ListBox", zh("列表框"), zh("列表框"), basics, 120, 100},
        {ProgressBar, "ProgressBar", zh("进度条"), zh("进度条"), advanced, 200, 20},
        {Slider, "Slider", zh("滑块"), zh("滑块"), advanced, 200, 30},
        {TreeView, "TreeView", zh("树形视图"), zh("树形视图"), advanced, 200, 150},
        {ListView, "ListView", zh("列表视图"), zh("列表视图"), advanced, 200, 150},
        {DrawingCanvas, "DrawingCanvas", zh("画布"), zh("画布"), basics, 280, 200},
        {PictureBox, "PictureBox", zh("图片框"), zh("图片框"), basics, 120, 120},
        {HorizontalLayout, "HorizontalLayout", zh("水平布局"), zh("水平布局"), layouts, 300, 36},
        {VerticalLayout, "VerticalLayout", zh("垂直布局"), zh("垂直布局"), layouts, 300, 120},
        {GridLayout, "GridLayout", zh("网格布局"), zh("网格布局"), layouts, 300, 80},
        {HorizontalSpacer, "HorizontalSpacer", zh("水平弹簧"), zh("水平弹簧"), layouts, 40, 20},
        {VerticalSpacer, "VerticalSpacer", zh("垂直弹簧"), zh("垂直弹簧"), layouts, 20, 40},
    };
    // clang-format on
    return types;
}

const ComponentTypeInfo *componentType(int type)
{
    const std::vector<ComponentTypeInfo> &types = componentTypes();
    const auto found =
        std::lower_bound(types.begin(), types.end(), type,
                         [](const ComponentTypeInfo &info, int t) { return info.type < t; });
    return found != types.end() && found->type == type ? &*found : nullptr;
}

const ComponentTypeInfo *componentTypeByKey(const QString &toolboxKey)
{
    for (const ComponentTypeInfo &info : componentTypes()) {
        if (toolboxKey == QLatin1String(info.key))
            return &info;
    }
    return nullptr;
}

QString componentDisplayName(int type)
{
    const ComponentTypeInfo *info = componentType(type);
    return info ? info->name : QStringLiteral("未知");
}

int usableComponentType(int stored)
{
    if (stored == tableComponentType)
        return ListView;
    return componentType(stored) ? stored : NoComponentType;
}

const std::vector<VLWinControlTypeInfo> &vlwinControlTypes()
{
    // clang-format off
    static const std::vector<VLWinControlTypeInfo> types = {
        {VLWinWindow, QStringLiteral("窗口"), Window, 640, 480, 200, 100},
        {VLWinButton, QStringLiteral("按钮"), Button, 100, 32, 40, 24},
        {VLWinLabel, QStringLiteral("标签"), Label, 80, 24, 30, 20},
        {VLWinTextBox, QStringLiteral("文本框"), TextBox, 160, 28, 60, 22},
        {VLWinCheckBox, QStringLiteral("复选框"), CheckBox, 120, 22, 72, 20},
        {VLWinRadioButton, QStringLiteral("单选框"), RadioButton, 120, 22, 72, 20},
        {VLWinTextArea, QStringLiteral("多行文本框"), TextArea, 200, 80, 80, 48},
        {VLWinComboBox, QStringLiteral("下拉框"), ComboBox, 180, 30, 80, 24},
        {VLWinGroupBox, QStringLiteral("分组框"), GroupBox, 200, 120, 120, 60},
        {VLWinTableView, QStringLiteral("表格"), tableComponentType, 320, 200, 160, 80},
        {VLWinPictureBox, QStringLiteral("图片框"), PictureBox, 120, 120, 48, 48},
    };
    // clang-format on
    return types;
}

const VLWinControlTypeInfo *vlwinControlType(int type)
{
    const std::vector<VLWinControlTypeInfo> &types = vlwinControlTypes();
    return type >= 0 && type < int(types.size()) ? &types[size_t(type)] : nullptr;
}

const VLWinControlTypeInfo *vlwinControlTypeOfClassic(int classicType)
{
    for (const VLWinControlTypeInfo &info : vlwinControlTypes()) {
        if (info.classicType == classicType)
            return &info;
    }
    return nullptr;
}

QString vlwinControlDisplayName(int type)
{
    const VLWinControlTypeInfo *info = vlwinControlType(type);
    return info ? QStringLiteral("自绘") + info->nameBase : QStringLiteral("未知");
}

int classicTypeOfVlwin(int type)
{
    const VLWinControlTypeInfo *info = vlwinControlType(type);
    return info ? info->classicType : NoComponentType;
}

} // namespace VL
