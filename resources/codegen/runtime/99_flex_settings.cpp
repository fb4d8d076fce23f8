// What layouts are told: directions, alignments, shares and lengths, and the layouts of a design.
#include "99_flex_settings.h"

#include <algorithm>

namespace vl_flex_settings {
namespace {

const int DeepestBox = 100;

typedef std::map<std::wstring, std::wstring> Options;
typedef std::vector<std::vector<const wchar_t *>> Words;

const Words &directions()
{
    static const Words words = {{L"\u6C34\u5E73", L"row"},
                                {L"\u5782\u76F4", L"column"},
                                {L"\u6C34\u5E73\u53CD\u5411", L"row-reverse"},
                                {L"\u5782\u76F4\u53CD\u5411", L"column-reverse"}};
    return words;
}

const Words &justifications()
{
    static const Words words = {
        {L"\u5F00\u59CB", L"start"},        {L"\u5C45\u4E2D", L"center"},
        {L"\u672B\u5C3E", L"end"},          {L"\u7B49\u5206", L"space-between"},
        {L"\u73AF\u7ED5", L"space-around"}, {L"\u5747\u5300", L"space-evenly"}};
    return words;
}

const Words &alignments()
{
    static const Words words = {{L"\u5F00\u59CB", L"start"},
                                {L"\u5C45\u4E2D", L"center"},
                                {L"\u672B\u5C3E", L"end"},
                                {L"\u62C9\u4F38", L"stretch"}};
    return words;
}

// The place of a word, or a number that is such a place; -1 for anything else.
int wordIndex(const VL_Any &value, const Words &words)
{
    if (value.type != VL_Any::TypeString) {
        const long long number = value.toInt();
        return number >= 0 && number < (long long)words.size() ? (int)number : -1;
    }
    const std::wstring text = value.toStr();
    for (size_t i = 0; i < words.size(); ++i) {
        for (const wchar_t *word : words[i]) {
            if (text == word)
                return (int)i;
        }
    }
    return -1;
}

Options readOptions(const wchar_t *text)
{
    Options options;
    const std::wstring all = text ? text : L"";
    size_t begin = 0;
    while (begin < all.size()) {
        const size_t end = (std::min)(all.find(L';', begin), all.size());
        const std::wstring entry = all.substr(begin, end - begin);
        const size_t equal = entry.find(L'=');
        if (equal != std::wstring::npos)
            options[entry.substr(0, equal)] = entry.substr(equal + 1);
        begin = end + 1;
    }
    return options;
}

// Whether the options hold the key, and its text.
bool read(const Options &options, const wchar_t *key, std::wstring *text)
{
    const auto found = options.find(key);
    if (found != options.end())
        *text = found->second;
    return found != options.end();
}

void readNumber(const Options &options, const wchar_t *key, double *number)
{
    std::wstring text;
    if (read(options, key, &text))
        *number = wcstod(text.c_str(), NULL);
}

void readFlag(const Options &options, const wchar_t *key, bool *flag)
{
    std::wstring text;
    if (read(options, key, &text))
        *flag = text == L"true" || text == L"1" || text == L"\u771F";
}

// "5", or left, top, right and bottom: "5,6,5,6".
void readSides(const Options &options, const wchar_t *key, VL_FlexSides *sides)
{
    std::wstring text;
    if (!read(options, key, &text))
        return;
    double values[4] = {};
    int count = 0;
    const wchar_t *at = text.c_str();
    for (bool more = true; more && count < 4;) {
        wchar_t *end = NULL;
        values[count++] = wcstod(at, &end);
        more = *end == L',';
        at = end + 1;
    }
    for (; count < 4; ++count)
        values[count] = values[0];
    *sides = {values[0], values[1], values[2], values[3]};
}

double limit(double length)
{
    return length > 0 ? length : std::numeric_limits<double>::infinity();
}

void readStyle(const Options &options, VL_FlexStyle *style)
{
    readNumber(options, L"flexGrow", &style->grow);
    readNumber(options, L"flexShrink", &style->shrink);
    readNumber(options, L"flexMinWidth", &style->minWidth);
    readNumber(options, L"flexMinHeight", &style->minHeight);
    readNumber(options, L"flexMaxWidth", &style->maxWidth);
    readNumber(options, L"flexMaxHeight", &style->maxHeight);
    style->maxWidth = limit(style->maxWidth);
    style->maxHeight = limit(style->maxHeight);
}

void readBox(const Options &options, VL_FlexBox *box)
{
    std::wstring word;
    if (read(options, L"flexDirection", &word)) {
        // What is no direction of a row is one of a column.
        const int index = wordIndex(VL_Any(word), directions());
        box->style.direction = index < 0 ? VL_FlexDirection::Column : (VL_FlexDirection)index;
    }
    if (read(options, L"justifyContent", &word)) {
        const int index = wordIndex(VL_Any(word), justifications());
        box->style.justifyContent = index < 0 ? VL_FlexJustify::Start : (VL_FlexJustify)index;
    }
    if (read(options, L"alignItems", &word)) {
        const int index = wordIndex(VL_Any(word), alignments());
        box->style.alignItems = index < 0 ? VL_FlexAlign::Start : (VL_FlexAlign)index;
    }
    readFlag(options, L"flexWrap", &box->style.wrap);
    readFlag(options, L"flexLayout", &box->enabled);
    // The padding of a layout has two names; the one of flexible layouts counts more.
    readSides(options, L"margin", &box->style.padding);
    readSides(options, L"flexPadding", &box->style.padding);
    readNumber(options, L"spacing", &box->style.mainGap);
    readNumber(options, L"flexGap", &box->style.mainGap);
    box->style.crossGap = box->style.mainGap;
    double columns = box->columns;
    readNumber(options, L"columns", &columns);
    box->columns = columns >= 1 && columns <= 1000 ? (int)columns : 1;
}

// A setting of a window's own layout; schedules it.
template <typename F>
bool changeWindow(VL_FlexWindow window, const F &change)
{
    VL_FlexTree *tree = VL_Flex_TreeOf(window.handle);
    if (!tree)
        return false;
    change(tree->window.style);
    VL_Flex_Schedule(window.handle);
    return true;
}

template <typename F>
void changeControl(VL_FlexWindow control, const F &change)
{
    VL_FlexMember *member = VL_Flex_MemberOf(control.handle);
    if (!member)
        return;
    change(member->style);
    VL_Flex_Schedule(GetParent(control.handle));
}

// The size of the client area in which the design stands.
void noteDesign(HWND window, VL_FlexTree &tree)
{
    if (!tree.boxes.empty())
        return;
    RECT client = {};
    GetClientRect(window, &client);
    const double scale = VL_GetDpiForScaling(window) / 96.0;
    tree.designWidth = client.right / scale;
    tree.designHeight = client.bottom / scale;
}

} // namespace
} // namespace vl_flex_settings

bool VL_Flex_SetDirection(VL_FlexWindow window, const VL_Any &direction)
{
    const int index = vl_flex_settings::wordIndex(direction, vl_flex_settings::directions());
    return index >= 0 && vl_flex_settings::changeWindow(window, [index](VL_FlexContainer &style) {
               style.direction = (VL_FlexDirection)index;
           });
}

bool VL_Flex_SetJustifyContent(VL_FlexWindow window, const VL_Any &justify)
{
    const int index = vl_flex_settings::wordIndex(justify, vl_flex_settings::justifications());
    return index >= 0 && vl_flex_settings::changeWindow(window, [index](VL_FlexContainer &style) {
               style.justifyContent = (VL_FlexJustify)index;
           });
}

bool VL_Flex_SetAlignItems(VL_FlexWindow window, const VL_Any &align)
{
    const int index = vl_flex_settings::wordIndex(align, vl_flex_settings::alignments());
    return index >= 0 && vl_flex_settings::changeWindow(window, [index](VL_FlexContainer &style) {
               style.alignItems = (VL_FlexAlign)index;
           });
}

void VL_Flex_SetWrap(VL_FlexWindow window, bool wrap)
{
    vl_flex_settings::changeWindow(window, [wrap](VL_FlexContainer &style) { style.wrap = wrap; });
}

void VL_Flex_SetGap(VL_FlexWindow window, double gap)
{
    vl_flex_settings::changeWindow(window, [gap](VL_FlexContainer &style) {
        style.mainGap = gap;
        style.crossGap = gap;
    });
}

void VL_Flex_SetPadding(VL_FlexWindow window, double all)
{
    VL_Flex_SetPadding(window, all, all, all, all);
}

void VL_Flex_SetPadding(VL_FlexWindow window, double left, double top, double right, double bottom)
{
    const VL_FlexSides sides = {left, top, right, bottom};
    vl_flex_settings::changeWindow(window,
                                   [sides](VL_FlexContainer &style) { style.padding = sides; });
}

void VL_Flex_SetFlex(VL_FlexWindow control, double share)
{
    vl_flex_settings::changeControl(control, [share](VL_FlexStyle &style) {
        style.grow = share;
        style.shrink = 1;
        style.shares = share > 0;
    });
}

void VL_Flex_SetGrow(VL_FlexWindow control, double grow)
{
    vl_flex_settings::changeControl(control, [grow](VL_FlexStyle &style) { style.grow = grow; });
}

void VL_Flex_SetShrink(VL_FlexWindow control, double shrink)
{
    vl_flex_settings::changeControl(control,
                                    [shrink](VL_FlexStyle &style) { style.shrink = shrink; });
}

void VL_Flex_SetMargin(VL_FlexWindow control, double all)
{
    VL_Flex_SetMargin(control, all, all, all, all);
}

void VL_Flex_SetMargin(VL_FlexWindow control, double left, double top, double right, double bottom)
{
    const VL_FlexSides sides = {left, top, right, bottom};
    vl_flex_settings::changeControl(control,
                                    [sides](VL_FlexStyle &style) { style.margin = sides; });
}

void VL_Flex_SetMinWidth(VL_FlexWindow control, double length)
{
    vl_flex_settings::changeControl(control,
                                    [length](VL_FlexStyle &style) { style.minWidth = length; });
}

void VL_Flex_SetMaxWidth(VL_FlexWindow control, double length)
{
    vl_flex_settings::changeControl(control, [length](VL_FlexStyle &style) {
        style.maxWidth = vl_flex_settings::limit(length);
    });
}

void VL_Flex_SetMinHeight(VL_FlexWindow control, double length)
{
    vl_flex_settings::changeControl(control,
                                    [length](VL_FlexStyle &style) { style.minHeight = length; });
}

void VL_Flex_SetMaxHeight(VL_FlexWindow control, double length)
{
    vl_flex_settings::changeControl(control, [length](VL_FlexStyle &style) {
        style.maxHeight = vl_flex_settings::limit(length);
    });
}

int VL_Flex_AddBox(HWND window, int parentBox, int kind, int x, int y, int width, int height,
                   const wchar_t *options)
{
    using namespace vl_flex_settings;
    VL_FlexTree *tree = VL_Flex_TreeOf(window);
    const VL_FlexBox *parent = tree ? VL_Flex_FindBox(*tree, parentBox) : nullptr;
    if (!parent || parent->depth >= DeepestBox)
        return -1;
    noteDesign(window, *tree);
    VL_FlexBox box;
    box.grid = kind == 2;
    box.depth = parent->depth + 1;
    box.style.direction = kind == 1 ? VL_FlexDirection::Column : VL_FlexDirection::Row;
    box.x = x;
    box.y = y;
    box.width = width;
    box.height = height;
    const Options read = readOptions(options);
    readBox(read, &box);
    VL_FlexChild child;
    child.box = (int)tree->boxes.size();
    readStyle(read, &child.style);
    tree->anchored = false;
    tree->boxes.push_back(box);
    VL_Flex_FindBox(*tree, parentBox)->children.push_back(child);
    VL_Flex_Schedule(window);
    return child.box;
}

void VL_Flex_AddControl(HWND window, int box, HWND control, const wchar_t *options)
{
    using namespace vl_flex_settings;
    VL_FlexTree *tree = VL_Flex_TreeOf(window);
    VL_FlexMember *member = tree ? VL_Flex_MemberOf(control) : nullptr;
    if (!member || !VL_Flex_FindBox(*tree, box))
        return;
    const Options read = readOptions(options);
    readStyle(read, &member->style);
    readSides(read, L"margin", &member->style.margin);
    tree->named = tree->named || box == -1;
    tree->anchored = false;
    VL_Flex_TakeControl(window, box, control);
    VL_Flex_Schedule(window);
}

void VL_Flex_AddSpacer(HWND window, int box, int width, int height, const wchar_t *options)
{
    VL_FlexTree *tree = VL_Flex_TreeOf(window);
    VL_FlexBox *target = tree ? VL_Flex_FindBox(*tree, box) : nullptr;
    if (!target)
        return;
    VL_FlexChild child;
    child.width = width;
    child.height = height;
    child.style.grow = 1;
    vl_flex_settings::readStyle(vl_flex_settings::readOptions(options), &child.style);
    target->children.push_back(child);
    VL_Flex_Schedule(window);
}

void VL_Flex_SetWindow(HWND window, const wchar_t *options)
{
    VL_FlexTree *tree = VL_Flex_TreeOf(window);
    if (!tree)
        return;
    vl_flex_settings::readBox(vl_flex_settings::readOptions(options), &tree->window);
    tree->window.enabled = true;
    VL_EnableFlexLayout(window);
}
