// What keeps thousands of changes to a control quick.
#include "76_bulk_changes.h"

WNDPROC VL_ClassProcedure(HWND window)
{
    wchar_t name[256] = L"";
    WNDCLASSEXW info = {};
    info.cbSize = sizeof(info);
    if (!GetClassNameW(window, name, 256) || !GetClassInfoExW(NULL, name, &info))
        return NULL;
    return info.lpfnWndProc;
}

VL_WindowTable::VL_WindowTable()
{
    InitializeCriticalSection(&m_lock);
}

void *VL_WindowTable::find(HWND window)
{
    EnterCriticalSection(&m_lock);
    const auto found = m_records.find(window);
    void *record = found == m_records.end() ? nullptr : found->second;
    LeaveCriticalSection(&m_lock);
    return record;
}

void VL_WindowTable::set(HWND window, void *record)
{
    EnterCriticalSection(&m_lock);
    if (record)
        m_records[window] = record;
    else
        m_records.erase(window);
    LeaveCriticalSection(&m_lock);
}

void VL_HeldDrawing::setRedraw(HWND control, bool on)
{
    m_own = true;
    SendMessageW(control, WM_SETREDRAW, on, 0);
    m_own = false;
}

void VL_HeldDrawing::hold(HWND control)
{
    if (m_held)
        return;
    m_held = true;
    setRedraw(control, false);
    if (m_updates == 0)
        PostMessageW(control, Message, 0, 0);
}

bool VL_HeldDrawing::show(HWND control)
{
    if (!m_held || m_updates > 0)
        return false;
    m_held = false;
    setRedraw(control, true);
    InvalidateRect(control, NULL, FALSE);
    return true;
}

void VL_HeldDrawing::begin(HWND control)
{
    ++m_updates;
    hold(control);
}

bool VL_HeldDrawing::end(HWND control)
{
    if (m_updates > 0)
        --m_updates;
    return show(control);
}

void VL_HeldDrawing::seeSetRedraw()
{
    if (!m_own)
        m_held = false;
}
