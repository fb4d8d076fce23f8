// What windows and threads of the program send each other.
#include "54_window_calls.h"

#include <set>

namespace vl_window_calls {
namespace {

const UINT kCallHere = WM_APP + 0x1F06;

// What a message points to.
struct Parcel
{
    UINT message = 0;
    HWND target = NULL;
    bool isOwned = false; // by the message that is posted
    int params[2] = {0, 0};
    std::wstring text;
    const std::function<void()> *call = nullptr;
};

VL_Lock &lock()
{
    static VL_Lock *made = new VL_Lock;
    return *made;
}

// Parcels under way: a message with any other address comes from elsewhere and is left alone.
std::set<Parcel *> &parcels()
{
    static std::set<Parcel *> *all = new std::set<Parcel *>;
    return *all;
}

bool post(Parcel *parcel, WPARAM wParam)
{
    parcel->isOwned = true;
    {
        VL_Locked locked(lock());
        parcels().insert(parcel);
    }
    if (PostMessageW(parcel->target, parcel->message, wParam, (LPARAM)parcel))
        return true;
    VL_Locked locked(lock());
    if (parcels().erase(parcel))
        delete parcel;
    return false;
}

bool send(Parcel &parcel, WPARAM wParam)
{
    if (!IsWindow(parcel.target))
        return false;
    {
        VL_Locked locked(lock());
        parcels().insert(&parcel);
    }
    SendMessageW(parcel.target, parcel.message, wParam, (LPARAM)&parcel);
    VL_Locked locked(lock());
    parcels().erase(&parcel);
    return true;
}

// What the message brought, taken out of those under way.
bool take(UINT message, LPARAM lParam, Parcel *out)
{
    Parcel *parcel = (Parcel *)lParam;
    VL_Locked locked(lock());
    if (!parcels().count(parcel) || parcel->message != message)
        return false;
    *out = std::move(*parcel);
    parcels().erase(parcel);
    if (out->isOwned)
        delete parcel;
    return true;
}

} // namespace
} // namespace vl_window_calls

bool VL_SendEventTo(HWND window, int eventId, int param1, int param2)
{
    vl_window_calls::Parcel parcel;
    parcel.message = VL_WM_CUSTOM_EVENT;
    parcel.target = window;
    parcel.params[0] = param1;
    parcel.params[1] = param2;
    return vl_window_calls::send(parcel, (WPARAM)(intptr_t)eventId);
}

bool VL_PostEventTo(HWND window, int eventId, int param1, int param2)
{
    if (!IsWindow(window))
        return false;
    vl_window_calls::Parcel *parcel = new vl_window_calls::Parcel;
    parcel->message = VL_WM_CUSTOM_EVENT;
    parcel->target = window;
    parcel->params[0] = param1;
    parcel->params[1] = param2;
    return vl_window_calls::post(parcel, (WPARAM)(intptr_t)eventId);
}

bool VL_SendTextTo(HWND window, const std::wstring &text)
{
    vl_window_calls::Parcel parcel;
    parcel.message = VL_WM_RECEIVE_TEXT;
    parcel.target = window;
    parcel.text = text;
    return vl_window_calls::send(parcel, 0);
}

bool VL_Window_TakeEvent(UINT message, WPARAM wParam, LPARAM lParam, int *id, int *param1,
                         int *param2)
{
    vl_window_calls::Parcel parcel;
    if (message != VL_WM_CUSTOM_EVENT || !vl_window_calls::take(message, lParam, &parcel))
        return false;
    *id = (int)(intptr_t)wParam;
    *param1 = parcel.params[0];
    *param2 = parcel.params[1];
    return true;
}

bool VL_Window_TakeText(UINT message, WPARAM, LPARAM lParam, std::wstring *text)
{
    vl_window_calls::Parcel parcel;
    if (message != VL_WM_RECEIVE_TEXT || !vl_window_calls::take(message, lParam, &parcel))
        return false;
    *text = std::move(parcel.text);
    return true;
}

void VL_DropEventsTo(HWND window)
{
    using namespace vl_window_calls;
    VL_Locked locked(lock());
    for (auto it = parcels().begin(); it != parcels().end();) {
        Parcel *parcel = *it;
        const bool drop = parcel->target == window && parcel->isOwned;
        it = drop ? parcels().erase(it) : std::next(it);
        if (drop)
            delete parcel;
    }
}

void VL_CallOnMainThread(const std::function<void()> &call)
{
    const DWORD thread = IsWindow(g_hWndMain) ? GetWindowThreadProcessId(g_hWndMain, NULL) : 0;
    if (!thread || thread == GetCurrentThreadId()) {
        call();
        return;
    }
    vl_window_calls::Parcel parcel;
    parcel.message = vl_window_calls::kCallHere;
    parcel.target = g_hWndMain;
    parcel.call = &call;
    vl_window_calls::send(parcel, 0);
}

bool VL_TakeMainThreadCall(UINT message, LPARAM lParam)
{
    vl_window_calls::Parcel parcel;
    if (message != vl_window_calls::kCallHere || !vl_window_calls::take(message, lParam, &parcel))
        return false;
    (*parcel.call)();
    return true;
}
