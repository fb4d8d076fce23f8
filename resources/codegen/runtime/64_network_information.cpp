// The network as this computer sees it: connection, adapters, addresses, ping.
#include "64_network_information.h"
#include "11_dictionary.h"

#include <ws2tcpip.h>

#include <iphlpapi.h>

#include <icmpapi.h>
#include <winhttp.h>

#include <algorithm>
#include <cstring>

namespace vl_network_information {
namespace {

// Keeps the sockets library ready while it lives.
class Sockets
{
public:
    Sockets()
    {
        WSADATA data;
        m_ready = WSAStartup(MAKEWORD(2, 2), &data) == 0;
    }
    ~Sockets()
    {
        if (m_ready)
            WSACleanup();
    }
    Sockets(const Sockets &) = delete;
    Sockets &operator=(const Sockets &) = delete;
    bool ready() const { return m_ready; }

private:
    bool m_ready;
};

std::wstring addressText(const SOCKET_ADDRESS &address)
{
    wchar_t text[INET6_ADDRSTRLEN + 1] = L"";
    const sockaddr *given = address.lpSockaddr;
    const void *bytes = NULL;
    if (given && given->sa_family == AF_INET)
        bytes = &((const sockaddr_in *)given)->sin_addr;
    else if (given && given->sa_family == AF_INET6)
        bytes = &((const sockaddr_in6 *)given)->sin6_addr;
    if (!bytes || !InetNtopW(given->sa_family, (void *)bytes, text, INET6_ADDRSTRLEN + 1))
        return std::wstring();
    return text;
}

struct Adapter
{
    std::wstring name;
    std::wstring description;
    std::wstring mac;
    VL_Array ipv4;
    VL_Array ipv6;
    VL_Array gateways;
    VL_Array dnsServers;
    unsigned long long bitsPerSecond;
    DWORD kind;
    DWORD index;
    bool up;

    bool leadsOut() const { return up && !gateways.empty(); }
};

template <typename Item>
VL_Array addressList(const Item *item, int family = AF_UNSPEC)
{
    VL_Array result;
    for (; item; item = item->Next) {
        const sockaddr *address = item->Address.lpSockaddr;
        const std::wstring text = addressText(item->Address);
        if (!text.empty() && (family == AF_UNSPEC || address->sa_family == family))
            result.push_back(VL_Any(text));
    }
    return result;
}

std::wstring macText(const BYTE *bytes, size_t length)
{
    std::wstring result;
    for (size_t i = 0; i < length; ++i) {
        wchar_t pair[8];
        swprintf(pair, 8, i == 0 ? L"%02X" : L"-%02X", (unsigned)bytes[i]);
        result += pair;
    }
    return result;
}

Adapter read(const IP_ADAPTER_ADDRESSES &row)
{
    Adapter adapter;
    adapter.name = row.FriendlyName ? row.FriendlyName : L"";
    adapter.description = row.Description ? row.Description : L"";
    adapter.mac = macText(row.PhysicalAddress,
                          std::min((size_t)row.PhysicalAddressLength, sizeof row.PhysicalAddress));
    adapter.ipv4 = addressList(row.FirstUnicastAddress, AF_INET);
    adapter.ipv6 = addressList(row.FirstUnicastAddress, AF_INET6);
    adapter.gateways = addressList(row.FirstGatewayAddress);
    adapter.dnsServers = addressList(row.FirstDnsServerAddress);
    adapter.bitsPerSecond = row.TransmitLinkSpeed == (ULONG64)-1 ? 0 : row.TransmitLinkSpeed;
    adapter.kind = row.IfType;
    adapter.index = row.IfIndex;
    adapter.up = row.OperStatus == IfOperStatusUp;
    return adapter;
}

// All adapters but the loopback, in the system's order.
std::vector<Adapter> allAdapters()
{
    std::vector<Adapter> result;
    const Sockets sockets;
    std::vector<char> memory;
    IP_ADAPTER_ADDRESSES *first = NULL;
    ULONG size = 0x4000;
    ULONG status = ERROR_BUFFER_OVERFLOW;
    // The list may grow between two calls.
    for (int attempt = 0; attempt < 5 && status == ERROR_BUFFER_OVERFLOW; ++attempt) {
        memory.resize(size);
        first = (IP_ADAPTER_ADDRESSES *)memory.data();
        const ULONG flags =
            GAA_FLAG_INCLUDE_GATEWAYS | GAA_FLAG_SKIP_ANYCAST | GAA_FLAG_SKIP_MULTICAST;
        status = GetAdaptersAddresses(AF_UNSPEC, flags, NULL, first, &size);
    }
    if (status != ERROR_SUCCESS)
        return result;
    for (const IP_ADAPTER_ADDRESSES *row = first; row; row = row->Next)
        if (row->IfType != IF_TYPE_SOFTWARE_LOOPBACK)
            result.push_back(read(*row));
    return result;
}

// Those that are up: first the one that the system takes to the internet, then those with a
// gateway.
std::vector<Adapter> connectedAdapters()
{
    std::vector<Adapter> result;
    for (Adapter &adapter : allAdapters())
        if (adapter.up)
            result.push_back(std::move(adapter));
    DWORD best = 0;
    const DWORD somewhere = 0x08080808; // no packet is sent to this address
    const bool known = GetBestInterface(somewhere, &best) == NO_ERROR;
    const auto rank = [=](const Adapter &adapter) {
        return known && adapter.index == best ? 0 : adapter.leadsOut() ? 1 : 2;
    };
    std::stable_sort(result.begin(), result.end(),
                     [&rank](const Adapter &a, const Adapter &b) { return rank(a) < rank(b); });
    return result;
}

const wchar_t *kindText(DWORD kind)
{
    switch (kind) {
    case IF_TYPE_ETHERNET_CSMACD:
        return L"\u6709\u7EBF";
    case IF_TYPE_IEEE80211:
        return L"\u65E0\u7EBF";
    case IF_TYPE_PPP:
        return L"\u62E8\u53F7";
    case IF_TYPE_TUNNEL:
        return L"\u96A7\u9053";
    default:
        return L"\u5176\u4ED6";
    }
}

VL_Any described(const Adapter &adapter)
{
    VL_Any row = VL_NewDictAny();
    VL_DictSet(row, L"\u540D\u79F0", VL_Any(adapter.name));
    VL_DictSet(row, L"\u63CF\u8FF0", VL_Any(adapter.description));
    VL_DictSet(row, L"\u7C7B\u578B", VL_Any(kindText(adapter.kind)));
    VL_DictSet(row, L"\u5DF2\u8FDE\u63A5", VL_Any(adapter.up));
    VL_DictSet(row, L"MAC", VL_Any(adapter.mac));
    VL_DictSet(row, L"IPv4", VL_Any(adapter.ipv4));
    VL_DictSet(row, L"IPv6", VL_Any(adapter.ipv6));
    VL_DictSet(row, L"\u7F51\u5173", VL_Any(adapter.gateways));
    VL_DictSet(row, L"DNS", VL_Any(adapter.dnsServers));
    VL_DictSet(row, L"\u901F\u5EA6", VL_Any((long long)adapter.bitsPerSecond));
    return row;
}

const intptr_t kLongestWait = 600000;

DWORD timeLimit(intptr_t milliseconds)
{
    return (DWORD)std::max<intptr_t>(1, std::min(milliseconds, kLongestWait));
}

const char kPayload[] = "abcdefghijklmnopqrstuvwabcdefghi";

intptr_t pingV4(const sockaddr_in &target, DWORD timeout)
{
    const HANDLE icmp = IcmpCreateFile();
    if (icmp == INVALID_HANDLE_VALUE)
        return -1;
    union {
        ICMP_ECHO_REPLY reply;
        char room[sizeof(ICMP_ECHO_REPLY) + sizeof kPayload + 64];
    } answer;
    memset(&answer, 0, sizeof answer);
    const DWORD count = IcmpSendEcho(icmp, target.sin_addr.s_addr, (void *)kPayload,
                                     sizeof kPayload - 1, NULL, &answer, sizeof answer, timeout);
    IcmpCloseHandle(icmp);
    const bool arrived = count > 0 && answer.reply.Status == IP_SUCCESS;
    return arrived ? (intptr_t)answer.reply.RoundTripTime : -1;
}

// System headers disagree about the name of the answer's type: an address of 28 bytes, the status,
// the time.
const size_t kStatusV6 = 7;
const size_t kTimeV6 = 8;

intptr_t pingV6(const sockaddr_in6 &target, DWORD timeout)
{
    const HANDLE icmp = Icmp6CreateFile();
    if (icmp == INVALID_HANDLE_VALUE)
        return -1;
    sockaddr_in6 source;
    memset(&source, 0, sizeof source);
    source.sin6_family = AF_INET6;
    sockaddr_in6 destination = target;
    IP_OPTION_INFORMATION options;
    memset(&options, 0, sizeof options);
    options.Ttl = 128;
    ULONG answer[64] = {0};
    const DWORD count =
        Icmp6SendEcho2(icmp, NULL, NULL, NULL, &source, &destination, (void *)kPayload,
                       sizeof kPayload - 1, &options, answer, sizeof answer, timeout);
    IcmpCloseHandle(icmp);
    return count > 0 && answer[kStatusV6] == IP_SUCCESS ? (intptr_t)answer[kTimeV6] : -1;
}

bool isAddress(const std::wstring &text)
{
    in6_addr room;
    return InetPtonW(AF_INET, text.c_str(), &room) == 1 ||
           InetPtonW(AF_INET6, text.c_str(), &room) == 1;
}

// Handles of winhttp, closed in reverse order.
class Request
{
public:
    Request() : m_session(NULL), m_connection(NULL), m_request(NULL) {}
    ~Request()
    {
        for (const HINTERNET handle : {m_request, m_connection, m_session})
            if (handle)
                WinHttpCloseHandle(handle);
    }
    Request(const Request &) = delete;
    Request &operator=(const Request &) = delete;

    // The beginning of the answer's body; empty without one.
    std::string get(const wchar_t *host, const wchar_t *path, DWORD timeout);

private:
    bool send(const wchar_t *host, const wchar_t *path, DWORD timeout);

    HINTERNET m_session;
    HINTERNET m_connection;
    HINTERNET m_request;
};

bool Request::send(const wchar_t *host, const wchar_t *path, DWORD timeout)
{
    m_session = WinHttpOpen(L"Mozilla/5.0", WINHTTP_ACCESS_TYPE_DEFAULT_PROXY,
                            WINHTTP_NO_PROXY_NAME, WINHTTP_NO_PROXY_BYPASS, 0);
    // The four stages follow each other, so each has its part of the whole time.
    const int part = (int)(timeout / 4 + 1);
    if (!m_session || !WinHttpSetTimeouts(m_session, part, part, part, part))
        return false;
    m_connection = WinHttpConnect(m_session, host, INTERNET_DEFAULT_HTTPS_PORT, 0);
    if (m_connection)
        m_request = WinHttpOpenRequest(m_connection, L"GET", path, NULL, WINHTTP_NO_REFERER,
                                       WINHTTP_DEFAULT_ACCEPT_TYPES, WINHTTP_FLAG_SECURE);
    return m_request &&
           WinHttpSendRequest(m_request, WINHTTP_NO_ADDITIONAL_HEADERS, 0, WINHTTP_NO_REQUEST_DATA,
                              0, 0, 0) &&
           WinHttpReceiveResponse(m_request, NULL);
}

std::string Request::get(const wchar_t *host, const wchar_t *path, DWORD timeout)
{
    if (!send(host, path, timeout))
        return std::string();
    char buffer[256];
    DWORD got = 0;
    if (!WinHttpReadData(m_request, buffer, sizeof buffer, &got))
        return std::string();
    return std::string(buffer, got);
}

std::wstring addressIn(const std::string &answer)
{
    const size_t begin = answer.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos)
        return std::wstring();
    const size_t end = answer.find_first_of(" \t\r\n", begin);
    const std::string word = answer.substr(begin, end == std::string::npos ? end : end - begin);
    const std::wstring text(word.begin(), word.end());
    return isAddress(text) ? text : std::wstring();
}

} // namespace
} // namespace vl_network_information

bool VL_IsNetworkConnected()
{
    for (const auto &adapter : vl_network_information::allAdapters())
        if (adapter.leadsOut())
            return true;
    return false;
}

std::wstring VL_GetNetworkStatus()
{
    for (const auto &adapter : vl_network_information::connectedAdapters())
        if (adapter.leadsOut())
            return vl_network_information::kindText(adapter.kind) + std::wstring(L"\u8FDE\u63A5");
    return L"\u672A\u8FDE\u63A5";
}

intptr_t VL_Ping(const std::wstring &host, intptr_t timeout)
{
    const vl_network_information::Sockets sockets;
    ADDRINFOW hints;
    memset(&hints, 0, sizeof hints);
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    ADDRINFOW *found = NULL;
    if (host.empty() || !sockets.ready() || GetAddrInfoW(host.c_str(), NULL, &hints, &found) != 0 ||
        !found)
        return -1;
    const DWORD limit = vl_network_information::timeLimit(timeout);
    const ADDRINFOW *target = found;
    // Where there is a choice, the older protocol is answered more often.
    while (target && target->ai_family != AF_INET)
        target = target->ai_next;
    intptr_t result = -1;
    if (target)
        result = vl_network_information::pingV4(*(const sockaddr_in *)target->ai_addr, limit);
    else if (found->ai_family == AF_INET6)
        result = vl_network_information::pingV6(*(const sockaddr_in6 *)found->ai_addr, limit);
    FreeAddrInfoW(found);
    return result;
}

std::wstring VL_EnumNetworkAdaptersJson(bool connected, bool pretty)
{
    VL_Array rows;
    for (const auto &adapter : vl_network_information::allAdapters())
        if (adapter.up || !connected)
            rows.push_back(vl_network_information::described(adapter));
    return VL_GenerateJsonFromAny(VL_Any(rows), pretty);
}

std::wstring VL_GetLocalIP(intptr_t index)
{
    for (const auto &adapter : vl_network_information::connectedAdapters())
        if (!adapter.ipv4.empty() && index-- == 0)
            return adapter.ipv4[0].toStr();
    return std::wstring();
}

std::wstring VL_GetLocalMAC(intptr_t index)
{
    for (const auto &adapter : vl_network_information::connectedAdapters())
        if (!adapter.ipv4.empty() && index-- == 0)
            return adapter.mac;
    return std::wstring();
}

std::wstring VL_GetPublicIP(intptr_t timeout)
{
    const struct
    {
        const wchar_t *host;
        const wchar_t *path;
    } services[] = {{L"api.ipify.org", L"/"},
                    {L"ipv4.icanhazip.com", L"/"},
                    {L"checkip.amazonaws.com", L"/"},
                    {L"ifconfig.me", L"/ip"}};
    const ULONGLONG limit = vl_network_information::timeLimit(timeout);
    const ULONGLONG begin = GetTickCount64();
    for (const auto &service : services) {
        const ULONGLONG spent = GetTickCount64() - begin;
        if (spent >= limit)
            break;
        vl_network_information::Request request;
        // A service that does not answer must leave time for the next.
        const DWORD share = (DWORD)((limit - spent) / 2 + 1);
        const std::string answer = request.get(service.host, service.path, share);
        const std::wstring address = vl_network_information::addressIn(answer);
        if (!address.empty())
            return address;
    }
    return std::wstring();
}
