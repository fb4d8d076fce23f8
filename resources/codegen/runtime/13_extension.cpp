// Calling commands in the user's own DLLs.
#include "13_extension.h"

namespace vl_extension {
namespace {

const int kResultCapacity = 4096;

struct Cache
{
    std::map<std::wstring, HMODULE> libraries;
    std::map<std::wstring, VL_Ext_InvokeFn> functions;
};

SRWLOCK g_lock = SRWLOCK_INIT;

Cache &cache()
{
    static Cache instance;
    return instance;
}

std::wstring &lastError()
{
    thread_local std::wstring text;
    return text;
}

HMODULE library(const std::wstring &path)
{
    const auto known = cache().libraries.find(path);
    if (known != cache().libraries.end())
        return known->second;
    const HMODULE loaded = LoadLibraryW(path.c_str());
    if (loaded)
        cache().libraries[path] = loaded;
    return loaded;
}

// Export names are ASCII; a name that holds anything else is looked up as UTF-8.
VL_Ext_InvokeFn load(const std::wstring &path, const std::wstring &name)
{
    const std::wstring key = path + L"\n" + name;
    const auto known = cache().functions.find(key);
    if (known != cache().functions.end())
        return known->second;
    const HMODULE module = library(path);
    if (!module) {
        lastError() = L"LoadLibraryW failed: " + path;
        return NULL;
    }
    const FARPROC address = GetProcAddress(module, VL_WideToUtf8(name).c_str());
    if (!address) {
        lastError() = L"GetProcAddress failed: " + name + L" @ " + path;
        return NULL;
    }
    // Through void *, since the two function types have nothing in common.
    const VL_Ext_InvokeFn function =
        reinterpret_cast<VL_Ext_InvokeFn>(reinterpret_cast<void *>(address));
    cache().functions[key] = function;
    return function;
}

} // namespace
} // namespace vl_extension

VL_Ext_InvokeFn VL_Ext_LoadInvoke(const std::wstring &dllPath, const std::wstring &invokeName)
{
    AcquireSRWLockExclusive(&vl_extension::g_lock);
    const VL_Ext_InvokeFn function = vl_extension::load(dllPath, invokeName);
    ReleaseSRWLockExclusive(&vl_extension::g_lock);
    return function;
}

std::wstring VL_Ext_Invoke_CallText(const std::wstring &dllPath, const std::wstring &cmd,
                                    const std::wstring &argsJson, const std::wstring &invokeName)
{
    vl_extension::lastError().clear();
    const VL_Ext_InvokeFn function = VL_Ext_LoadInvoke(dllPath, invokeName);
    if (!function)
        return std::wstring();
    std::vector<wchar_t> result((size_t)vl_extension::kResultCapacity + 1, L'\0');
    const int code =
        function(cmd.c_str(), argsJson.c_str(), result.data(), vl_extension::kResultCapacity);
    if (code < 0) {
        vl_extension::lastError() = L"DLL invoke returned error: " + std::to_wstring(code);
        return std::wstring();
    }
    return std::wstring(result.data());
}

std::wstring VL_Ext_GetLastError()
{
    return vl_extension::lastError();
}
