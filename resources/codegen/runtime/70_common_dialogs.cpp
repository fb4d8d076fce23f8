// The system's dialogs for files, folders, colours and fonts.
#include "70_common_dialogs.h"

#include <commdlg.h>
#include <shlobj.h>
#include <shobjidl.h>

namespace vl_common_dialogs {
namespace {

// Room for the names of some ten thousand chosen files.
const DWORD ManyNames = 512 * 1024;
const DWORD OneName = 32 * 1024;

// Of the dialog for opening; as a value here it takes no library.
const CLSID OpenDialogClass = {
    0xdc1c5a9c, 0xe88a, 0x4dde, {0xa5, 0xa1, 0x60, 0xf8, 0x2a, 0x20, 0xae, 0xf7}};

const wchar_t FontName[] = L"\u5B57\u4F53";
const wchar_t FontSize[] = L"\u5B57\u53F7";
const wchar_t Bold[] = L"\u7C97\u4F53";
const wchar_t Italic[] = L"\u659C\u4F53";
const wchar_t FontColor[] = L"\u989C\u8272";

std::vector<std::wstring> split(const std::wstring &text, wchar_t separator)
{
    std::vector<std::wstring> parts;
    size_t begin = 0;
    for (;;) {
        const size_t end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end == std::wstring::npos ? end : end - begin));
        if (end == std::wstring::npos)
            return parts;
        begin = end + 1;
    }
}

// The pairs that the dialogs want, each part with its terminator. A part alone is a pattern that
// names itself.
std::wstring filterPairs(const std::wstring &filter)
{
    std::wstring pairs;
    const std::vector<std::wstring> parts = split(filter.substr(0, 8000).c_str(), L'|');
    for (size_t i = 0; i < parts.size(); i += 2) {
        const std::wstring &name = parts[i];
        const std::wstring &patterns = i + 1 < parts.size() ? parts[i + 1] : name;
        if (name.empty() && patterns.empty())
            continue;
        pairs += (name.empty() ? patterns : name) + L'\0' +
                 (patterns.empty() ? std::wstring(L"*.*") : patterns) + L'\0';
    }
    if (pairs.empty())
        pairs = std::wstring(L"\u6240\u6709\u6587\u4EF6 (*.*)") + L'\0' + L"*.*" + L'\0';
    return pairs + L'\0';
}

// "txt" of the first pattern "*.txt;*.log"; empty for a pattern that fits any extension.
std::wstring firstExtension(const std::wstring &pairs)
{
    const std::wstring patterns = pairs.c_str() + wcslen(pairs.c_str()) + 1;
    const std::wstring first = patterns.substr(0, patterns.find(L';'));
    const size_t dot = first.rfind(L'.');
    if (dot == std::wstring::npos || first.find_first_of(L"*?", dot) != std::wstring::npos)
        return std::wstring();
    return first.substr(dot + 1);
}

bool isFolder(const std::wstring &path)
{
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY);
}

// A folder and a file name of what the caller names as the beginning. Names that a dialog would
// refuse altogether are left out.
void splitInitial(const std::wstring &initial, std::wstring *folder, std::wstring *name)
{
    std::wstring path = initial.substr(0, MAX_PATH * 4).c_str();
    for (wchar_t &character : path)
        character = character == L'/' ? L'\\' : character;
    if (path.empty() || isFolder(path)) {
        *folder = path;
        return;
    }
    const size_t slash = path.rfind(L'\\');
    if (slash != std::wstring::npos && isFolder(path.substr(0, slash + 1)))
        *folder = path.substr(0, slash + 1);
    *name = slash == std::wstring::npos ? path : path.substr(slash + 1);
    if (name->find_first_of(L"<>:\"|?*") != std::wstring::npos || name->size() >= MAX_PATH)
        name->clear();
}

// Puts the current folder back, which a dialog moves along with what the user looks at.
class FolderKeeper
{
public:
    FolderKeeper() : m_folder(GetCurrentDirectoryW(0, NULL) + 1, L'\0')
    {
        GetCurrentDirectoryW((DWORD)m_folder.size(), &m_folder[0]);
    }
    ~FolderKeeper() { SetCurrentDirectoryW(m_folder.c_str()); }
    FolderKeeper(const FolderKeeper &) = delete;
    FolderKeeper &operator=(const FolderKeeper &) = delete;

private:
    std::wstring m_folder;
};

// What stands in the dialog's buffer; empty after cancel.
std::vector<wchar_t> chooseFiles(const std::wstring &title, const std::wstring &filter,
                                 const std::wstring &initial, DWORD flags, bool save)
{
    const FolderKeeper keeper;
    const std::wstring pairs = filterPairs(filter);
    const std::wstring extension = firstExtension(pairs);
    const std::wstring caption = title.substr(0, 200);
    std::wstring folder, name;
    splitInitial(initial, &folder, &name);
    std::vector<wchar_t> names((flags & OFN_ALLOWMULTISELECT) ? ManyNames : OneName);
    std::copy(name.begin(), name.end(), names.begin());

    OPENFILENAMEW request = {};
    request.lStructSize = sizeof(request);
    request.hwndOwner = VL_DialogOwner();
    request.lpstrFilter = pairs.c_str();
    request.nFilterIndex = 1;
    request.lpstrFile = names.data();
    request.nMaxFile = (DWORD)names.size();
    request.lpstrInitialDir = folder.empty() ? NULL : folder.c_str();
    request.lpstrTitle = caption.empty() ? NULL : caption.c_str();
    // With a default extension, even an unlikely one, the dialog takes that of the chosen filter.
    request.lpstrDefExt = save ? extension.c_str() : NULL;
    request.Flags = OFN_EXPLORER | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | flags;
    const BOOL chosen = save ? GetSaveFileNameW(&request) : GetOpenFileNameW(&request);
    if (!chosen)
        names.assign(2, L'\0');
    return names;
}

int CALLBACK preselectFolder(HWND window, UINT message, LPARAM, LPARAM data)
{
    if (message == BFFM_INITIALIZED && data)
        SendMessageW(window, BFFM_SETSELECTIONW, TRUE, data);
    return 0;
}

// The folder tree of older systems.
std::wstring browseForFolder(const std::wstring &title, const std::wstring &initial)
{
    BROWSEINFOW request = {};
    request.hwndOwner = VL_DialogOwner();
    request.lpszTitle = title.c_str();
    request.ulFlags = BIF_RETURNONLYFSDIRS | BIF_USENEWUI;
    request.lpfn = preselectFolder;
    request.lParam = initial.empty() ? 0 : (LPARAM)initial.c_str();
    const LPITEMIDLIST chosen = SHBrowseForFolderW(&request);
    if (!chosen)
        return std::wstring();
    wchar_t path[MAX_PATH] = L"";
    SHGetPathFromIDListW(chosen, path);
    CoTaskMemFree(chosen);
    return path;
}

void setInitialFolder(IFileOpenDialog *dialog, const std::wstring &initial)
{
    IShellItem *item = NULL;
    if (initial.empty() ||
        FAILED(SHCreateItemFromParsingName(initial.c_str(), NULL, IID_PPV_ARGS(&item))))
        return;
    dialog->SetFolder(item);
    item->Release();
}

std::wstring chosenFolder(IFileOpenDialog *dialog)
{
    std::wstring result;
    IShellItem *item = NULL;
    if (FAILED(dialog->GetResult(&item)))
        return result;
    wchar_t *path = NULL;
    if (SUCCEEDED(item->GetDisplayName(SIGDN_FILESYSPATH, &path))) {
        result = path;
        CoTaskMemFree(path);
    }
    item->Release();
    return result;
}

std::wstring selectFolder(const std::wstring &title, const std::wstring &initial)
{
    IFileOpenDialog *dialog = NULL;
    if (FAILED(
            CoCreateInstance(OpenDialogClass, NULL, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&dialog))))
        return browseForFolder(title, initial);
    DWORD options = 0;
    dialog->GetOptions(&options);
    dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_NOCHANGEDIR |
                       FOS_PATHMUSTEXIST);
    dialog->SetTitle(title.c_str());
    setInitialFolder(dialog, initial);
    const std::wstring result =
        SUCCEEDED(dialog->Show(VL_DialogOwner())) ? chosenFolder(dialog) : std::wstring();
    dialog->Release();
    return result;
}

LOGFONTW initialFont(const VL_Any &initial, int dpi)
{
    LOGFONTW font = {};
    const std::wstring name = VL_DictGet(initial, FontName).toStr();
    lstrcpynW(font.lfFaceName, name.empty() ? L"Microsoft YaHei" : name.c_str(), LF_FACESIZE);
    const double size = VL_DictGet(initial, FontSize).toDouble();
    font.lfHeight = -(LONG)std::lround((size >= 1 && size <= 1000 ? size : 9) * dpi / 72);
    font.lfWeight = VL_DictGet(initial, Bold).toBool() ? FW_BOLD : FW_NORMAL;
    font.lfItalic = VL_DictGet(initial, Italic).toBool();
    font.lfCharSet = DEFAULT_CHARSET;
    return font;
}

int screenDpi()
{
    const HDC screen = GetDC(NULL);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
    ReleaseDC(NULL, screen);
    return dpi > 0 ? dpi : 96;
}

} // namespace
} // namespace vl_common_dialogs

std::wstring VL_OpenFileDialog(const std::wstring &title, const std::wstring &filter,
                               const std::wstring &initial)
{
    return vl_common_dialogs::chooseFiles(title, filter, initial, OFN_FILEMUSTEXIST, false).data();
}

std::wstring VL_SaveFileDialog(const std::wstring &title, const std::wstring &filter,
                               const std::wstring &initial)
{
    return vl_common_dialogs::chooseFiles(title, filter, initial, OFN_OVERWRITEPROMPT, true).data();
}

VL_Array VL_OpenFilesDialog(const std::wstring &title, const std::wstring &filter,
                            const std::wstring &initial)
{
    const std::vector<wchar_t> names = vl_common_dialogs::chooseFiles(
        title, filter, initial, OFN_FILEMUSTEXIST | OFN_ALLOWMULTISELECT, false);
    // One path, or a folder and the names in it, all ended by an empty text.
    VL_Array paths;
    std::wstring folder = names.data();
    const wchar_t *name = names.data() + folder.size() + 1;
    if (folder.empty())
        return paths;
    if (*name == L'\0') {
        paths.push_back(VL_Any(folder));
        return paths;
    }
    if (folder.back() != L'\\')
        folder += L'\\';
    for (; *name != L'\0'; name += wcslen(name) + 1)
        paths.push_back(VL_Any(folder + name));
    return paths;
}

std::wstring VL_SelectFolderDialog(const std::wstring &title, const std::wstring &initial)
{
    const vl_common_dialogs::FolderKeeper keeper;
    const HRESULT started = CoInitializeEx(NULL, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE);
    const std::wstring result = vl_common_dialogs::selectFolder(
        title.empty() ? L"\u9009\u62E9\u6587\u4EF6\u5939" : title.substr(0, 200),
        vl_common_dialogs::isFolder(initial) ? initial : std::wstring());
    if (SUCCEEDED(started))
        CoUninitialize();
    return result;
}

int VL_ColorDialog(intptr_t initial)
{
    // The user's own colours stay as long as the program runs.
    static COLORREF custom[16] = {0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                  0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
                                  0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};
    CHOOSECOLORW request = {};
    request.lStructSize = sizeof(request);
    request.hwndOwner = VL_DialogOwner();
    request.rgbResult = (COLORREF)(initial & 0xFFFFFF);
    request.lpCustColors = custom;
    request.Flags = CC_RGBINIT | CC_FULLOPEN | CC_ANYCOLOR;
    return ChooseColorW(&request) ? (int)request.rgbResult : -1;
}

VL_Any VL_FontDialog(const VL_Any &initial)
{
    using namespace vl_common_dialogs;
    LOGFONTW font = initialFont(initial, screenDpi());
    CHOOSEFONTW request = {};
    request.lStructSize = sizeof(request);
    request.hwndOwner = VL_DialogOwner();
    request.lpLogFont = &font;
    request.rgbColors = (COLORREF)(VL_DictGet(initial, FontColor).toInt() & 0xFFFFFF);
    request.Flags = CF_SCREENFONTS | CF_INITTOLOGFONTSTRUCT | CF_EFFECTS | CF_NOVERTFONTS;
    VL_Any result = VL_NewDictAny();
    if (!ChooseFontW(&request))
        return result;
    VL_DictSet(result, FontName, VL_Any(font.lfFaceName));
    VL_DictSet(result, FontSize, VL_Any((request.iPointSize + 5) / 10));
    VL_DictSet(result, Bold, VL_Any(font.lfWeight >= FW_BOLD));
    VL_DictSet(result, Italic, VL_Any(font.lfItalic != 0));
    VL_DictSet(result, FontColor, VL_Any((int)request.rgbColors));
    return result;
}
