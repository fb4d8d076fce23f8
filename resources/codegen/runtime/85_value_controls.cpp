// Value, range and step of progress bars and sliders.
#include "85_value_controls.h"

#include <algorithm>

namespace vl_value_controls {
namespace {

bool isBar(HWND control)
{
    return VL_HasClass(control, PROGRESS_CLASSW);
}

bool isSlider(HWND control)
{
    return VL_HasClass(control, TRACKBAR_CLASSW);
}

// A change by code that the owner shall hear of like one by hand.
void tellSliderMoved(HWND slider)
{
    const bool upright = (GetWindowLongW(slider, GWL_STYLE) & TBS_VERT) != 0;
    SendMessageW(GetParent(slider), upright ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(TB_LINEUP, 0),
                 (LPARAM)slider);
}

} // namespace
} // namespace vl_value_controls

int VL_GetValue(HWND control)
{
    using namespace vl_value_controls;
    if (isBar(control))
        return (int)SendMessageW(control, PBM_GETPOS, 0, 0);
    return isSlider(control) ? (int)SendMessageW(control, TBM_GETPOS, 0, 0) : 0;
}

void VL_SetValue(HWND control, int value)
{
    using namespace vl_value_controls;
    const int greatest = VL_GetMaxValue(control);
    value = (std::max)(VL_GetMinValue(control), (std::min)(value, greatest));
    if (isBar(control)) {
        VL_PrepareProgressBar(control);
        SendMessageW(control, PBM_SETPOS, (WPARAM)value, 0);
    } else if (isSlider(control) && value != VL_GetValue(control)) {
        SendMessageW(control, TBM_SETPOS, TRUE, value);
        tellSliderMoved(control);
    }
}

int VL_GetMinValue(HWND control)
{
    using namespace vl_value_controls;
    if (isBar(control))
        return (int)SendMessageW(control, PBM_GETRANGE, TRUE, 0);
    return isSlider(control) ? (int)SendMessageW(control, TBM_GETRANGEMIN, 0, 0) : 0;
}

int VL_GetMaxValue(HWND control)
{
    using namespace vl_value_controls;
    if (isBar(control))
        return (int)SendMessageW(control, PBM_GETRANGE, FALSE, 0);
    return isSlider(control) ? (int)SendMessageW(control, TBM_GETRANGEMAX, 0, 0) : 0;
}

void VL_SetMinValue(HWND control, int value)
{
    VL_SetRange(control, value, (std::max)(value, VL_GetMaxValue(control)));
}

void VL_SetMaxValue(HWND control, int value)
{
    VL_SetRange(control, (std::min)(value, VL_GetMinValue(control)), value);
}

int VL_GetMin(HWND control)
{
    return VL_GetMinValue(control);
}

int VL_GetMax(HWND control)
{
    return VL_GetMaxValue(control);
}

void VL_SetRange(HWND control, int least, int greatest)
{
    using namespace vl_value_controls;
    if (least > greatest)
        std::swap(least, greatest);
    if (isBar(control)) {
        VL_PrepareProgressBar(control);
        SendMessageW(control, PBM_SETRANGE32, (WPARAM)least, greatest);
    } else if (isSlider(control)) {
        const int before = VL_GetValue(control);
        // One end at a time: neither may pass the other on the way, or the value is lost.
        const bool upward = greatest > VL_GetMaxValue(control);
        SendMessageW(control, upward ? TBM_SETRANGEMAX : TBM_SETRANGEMIN, FALSE,
                     upward ? greatest : least);
        SendMessageW(control, upward ? TBM_SETRANGEMIN : TBM_SETRANGEMAX, TRUE,
                     upward ? least : greatest);
        if (VL_GetValue(control) != before)
            tellSliderMoved(control);
    }
}

int VL_GetStep(HWND control)
{
    using namespace vl_value_controls;
    if (isSlider(control))
        return (int)SendMessageW(control, TBM_GETLINESIZE, 0, 0);
    return isBar(control) ? VL_GetNumberProperty(control, L"VL_Step", 10) : 0;
}

void VL_SetStep(HWND control, int step)
{
    using namespace vl_value_controls;
    if (isSlider(control)) {
        SendMessageW(control, TBM_SETLINESIZE, 0, step);
    } else if (isBar(control)) {
        SendMessageW(control, PBM_SETSTEP, (WPARAM)step, 0);
        SetPropW(control, L"VL_Step", (HANDLE)(intptr_t)step);
    }
}

int VL_GetPercent(HWND control)
{
    const long long least = VL_GetMinValue(control);
    const long long range = VL_GetMaxValue(control) - least;
    return range > 0 ? (int)((VL_GetValue(control) - least) * 100 / range) : 0;
}

int VL_Slider_GetPercent(HWND slider)
{
    return VL_GetPercent(slider);
}
