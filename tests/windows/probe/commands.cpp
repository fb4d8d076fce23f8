#include "commands.h"

#include "reading.h"

#include <algorithm>
#include <cstdio>

namespace {

enum class Kind
{
    Reading,
    Action
};

enum class Subject
{
    Control, // the first word names it
    None
};

std::wstring joined(const std::vector<std::wstring> &words)
{
    std::wstring text;
    for (const std::wstring &word : words)
        text += (text.empty() ? L"" : L" ") + word;
    return text;
}

int number(const std::vector<std::wstring> &words, size_t index)
{
    return index < words.size() ? _wtoi(words[index].c_str()) : 0;
}

std::wstring numbers(std::initializer_list<long> values)
{
    std::wstring text;
    for (long value : values)
        text += (text.empty() ? L"" : L" ") + std::to_wstring(value);
    return text;
}

std::wstring hexadecimal(unsigned value)
{
    wchar_t text[16];
    swprintf(text, 16, L"%08X", value);
    return text;
}

// In the client area of the window, in pixels of the screen.
RECT placeIn(HWND window, HWND control)
{
    RECT place = {};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT *>(&place), 2);
    return place;
}

std::wstring placeText(const RECT &place)
{
    return numbers({place.left, place.top, place.right - place.left, place.bottom - place.top});
}

// A bitmap file of the whole screen.
bool saveScreen(const std::wstring &path)
{
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    BITMAPINFOHEADER head = {};
    head.biSize = sizeof head;
    head.biWidth = width;
    head.biHeight = height;
    head.biPlanes = 1;
    head.biBitCount = 32;
    const HDC screen = GetDC(nullptr), memory = CreateCompatibleDC(screen);
    void *bits = nullptr;
    const HBITMAP bitmap = CreateDIBSection(screen, reinterpret_cast<BITMAPINFO *>(&head),
                                            DIB_RGB_COLORS, &bits, nullptr, 0);
    SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, 0, 0, SRCCOPY);
    GdiFlush();
    const DWORD size = DWORD(width * height * 4);
    BITMAPFILEHEADER file = {};
    file.bfType = 0x4D42;
    file.bfOffBits = sizeof file + sizeof head;
    file.bfSize = file.bfOffBits + size;
    const HANDLE out =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool done = WriteFile(out, &file, sizeof file, &written, nullptr) &&
                      WriteFile(out, &head, sizeof head, &written, nullptr) &&
                      WriteFile(out, bits, size, &written, nullptr);
    CloseHandle(out);
    DeleteDC(memory);
    DeleteObject(bitmap);
    ReleaseDC(nullptr, screen);
    return done;
}

} // namespace

struct Commands::Command
{
    const wchar_t *name;
    Lines (Commands::*run)(HWND, const Words &);
    Kind kind;
    Subject subject;
};

const Commands::Command *Commands::find(const std::wstring &name)
{
    static const Command commands[] = {
        // Reading: the lines are compared.
        {L"windows", &Commands::windows, Kind::Reading, Subject::None},
        {L"log", &Commands::log, Kind::Reading, Subject::None},
        {L"text", &Commands::text, Kind::Reading, Subject::Control},
        {L"items", &Commands::items, Kind::Reading, Subject::Control},
        {L"rows", &Commands::rows, Kind::Reading, Subject::Control},
        {L"columns", &Commands::columns, Kind::Reading, Subject::Control},
        {L"tree", &Commands::tree, Kind::Reading, Subject::Control},
        {L"value", &Commands::value, Kind::Reading, Subject::Control},
        {L"menu", &Commands::menu, Kind::Reading, Subject::None},
        {L"place", &Commands::place, Kind::Reading, Subject::Control},
        {L"places", &Commands::places, Kind::Reading, Subject::None},
        {L"client", &Commands::client, Kind::Reading, Subject::None},
        {L"state", &Commands::state, Kind::Reading, Subject::Control},
        {L"style", &Commands::style, Kind::Reading, Subject::Control},
        {L"class", &Commands::className, Kind::Reading, Subject::Control},
        {L"pixel", &Commands::pixel, Kind::Reading, Subject::Control},
        {L"focused", &Commands::focused, Kind::Reading, Subject::None},
        {L"grown", &Commands::grown, Kind::Reading, Subject::None},
        // Doing: nothing is said unless it cannot be done.
        {L"window", &Commands::window, Kind::Action, Subject::None},
        {L"gone", &Commands::gone, Kind::Action, Subject::None},
        {L"set", &Commands::set, Kind::Action, Subject::Control},
        {L"type", &Commands::type, Kind::Action, Subject::None},
        {L"key", &Commands::key, Kind::Action, Subject::None},
        {L"click", &Commands::click, Kind::Action, Subject::Control},
        {L"doubleclick", &Commands::doubleClick, Kind::Action, Subject::Control},
        {L"rightclick", &Commands::rightClick, Kind::Action, Subject::Control},
        {L"hover", &Commands::hover, Kind::Action, Subject::Control},
        {L"press", &Commands::press, Kind::Action, Subject::Control},
        {L"release", &Commands::release, Kind::Action, Subject::None},
        {L"drag", &Commands::drag, Kind::Action, Subject::Control},
        {L"wheel", &Commands::wheel, Kind::Action, Subject::Control},
        {L"focus", &Commands::focus, Kind::Action, Subject::Control},
        {L"pick", &Commands::pick, Kind::Action, Subject::Control},
        {L"resize", &Commands::resize, Kind::Action, Subject::None},
        {L"move", &Commands::move, Kind::Action, Subject::None},
        {L"close", &Commands::close, Kind::Action, Subject::None},
        {L"objects", &Commands::objects, Kind::Action, Subject::None},
        {L"shot", &Commands::shot, Kind::Action, Subject::None},
    };
    for (const Command &command : commands) {
        if (name == command.name)
            return &command;
    }
    return nullptr;
}

Lines Commands::run(const std::wstring &command)
{
    Words words = splitWords(command);
    const Command *known = words.empty() ? nullptr : find(words[0]);
    if (!known)
        return {L"(no such command)"};
    words.erase(words.begin());
    if (known->subject == Subject::None)
        return (this->*known->run)(nullptr, words);
    if (words.empty())
        return {L"(no control is named)"};
    HWND control = m_program.control(words[0]);
    if (!control)
        waitUntil([&] { return (control = m_program.control(words[0])) != nullptr; }, 500);
    if (!control)
        return {m_program.isRunning() ? L"(no such control)" : L"(the program is gone)"};
    words.erase(words.begin());
    return (this->*known->run)(control, words);
}

bool Commands::isReading(const std::wstring &command) const
{
    const Words words = splitWords(command);
    const Command *known = words.empty() ? nullptr : find(words[0]);
    return known && known->kind == Kind::Reading;
}

bool Commands::runAgain(const std::wstring &command, Lines *lines)
{
    const Lines fresh = run(command);
    if (command == L"log") {
        lines->insert(lines->end(), fresh.begin(), fresh.end());
        return !fresh.empty();
    }
    const bool changed = fresh != *lines;
    *lines = fresh;
    return changed;
}

Lines Commands::window(HWND, const Words &words)
{
    if (!m_program.use(joined(words)))
        return {L"(no such window)"};
    SetWindowPos(m_program.window(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    SetForegroundWindow(m_program.window());
    m_program.settle();
    return {};
}

Lines Commands::windows(HWND, const Words &)
{
    Lines lines;
    for (HWND window : m_program.visibleWindows())
        lines.push_back(textOf(m_program, window));
    std::sort(lines.begin(), lines.end());
    return lines;
}

Lines Commands::log(HWND, const Words &)
{
    return m_program.takeOutput();
}

Lines Commands::gone(HWND, const Words &)
{
    if (!waitUntil([this] { return !m_program.isRunning(); }, Program::kLimit))
        return {L"(still running)"};
    return {L"exit code " + std::to_wstring(int(m_program.exitCode()))};
}

Lines Commands::text(HWND control, const Words &)
{
    return {textOf(m_program, control)};
}

// As a user does it: click, mark all, delete, type.
Lines Commands::set(HWND control, const Words &words)
{
    clickTimes(control, {}, MouseButton::Left, 1);
    m_input.key(L"Ctrl+Home");
    m_input.key(L"Ctrl+Shift+End");
    m_input.key(L"Delete");
    m_input.type(joined(words));
    return {};
}

Lines Commands::type(HWND, const Words &words)
{
    m_input.type(joined(words));
    return {};
}

Lines Commands::key(HWND, const Words &words)
{
    for (const std::wstring &word : words) {
        if (!m_input.key(word))
            return {L"(no such key)"};
    }
    return {};
}

Lines Commands::clickTimes(HWND control, const Words &words, MouseButton button, int times)
{
    const std::optional<POINT> point = m_input.pointIn(control, words);
    if (!point)
        return {L"(no such item)"};
    m_input.click(*point, button, times);
    return {};
}

Lines Commands::click(HWND control, const Words &words)
{
    return clickTimes(control, words, MouseButton::Left, 1);
}

Lines Commands::doubleClick(HWND control, const Words &words)
{
    return clickTimes(control, words, MouseButton::Left, 2);
}

Lines Commands::rightClick(HWND control, const Words &words)
{
    return clickTimes(control, words, MouseButton::Right, 1);
}

Lines Commands::hover(HWND control, const Words &words)
{
    const std::optional<POINT> point = m_input.pointIn(control, words);
    if (!point)
        return {L"(no such item)"};
    moveMouse(*point);
    m_input.moveTo(*point);
    return {};
}

Lines Commands::press(HWND control, const Words &words)
{
    const Lines missing = hover(control, words);
    if (missing.empty())
        m_input.press(MouseButton::Left);
    return missing;
}

Lines Commands::release(HWND, const Words &)
{
    m_input.release(MouseButton::Left);
    return {};
}

Lines Commands::drag(HWND control, const Words &words)
{
    if (words.size() < 4)
        return {L"(drag CONTROL X Y X Y)"};
    const auto from = m_input.pointIn(control, {words[0], words[1]});
    const auto to = m_input.pointIn(control, {words[2], words[3]});
    m_input.drag(*from, *to);
    return {};
}

Lines Commands::wheel(HWND control, const Words &words)
{
    m_input.wheel(*m_input.pointIn(control, {}), number(words, 0));
    return {};
}

Lines Commands::focus(HWND control, const Words &)
{
    m_input.focus(control);
    return {};
}

Lines Commands::focused(HWND, const Words &)
{
    GUITHREADINFO info = {};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(GetWindowThreadProcessId(m_program.window(), nullptr), &info);
    return {m_program.nameOf(info.hwndFocus)};
}

// An item of a combo box: opens it and clicks on the item.
Lines Commands::pick(HWND control, const Words &words)
{
    RECT area = {};
    GetClientRect(control, &area);
    clickTimes(control, {std::to_wstring(area.right - 8), std::to_wstring(area.bottom / 2)},
               MouseButton::Left, 1);
    const std::optional<POINT> item = droppedItem(m_program, control, number(words, 0));
    if (!item)
        return {L"(no such item)"};
    m_input.click(*item, MouseButton::Left, 1);
    return {};
}

Lines Commands::items(HWND control, const Words &)
{
    return itemsOf(m_program, control);
}

Lines Commands::rows(HWND control, const Words &)
{
    return rowsOf(m_program, control);
}

Lines Commands::columns(HWND control, const Words &)
{
    return columnsOf(m_program, control);
}

Lines Commands::tree(HWND control, const Words &)
{
    return treeOf(m_program, control);
}

Lines Commands::value(HWND control, const Words &)
{
    return {valueOf(m_program, control)};
}

Lines Commands::menu(HWND, const Words &)
{
    return menuOf(m_program);
}

Lines Commands::place(HWND control, const Words &)
{
    return {placeText(placeIn(m_program.window(), control))};
}

Lines Commands::places(HWND, const Words &)
{
    Lines lines;
    for (const auto &control : m_program.controls())
        lines.push_back(control.first + L" " +
                        placeText(placeIn(m_program.window(), control.second)));
    return lines;
}

Lines Commands::client(HWND, const Words &)
{
    RECT area = {};
    GetClientRect(m_program.window(), &area);
    return {numbers({area.right, area.bottom})};
}

Lines Commands::state(HWND control, const Words &)
{
    std::wstring words = IsWindowVisible(control) ? L"visible" : L"hidden";
    words += IsWindowEnabled(control) ? L" enabled" : L" disabled";
    if (IsZoomed(control))
        words += L" maximized";
    if (IsIconic(control))
        words += L" minimized";
    if (GetWindowLongW(control, GWL_EXSTYLE) & WS_EX_TOPMOST)
        words += L" topmost";
    return {words};
}

Lines Commands::style(HWND control, const Words &)
{
    return {hexadecimal(unsigned(GetWindowLongW(control, GWL_STYLE))) + L" " +
            hexadecimal(unsigned(GetWindowLongW(control, GWL_EXSTYLE)))};
}

Lines Commands::className(HWND control, const Words &)
{
    return {classOf(control)};
}

Lines Commands::pixel(HWND control, const Words &words)
{
    POINT point = {number(words, 0), number(words, 1)};
    ClientToScreen(control, &point);
    const HDC screen = GetDC(nullptr);
    const COLORREF color = GetPixel(screen, point.x, point.y);
    ReleaseDC(nullptr, screen);
    wchar_t text[16];
    swprintf(text, 16, L"#%02X%02X%02X", GetRValue(color), GetGValue(color), GetBValue(color));
    return {text};
}

Lines Commands::resize(HWND, const Words &words)
{
    const HWND window = m_program.window();
    RECT outer = {}, inner = {};
    GetWindowRect(window, &outer);
    GetClientRect(window, &inner);
    SetWindowPos(window, nullptr, 0, 0, number(words, 0) + outer.right - outer.left - inner.right,
                 number(words, 1) + outer.bottom - outer.top - inner.bottom,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    m_program.settle();
    return {};
}

Lines Commands::move(HWND, const Words &words)
{
    SetWindowPos(m_program.window(), nullptr, number(words, 0), number(words, 1), 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    m_program.settle();
    return {};
}

Lines Commands::close(HWND, const Words &)
{
    PostMessageW(m_program.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
    m_program.settle();
    return {};
}

Lines Commands::objects(HWND, const Words &)
{
    m_held = m_program.held();
    return {};
}

// What there is more than at "objects"; a few may have been made once for all.
Lines Commands::grown(HWND, const Words &words)
{
    const HeldObjects now = m_program.held();
    const int few = number(words, 0);
    const int drawing = now.drawing - m_held.drawing, windows = now.windows - m_held.windows;
    if (drawing <= few && windows <= few)
        return {L"nothing"};
    return {L"drawing " + std::to_wstring(drawing) + L", windows " + std::to_wstring(windows)};
}

Lines Commands::shot(HWND, const Words &words)
{
    return saveScreen(joined(words)) ? Lines() : Lines{L"(not saved)"};
}
