// Keys and mouse: pressing, moving, clicking, and their state.
#include "65_input_simulation.h"

#include <algorithm>
#include <cstring>

namespace vl_input_simulation {
namespace {

struct KeyName
{
    const wchar_t *name;
    WORD code;
};

const KeyName kKeyNames[] = {
    {L"ctrl", VK_CONTROL},
    {L"control", VK_CONTROL},
    {L"shift", VK_SHIFT},
    {L"alt", VK_MENU},
    {L"win", VK_LWIN},
    {L"enter", VK_RETURN},
    {L"return", VK_RETURN},
    {L"\u56DE\u8F66", VK_RETURN},
    {L"tab", VK_TAB},
    {L"esc", VK_ESCAPE},
    {L"escape", VK_ESCAPE},
    {L"space", VK_SPACE},
    {L"\u7A7A\u683C", VK_SPACE},
    {L"backspace", VK_BACK},
    {L"\u9000\u683C", VK_BACK},
    {L"delete", VK_DELETE},
    {L"del", VK_DELETE},
    {L"insert", VK_INSERT},
    {L"ins", VK_INSERT},
    {L"home", VK_HOME},
    {L"end", VK_END},
    {L"pageup", VK_PRIOR},
    {L"pagedown", VK_NEXT},
    {L"up", VK_UP},
    {L"down", VK_DOWN},
    {L"left", VK_LEFT},
    {L"right", VK_RIGHT},
    {L"\u4E0A", VK_UP},
    {L"\u4E0B", VK_DOWN},
    {L"\u5DE6", VK_LEFT},
    {L"\u53F3", VK_RIGHT},
    {L"capslock", VK_CAPITAL},
    {L"numlock", VK_NUMLOCK},
    {L"scrolllock", VK_SCROLL},
    {L"printscreen", VK_SNAPSHOT},
    {L"pause", VK_PAUSE},
    {L"apps", VK_APPS},
    {L"plus", VK_OEM_PLUS},
};

// The key that makes a character, with the shift key before it where it takes that; letters stand
// for their key alone.
void appendCharacter(wchar_t character, std::vector<WORD> &keys)
{
    const SHORT code = VkKeyScanW(character);
    if (code == -1)
        return;
    const WORD key = (WORD)(code & 0xFF);
    if ((code & 0x100) && !(key >= L'A' && key <= L'Z'))
        keys.push_back(VK_SHIFT);
    keys.push_back(key);
}

// Appends nothing when no key has that name.
void appendNamed(std::wstring name, std::vector<WORD> &keys)
{
    name.erase(0, name.find_first_not_of(L" "));
    name.erase(name.find_last_not_of(L" ") + 1);
    for (const KeyName &row : kKeyNames) {
        if (_wcsicmp(name.c_str(), row.name) == 0) {
            keys.push_back(row.code);
            return;
        }
    }
    if (name.size() == 1)
        appendCharacter(name[0], keys);
    if (name.size() < 2 || name.size() > 3 || (name[0] != L'F' && name[0] != L'f'))
        return;
    bool whole = false;
    const long long number = VL_ReadInteger(name.substr(1), &whole);
    if (whole && number >= 1 && number <= 24)
        keys.push_back((WORD)(VK_F1 + number - 1));
}

// The keys in the order in which they go down; empty when one of them is not known.
std::vector<WORD> keysOf(const VL_Any &key)
{
    std::vector<WORD> keys;
    if (key.type != VL_Any::TypeString) {
        const long long code = VL_AnyToInteger(key);
        if (code > 0 && code < 0xFF)
            keys.push_back((WORD)code);
        return keys;
    }
    const std::wstring &names = key.strVal;
    for (size_t begin = 0; begin < names.size();) {
        // A "+" where a name should begin is the key itself.
        const size_t plus = std::min(names.find(L'+', begin + 1), names.size());
        const size_t before = keys.size();
        appendNamed(names.substr(begin, plus - begin), keys);
        if (keys.size() == before || keys.size() > 16)
            return std::vector<WORD>();
        begin = plus + 1;
    }
    return keys;
}

bool isExtended(WORD key)
{
    const WORD keys[] = {VK_PRIOR, VK_NEXT,   VK_END,      VK_HOME,    VK_LEFT,     VK_UP,
                         VK_RIGHT, VK_DOWN,   VK_INSERT,   VK_DELETE,  VK_LWIN,     VK_RWIN,
                         VK_APPS,  VK_DIVIDE, VK_SNAPSHOT, VK_NUMLOCK, VK_RCONTROL, VK_RMENU};
    return std::find(std::begin(keys), std::end(keys), key) != std::end(keys);
}

INPUT keyInput(WORD key, bool down)
{
    INPUT input;
    memset(&input, 0, sizeof input);
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = (WORD)MapVirtualKeyW(key, MAPVK_VK_TO_VSC);
    input.ki.dwFlags =
        (down ? 0u : KEYEVENTF_KEYUP) | (isExtended(key) ? KEYEVENTF_EXTENDEDKEY : 0u);
    return input;
}

INPUT mouseInput(DWORD flags, DWORD data)
{
    INPUT input;
    memset(&input, 0, sizeof input);
    input.type = INPUT_MOUSE;
    input.mi.dwFlags = flags;
    input.mi.mouseData = data;
    return input;
}

struct Button
{
    DWORD down;
    DWORD up;
    DWORD data;
};

// The buttons are swapped for left-handed users by the system: what is sent is the physical one.
bool findButton(intptr_t number, Button &button)
{
    const bool swapped = GetSystemMetrics(SM_SWAPBUTTON) != 0;
    if (swapped && (number == VK_LBUTTON || number == VK_RBUTTON))
        number = number == VK_LBUTTON ? VK_RBUTTON : VK_LBUTTON;
    switch (number) {
    case VK_LBUTTON:
        button = {MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP, 0};
        return true;
    case VK_RBUTTON:
        button = {MOUSEEVENTF_RIGHTDOWN, MOUSEEVENTF_RIGHTUP, 0};
        return true;
    case VK_MBUTTON:
        button = {MOUSEEVENTF_MIDDLEDOWN, MOUSEEVENTF_MIDDLEUP, 0};
        return true;
    case VK_XBUTTON1:
        button = {MOUSEEVENTF_XDOWN, MOUSEEVENTF_XUP, XBUTTON1};
        return true;
    case VK_XBUTTON2:
        button = {MOUSEEVENTF_XDOWN, MOUSEEVENTF_XUP, XBUTTON2};
        return true;
    default:
        return false;
    }
}

bool send(std::vector<INPUT> &inputs)
{
    return !inputs.empty() &&
           SendInput((UINT)inputs.size(), inputs.data(), sizeof(INPUT)) == inputs.size();
}

const intptr_t kCurrentPlace = -2147483646;
const intptr_t kMostClicks = 100;

bool isScreenUnit(intptr_t value)
{
    return value >= -0x10000 && value <= 0x10000;
}

} // namespace
} // namespace vl_input_simulation

bool VL_SendKey(const VL_Any &key, intptr_t action)
{
    const std::vector<WORD> keys = vl_input_simulation::keysOf(key);
    std::vector<INPUT> inputs;
    if (action == 0 || action == 1)
        for (const WORD code : keys)
            inputs.push_back(vl_input_simulation::keyInput(code, true));
    if (action == 0 || action == 2)
        for (size_t i = keys.size(); i-- > 0;)
            inputs.push_back(vl_input_simulation::keyInput(keys[i], false));
    return vl_input_simulation::send(inputs);
}

bool VL_MouseClick(intptr_t x, intptr_t y, intptr_t button, intptr_t count)
{
    vl_input_simulation::Button events;
    if (count < 1 || !vl_input_simulation::findButton(button, events))
        return false;
    const bool hasX = x != vl_input_simulation::kCurrentPlace;
    const bool hasY = y != vl_input_simulation::kCurrentPlace;
    if ((hasX || hasY) && !VL_MoveMouse(hasX ? x : VL_GetMouseX(), hasY ? y : VL_GetMouseY()))
        return false;
    std::vector<INPUT> inputs;
    for (intptr_t i = 0; i < std::min(count, vl_input_simulation::kMostClicks); ++i) {
        inputs.push_back(vl_input_simulation::mouseInput(events.down, events.data));
        inputs.push_back(vl_input_simulation::mouseInput(events.up, events.data));
    }
    return vl_input_simulation::send(inputs);
}

int VL_GetMouseX()
{
    POINT point = {0, 0};
    return GetCursorPos(&point) ? (int)point.x : 0;
}

int VL_GetMouseY()
{
    POINT point = {0, 0};
    return GetCursorPos(&point) ? (int)point.y : 0;
}

bool VL_MoveMouse(intptr_t x, intptr_t y)
{
    return vl_input_simulation::isScreenUnit(x) && vl_input_simulation::isScreenUnit(y) &&
           SetCursorPos((int)x, (int)y);
}

bool VL_GetKeyState(const VL_Any &key)
{
    const std::vector<WORD> keys = vl_input_simulation::keysOf(key);
    for (const WORD code : keys)
        if (!(GetAsyncKeyState(code) & 0x8000))
            return false;
    return !keys.empty();
}
