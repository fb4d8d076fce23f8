// The network as this computer sees it: connection, adapters, addresses, ping.
#pragma once
#include "20_constants.h"

// Whether an adapter is up that leads beyond this computer.
bool VL_IsNetworkConnected();
// Kind of that connection as a Chinese word: by wire, wireless, other, or none.
std::wstring VL_GetNetworkStatus();
// Milliseconds until a host answers; -1 when it does not within `timeout`, or has no address.
intptr_t VL_Ping(const std::wstring &host, intptr_t timeout = 3000);
// JSON array of all adapters (with `connected` only of those that are up), addresses included.
std::wstring VL_EnumNetworkAdaptersJson(bool connected = false, bool pretty = false);
// IPv4 address and hardware address ("00-1A-2B-3C-4D-5E") of the `index`-th adapter that is up,
// from 0 on; the one that leads to the internet comes first. Empty when there is none.
std::wstring VL_GetLocalIP(intptr_t index = 0);
std::wstring VL_GetLocalMAC(intptr_t index = 0);
// The address under which the internet sees this computer, asked from public services within
// `timeout` milliseconds; empty when none answers.
std::wstring VL_GetPublicIP(intptr_t timeout = 5000);
