// Sorting the rows of a list view.
#include "77_list_view_sorting.h"

#include <algorithm>

namespace vl_list_view_sorting {
namespace {

struct Key
{
    bool isNumber = false;
    double number = 0;
    std::string text; // bytes that compare as the language orders its words
};

bool readNumber(const std::wstring &text, double *number)
{
    const size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring::npos || text.size() - first > 100)
        return false;
    const std::wstring digits = text.substr(first, text.find_last_not_of(L" \t") + 1 - first);
    // Words such as "nan" and hexadecimal digits would be read too.
    if (digits.find_first_not_of(L"0123456789+-.eE") != std::wstring::npos)
        return false;
    wchar_t *end = nullptr;
    *number = wcstod(digits.c_str(), &end);
    return end != digits.c_str() && *end == L'\0';
}

Key keyOf(const std::wstring &text)
{
    // Beyond this nobody sees a difference.
    const int greatest = 2000;
    const LCID chinese =
        MAKELCID(MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED), SORT_CHINESE_PRCP);
    Key key;
    key.isNumber = readNumber(text, &key.number);
    if (key.isNumber || text.empty())
        return key;
    const int length = (int)(std::min)(text.size(), (size_t)greatest);
    const DWORD flags = LCMAP_SORTKEY | NORM_IGNORECASE;
    const int size = LCMapStringW(chinese, flags, text.c_str(), length, NULL, 0);
    if (size <= 0)
        return key;
    key.text.resize((size_t)size);
    // For sort keys the destination counts in bytes.
    LCMapStringW(chinese, flags, text.c_str(), length, (wchar_t *)&key.text[0], size);
    return key;
}

bool isLess(const Key &a, const Key &b)
{
    if (a.isNumber != b.isNumber)
        return a.isNumber;
    return a.isNumber ? a.number < b.number : a.text < b.text;
}

// The place that each row shall have.
std::vector<int> ranksOf(const std::vector<Key> &keys, bool ascending)
{
    std::vector<int> order(keys.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = (int)i;
    std::stable_sort(order.begin(), order.end(), [&](int a, int b) {
        const Key &left = keys[(size_t)a], &right = keys[(size_t)b];
        return ascending ? isLess(left, right) : isLess(right, left);
    });
    std::vector<int> ranks(keys.size());
    for (size_t place = 0; place < order.size(); ++place)
        ranks[(size_t)order[place]] = (int)place;
    return ranks;
}

int CALLBACK compareRanks(LPARAM first, LPARAM second, LPARAM ranks)
{
    const std::vector<int> &places = *(const std::vector<int> *)ranks;
    return places[(size_t)first] - places[(size_t)second];
}

void markColumn(HWND list, int column, bool ascending)
{
    const HWND header = (HWND)SendMessageW(list, LVM_GETHEADER, 0, 0);
    const int columns = VL_ListView_GetColumnCount(list);
    for (int i = 0; i < columns; ++i) {
        HDITEMW item = {};
        item.mask = HDI_FORMAT;
        SendMessageW(header, HDM_GETITEMW, (WPARAM)i, (LPARAM)&item);
        const int old = item.fmt;
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (i == column)
            item.fmt |= ascending ? HDF_SORTUP : HDF_SORTDOWN;
        if (item.fmt != old)
            SendMessageW(header, HDM_SETITEMW, (WPARAM)i, (LPARAM)&item);
    }
}

} // namespace
} // namespace vl_list_view_sorting

void VL_ListView_Sort(HWND list, int column, bool ascending)
{
    using namespace vl_list_view_sorting;
    const int rows = VL_GetItemCount(list);
    if (column < 0 || column >= (std::max)(1, VL_ListView_GetColumnCount(list)) ||
        !VL_ListView_Attach(list))
        return;
    VL_ListView_BeginUpdate(list);
    std::vector<Key> keys;
    keys.reserve((size_t)rows);
    for (int row = 0; row < rows; ++row) {
        keys.push_back(keyOf(VL_ListView_GetItemText(list, row, column)));
        LVITEMW item = {};
        item.mask = LVIF_PARAM;
        item.iItem = row;
        item.lParam = row;
        VL_ListView_RowMessage(list, LVM_SETITEMW, 0, (LPARAM)&item);
    }
    const std::vector<int> ranks = ranksOf(keys, ascending);
    SendMessageW(list, LVM_SORTITEMS, (WPARAM)&ranks, (LPARAM)compareRanks);
    markColumn(list, column, ascending);
    VL_ListView_EndUpdate(list);
}
