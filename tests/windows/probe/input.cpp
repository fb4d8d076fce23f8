#include "input.h"

#include "reading.h"

#include <cstdlib>

namespace {

// Beyond this distance two clicks are no double click.
const int kApart = 8;

// Between a move of the mouse and a press.
const DWORD kHandTime = 40;

struct KeyName
{
    const wchar_t *name;
    WORD key;
};

const KeyName kKeys[] = {
    {L"Enter", VK_RETURN},  {L"Tab", VK_TAB},     {L"Esc", VK_ESCAPE},   {L"Space", VK_SPACE},
    {L"Left", VK_LEFT},     {L"Right", VK_RIGHT}, {L"Up", VK_UP},        {L"Down", VK_DOWN},
    {L"Home", VK_HOME},     {L"End", VK_END},     {L"PageUp", VK_PRIOR}, {L"PageDown", VK_NEXT},
    {L"Delete", VK_DELETE}, {L"Back", VK_BACK},   {L"F1", VK_F1},        {L"F2", VK_F2},
    {L"F4", VK_F4},         {L"F5", VK_F5},       {L"F10", VK_F10},      {L"Ctrl", VK_CONTROL},
    {L"Shift", VK_SHIFT},   {L"Alt", VK_MENU},    {L"Menu", VK_APPS},
};

WORD keyOf(const std::wstring &name)
{
    for (const KeyName &key : kKeys) {
        if (name == key.name)
            return key.key;
    }
    const bool single = name.size() == 1 && ((name[0] >= L'A' && name[0] <= L'Z') ||
                                             (name[0] >= L'0' && name[0] <= L'9'));
    return single ? WORD(name[0]) : WORD(0);
}

LONG asShareOf(LONG position, int metric)
{
    const LONG size = GetSystemMetrics(metric);
    return (position * 65536 + size - 1) / size;
}

// With its place: news of an older place of the mouse may still be under way.
void sendMouse(POINT place, DWORD flags, int data = 0)
{
    INPUT input = {};
    input.type = INPUT_MOUSE;
    input.mi.dx = asShareOf(place.x, SM_CXSCREEN);
    input.mi.dy = asShareOf(place.y, SM_CYSCREEN);
    input.mi.dwFlags = flags | MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE;
    input.mi.mouseData = DWORD(data);
    SendInput(1, &input, sizeof input);
}

void sendKey(WORD key, WORD scan, DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = key ? WORD(MapVirtualKeyW(key, MAPVK_VK_TO_VSC)) : scan;
    const bool extended = (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE || key == VK_APPS;
    input.ki.dwFlags = flags | (extended ? DWORD(KEYEVENTF_EXTENDEDKEY) : 0);
    SendInput(1, &input, sizeof input);
}

bool isNear(POINT a, POINT b)
{
    return std::abs(a.x - b.x) < kApart && std::abs(a.y - b.y) < kApart;
}

DWORD downFlag(MouseButton button)
{
    return button == MouseButton::Left    ? MOUSEEVENTF_LEFTDOWN
           : button == MouseButton::Right ? MOUSEEVENTF_RIGHTDOWN
                                          : MOUSEEVENTF_MIDDLEDOWN;
}

DWORD upFlag(MouseButton button)
{
    return button == MouseButton::Left    ? MOUSEEVENTF_LEFTUP
           : button == MouseButton::Right ? MOUSEEVENTF_RIGHTUP
                                          : MOUSEEVENTF_MIDDLEUP;
}

} // namespace

// The middle, or a little beside it when the last click was just there.
POINT Input::restingPoint(HWND control)
{
    RECT area = {};
    GetClientRect(control, &area);
    POINT point = {area.right / 2, area.bottom / 2};
    ClientToScreen(control, &point);
    if (isNear(point, m_lastClick))
        point.x += m_lastClick.x > point.x ? -kApart : kApart;
    return point;
}

std::optional<POINT> Input::pointIn(HWND control, const std::vector<std::wstring> &words)
{
    if (words.empty())
        return restingPoint(control);
    POINT point = {};
    if (words[0][0] == L'#' || words[0][0] == L'^') {
        const std::optional<RECT> item = itemRectangle(m_program, control, words[0]);
        if (!item)
            return std::nullopt;
        point = {(item->left + item->right) / 2, (item->top + item->bottom) / 2};
    } else {
        point = {_wtoi(words[0].c_str()), words.size() > 1 ? _wtoi(words[1].c_str()) : 0};
    }
    ClientToScreen(control, &point);
    return point;
}

void Input::moveTo(POINT point)
{
    m_place = point;
    // News of a move comes by the screen's own way: late news of an earlier one takes the pointer
    // back, and news that came while a button is down would be taken for dragging.
    const int enough = 3;
    int still = 0;
    for (int tries = 0; still < enough && tries < 20; ++tries) {
        POINT now = {};
        still = GetCursorPos(&now) && now.x == point.x && now.y == point.y ? still + 1 : 0;
        if (still == 0)
            SetCursorPos(point.x, point.y);
        Sleep(kHandTime);
    }
    m_program.settle();
}

void Input::press(MouseButton button)
{
    sendMouse(m_place, downFlag(button));
    m_program.settle();
}

void Input::release(MouseButton button)
{
    sendMouse(m_place, upFlag(button));
    m_program.settle();
}

// Two clicks on one spot are two clicks only when there is time between them.
void Input::click(POINT point, MouseButton button, int times)
{
    if (isNear(point, m_lastClick)) {
        const ULONGLONG end = m_lastClickTime + GetDoubleClickTime();
        waitUntil([end] { return GetTickCount64() > end; }, GetDoubleClickTime() + 1);
    }
    moveTo(point);
    for (int i = 0; i < times; ++i) {
        press(button);
        release(button);
    }
    m_lastClick = point;
    m_lastClickTime = GetTickCount64();
}

void Input::drag(POINT from, POINT to)
{
    moveTo(from);
    press(MouseButton::Left);
    const int kSteps = 4;
    for (int i = 1; i <= kSteps; ++i)
        moveTo({from.x + (to.x - from.x) * i / kSteps, from.y + (to.y - from.y) * i / kSteps});
    release(MouseButton::Left);
    m_lastClick = to;
}

void Input::wheel(POINT point, int notches)
{
    moveTo(point);
    sendMouse(m_place, MOUSEEVENTF_WHEEL, notches * WHEEL_DELTA);
    m_program.settle();
}

void Input::focus(HWND control)
{
    const DWORD thread = GetWindowThreadProcessId(control, nullptr);
    AttachThreadInput(GetCurrentThreadId(), thread, TRUE);
    SetForegroundWindow(GetAncestor(control, GA_ROOT));
    SetFocus(control);
    AttachThreadInput(GetCurrentThreadId(), thread, FALSE);
    m_program.settle();
}

bool Input::key(const std::wstring &name)
{
    std::vector<WORD> keys;
    for (size_t begin = 0; begin <= name.size();) {
        const size_t end = std::min(name.find(L'+', begin), name.size());
        keys.push_back(keyOf(name.substr(begin, end - begin)));
        if (!keys.back())
            return false;
        begin = end + 1;
    }
    for (WORD key : keys)
        sendKey(key, 0, 0);
    for (size_t i = keys.size(); i-- > 0;)
        sendKey(keys[i], 0, KEYEVENTF_KEYUP);
    m_program.settle();
    return true;
}

void Input::type(const std::wstring &text)
{
    for (wchar_t unit : text) {
        sendKey(0, WORD(unit), KEYEVENTF_UNICODE);
        sendKey(0, WORD(unit), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
    }
    m_program.settle();
}
