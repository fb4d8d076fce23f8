// Right-click menus: built item by item, bound to controls, shown on a right click.
#pragma once
#include "34_window_state.h"

// A menu is a number, as is a submenu; functions on a number that is no menu do nothing. Menus live
// until they are destroyed and can be shared by any number of controls. Except for the drawing
// itself nothing here needs a window.

// What an item calls: with the control's handle (0 without one) and the item's number, with the
// handle alone, or with nothing, by what the function takes.
struct VL_ContextMenuCallback : std::function<void(intptr_t, int)>
{
    VL_ContextMenuCallback() = default;
    template <typename F>
    VL_ContextMenuCallback(F callback)
        : std::function<void(intptr_t, int)>(adapted(std::move(callback)))
    {}

private:
    template <typename F>
    static std::function<void(intptr_t, int)> adapted(F callback)
    {
        if constexpr (std::is_invocable<F, intptr_t, int>::value)
            return callback;
        else if constexpr (std::is_invocable<F, intptr_t>::value)
            return [callback](intptr_t control, int) mutable { callback(control); };
        else if constexpr (std::is_invocable<F>::value)
            return [callback](intptr_t, int) mutable { callback(); };
        else
            return [callback](intptr_t control, int id) mutable { callback(control, id, 0); };
    }
};

// What is called before a menu shows: with the control's handle and the menu, or with less.
struct VL_ContextMenuPreTrack : std::function<void(intptr_t, intptr_t)>
{
    VL_ContextMenuPreTrack() = default;
    template <typename F>
    VL_ContextMenuPreTrack(F callback)
        : std::function<void(intptr_t, intptr_t)>(adapted(std::move(callback)))
    {}

private:
    template <typename F>
    static std::function<void(intptr_t, intptr_t)> adapted(F callback)
    {
        if constexpr (std::is_invocable<F, intptr_t, intptr_t>::value)
            return callback;
        else if constexpr (std::is_invocable<F, intptr_t>::value)
            return [callback](intptr_t control, intptr_t) mutable { callback(control); };
        else
            return [callback](intptr_t, intptr_t) mutable { callback(); };
    }
};

intptr_t VL_ContextMenu_Create();
void VL_ContextMenu_Destroy(intptr_t menu);
// Removes all items, with their submenus.
void VL_ContextMenu_Clear(intptr_t menu);
// `id` names the item in all calls below; 0 is none. In `text` "&" marks the key, and what follows
// a tabulator stands at the right. `icon` is an image file, taken from the folder "resource" beside
// the program when it is relative, or "#5" for the program's resource 5. `flags` are MF_GRAYED,
// MF_CHECKED, MF_DEFAULT, MF_MENUBREAK or MF_MENUBARBREAK. False for no menu.
bool VL_ContextMenu_AddItem(intptr_t menu, intptr_t id, const std::wstring &text,
                            VL_ContextMenuCallback callback = VL_ContextMenuCallback(),
                            const std::wstring &icon = std::wstring(), intptr_t flags = 0);
bool VL_ContextMenu_AddSeparator(intptr_t menu, intptr_t id = 0);
// The submenu; 0 for no menu, and where submenus nest more than 24 deep.
intptr_t VL_ContextMenu_AddSubmenu(intptr_t menu, const std::wstring &text,
                                   const std::wstring &icon = std::wstring());
// The first item of that number, those of submenus included; false without one.
bool VL_ContextMenu_SetItemEnabled(intptr_t menu, intptr_t id, bool enabled);
bool VL_ContextMenu_SetItemChecked(intptr_t menu, intptr_t id, bool checked);
bool VL_ContextMenu_SetItemText(intptr_t menu, intptr_t id, const std::wstring &text);

// In functions on controls `control` is a handle as such or as an integer.

// Shows the menu and calls what the user picks. `x` and `y` are design pixels of the control's
// client area, of the screen without a control; -2147483646 stands for the mouse pointer. The
// number of the picked item, 0 for none.
intptr_t VL_ContextMenu_Show(intptr_t menu, HWND control, intptr_t x = -2147483646,
                             intptr_t y = -2147483646);
// From now on a right click on the control, the context menu key or Shift+F10 show the menu. A
// control has one menu at most. A `design` menu shows only while the control allows it.
bool VL_ContextMenu_Bind(HWND control, intptr_t menu, bool design = false);
void VL_ContextMenu_Unbind(HWND control);

// Whether the control's designed menu shows; it does until told otherwise.
void VL_ContextMenu_SetDesignContextAllowed(HWND control, bool allowed);
bool VL_ContextMenu_IsDesignContextAllowed(HWND control);
// Called before the control's menu shows, which it may change.
void VL_ContextMenu_SetDesignPreTrackCallback(
    HWND control, VL_ContextMenuPreTrack callback = VL_ContextMenuPreTrack());
void VL_ContextMenu_InvokeDesignPreTrackCallback(HWND control, intptr_t menu);

// Shows the menu at a point of the screen; the number of the picked item, which is not called.
intptr_t VL_ContextMenu_TrackAt(HWND owner, intptr_t menu, int x, int y);
// Calls what stands behind the item, for the control.
void VL_ContextMenu_InvokeItemCallback(intptr_t menu, HWND control, intptr_t id);

// A window procedure that shows the menu bound to an edit in the place of the system's. The
// property "VL_OldEditProc" of the edit holds the procedure that was there before.
LRESULT CALLBACK VL_EditSubclass_ContextMenuBindOnly(HWND edit, UINT message, WPARAM wParam,
                                                     LPARAM lParam);

template <typename T, VL_IfInteger<T> = 0>
intptr_t VL_ContextMenu_Show(intptr_t menu, T control, intptr_t x = -2147483646,
                             intptr_t y = -2147483646)
{
    return VL_ContextMenu_Show(menu, (HWND)(intptr_t)control, x, y);
}
template <typename T, VL_IfInteger<T> = 0>
bool VL_ContextMenu_Bind(T control, intptr_t menu, bool design = false)
{
    return VL_ContextMenu_Bind((HWND)(intptr_t)control, menu, design);
}
template <typename T, VL_IfInteger<T> = 0>
void VL_ContextMenu_Unbind(T control)
{
    VL_ContextMenu_Unbind((HWND)(intptr_t)control);
}
template <typename T, VL_IfInteger<T> = 0>
void VL_ContextMenu_SetDesignContextAllowed(T control, bool allowed)
{
    VL_ContextMenu_SetDesignContextAllowed((HWND)(intptr_t)control, allowed);
}
template <typename T, VL_IfInteger<T> = 0>
bool VL_ContextMenu_IsDesignContextAllowed(T control)
{
    return VL_ContextMenu_IsDesignContextAllowed((HWND)(intptr_t)control);
}
template <typename T, VL_IfInteger<T> = 0>
void VL_ContextMenu_SetDesignPreTrackCallback(
    T control, VL_ContextMenuPreTrack callback = VL_ContextMenuPreTrack())
{
    VL_ContextMenu_SetDesignPreTrackCallback((HWND)(intptr_t)control, std::move(callback));
}
template <typename T, VL_IfInteger<T> = 0>
void VL_ContextMenu_InvokeDesignPreTrackCallback(T control, intptr_t menu)
{
    VL_ContextMenu_InvokeDesignPreTrackCallback((HWND)(intptr_t)control, menu);
}
template <typename T, VL_IfInteger<T> = 0>
intptr_t VL_ContextMenu_TrackAt(T owner, intptr_t menu, int x, int y)
{
    return VL_ContextMenu_TrackAt((HWND)(intptr_t)owner, menu, x, y);
}
template <typename T, VL_IfInteger<T> = 0>
void VL_ContextMenu_InvokeItemCallback(intptr_t menu, T control, intptr_t id)
{
    VL_ContextMenu_InvokeItemCallback(menu, (HWND)(intptr_t)control, id);
}
