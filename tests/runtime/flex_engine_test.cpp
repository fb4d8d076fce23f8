// The layout of one container: growing, shrinking, limits, lines, alignment, rounding, grids.
#include "96_flex_engine.h"
#include "runtime_test.h"

#include <cmath>
#include <cstring>

namespace {

const double None = std::numeric_limits<double>::infinity();

VL_FlexItem item(double width, double height, double grow = 0, double shrink = 1)
{
    VL_FlexItem one;
    one.baseWidth = width;
    one.baseHeight = height;
    one.grow = grow;
    one.shrink = shrink;
    return one;
}

VL_FlexItem limited(VL_FlexItem one, double least, double greatest)
{
    one.minWidth = least;
    one.maxWidth = greatest;
    return one;
}

VL_FlexItem withMargin(VL_FlexItem one, double all)
{
    one.margin = {all, all, all, all};
    return one;
}

VL_FlexItem hidden(VL_FlexItem one)
{
    one.hidden = true;
    return one;
}

// "x,y,w,h x,y,w,h"
std::wstring places(const std::vector<VL_FlexItem> &items)
{
    std::wstring text;
    for (const VL_FlexItem &one : items) {
        text += (text.empty() ? L"" : L" ") + std::to_wstring(one.x) + L"," +
                std::to_wstring(one.y) + L"," + std::to_wstring(one.width) + L"," +
                std::to_wstring(one.height);
    }
    return text;
}

struct Row
{
    const char *name;
    VL_FlexContainer container;
    double width;
    double height;
    std::vector<VL_FlexItem> items;
    const wchar_t *expected;
};

VL_FlexContainer container(VL_FlexDirection direction = VL_FlexDirection::Row, double padding = 0,
                           double gap = 0)
{
    VL_FlexContainer made;
    made.direction = direction;
    made.padding = {padding, padding, padding, padding};
    made.mainGap = gap;
    made.crossGap = gap;
    return made;
}

VL_FlexContainer justified(VL_FlexJustify justify, VL_FlexAlign align = VL_FlexAlign::Start)
{
    VL_FlexContainer made;
    made.justifyContent = justify;
    made.alignItems = align;
    return made;
}

VL_FlexContainer wrapping(VL_FlexAlign align, double gap)
{
    VL_FlexContainer made = container(VL_FlexDirection::Row, 0, gap);
    made.wrap = true;
    made.alignItems = align;
    return made;
}

void check(const std::vector<Row> &rows)
{
    for (Row row : rows) {
        VL_FlexLayout(row.container, row.width, row.height, row.items);
        const std::wstring name(row.name, row.name + strlen(row.name));
        CHECK_EQ(name + L": " + places(row.items), name + L": " + row.expected);
    }
}

void sizes()
{
    const VL_FlexDirection column = VL_FlexDirection::Column;
    check({
        {"base sizes",
         container(),
         300,
         100,
         {item(50, 20), item(60, 30)},
         L"0,0,50,20 50,0,60,30"},
        {"padding and gap",
         container(column, 5, 7),
         300,
         200,
         {item(50, 20), item(60, 30)},
         L"5,5,50,20 5,32,60,30"},
        {"grow by factor",
         container(),
         300,
         100,
         {item(50, 20, 1), item(50, 20, 3)},
         L"0,0,100,20 100,0,200,20"},
        {"factors below 1 leave room",
         container(),
         300,
         100,
         {item(100, 20, 0.25), item(100, 20, 0.25)},
         L"0,0,125,20 125,0,125,20"},
        {"a greatest size gives the rest to the others",
         container(),
         300,
         100,
         {limited(item(0, 20, 1), 0, 50), item(0, 20, 1), item(0, 20, 1)},
         L"0,0,50,20 50,0,125,20 175,0,125,20"},
        {"a least size takes from the others",
         container(),
         300,
         100,
         {limited(item(0, 20, 1), 200, None), item(0, 20, 1), item(0, 20, 1)},
         L"0,0,200,20 200,0,50,20 250,0,50,20"},
        // Both limits are passed in the first round; the greatest ones are settled first.
        {"least and greatest sizes together",
         container(),
         300,
         100,
         {limited(item(0, 20, 1), 110, None), limited(item(0, 20, 1), 0, 40), item(0, 20, 1)},
         L"0,0,130,20 130,0,40,20 170,0,130,20"},
        {"greater items shrink more",
         container(),
         200,
         100,
         {item(100, 20), item(300, 20)},
         L"0,0,50,20 50,0,150,20"},
        {"without shrinking it runs out",
         container(),
         100,
         100,
         {item(80, 20, 0, 0), item(80, 20, 0, 0)},
         L"0,0,80,20 80,0,80,20"},
        {"shrinking to a least size",
         container(),
         150,
         100,
         {limited(item(100, 20), 90, None), item(100, 20)},
         L"0,0,90,20 90,0,60,20"},
        {"the base beyond the greatest size",
         container(),
         300,
         100,
         {limited(item(200, 20, 1), 0, 100), item(50, 20, 1)},
         L"0,0,100,20 100,0,200,20"},
        {"a least size wins against a greatest",
         container(),
         300,
         100,
         {limited(item(10, 20), 80, 40)},
         L"0,0,80,20"},
        {"margins and hidden items",
         container(VL_FlexDirection::Row, 0, 10),
         200,
         100,
         {withMargin(item(40, 20), 5), hidden(item(40, 20, 9)), withMargin(item(40, 20, 1), 5)},
         L"5,5,40,20 0,0,0,0 65,5,130,20"},
        {"column",
         container(column),
         100,
         300,
         {item(50, 20, 1), item(60, 30)},
         L"0,0,50,270 0,270,60,30"},
    });
}

void alignment()
{
    const std::vector<VL_FlexItem> two = {item(50, 20), item(50, 40)};
    check({
        {"centre", justified(VL_FlexJustify::Center, VL_FlexAlign::Center), 200, 100, two,
         L"50,40,50,20 100,30,50,40"},
        {"end", justified(VL_FlexJustify::End, VL_FlexAlign::End), 200, 100, two,
         L"100,80,50,20 150,60,50,40"},
        {"between, stretched", justified(VL_FlexJustify::SpaceBetween, VL_FlexAlign::Stretch), 200,
         100, two, L"0,0,50,100 150,0,50,100"},
        {"around", justified(VL_FlexJustify::SpaceAround), 200, 100, two,
         L"25,0,50,20 125,0,50,40"},
        {"evenly", justified(VL_FlexJustify::SpaceEvenly), 190, 100, two,
         L"30,0,50,20 110,0,50,40"},
        {"between a single one",
         justified(VL_FlexJustify::SpaceBetween),
         200,
         100,
         {item(50, 20)},
         L"0,0,50,20"},
        {"nothing runs out at the left",
         justified(VL_FlexJustify::Center),
         60,
         100,
         {item(50, 20, 0, 0), item(50, 40, 0, 0)},
         L"0,0,50,20 50,0,50,40"},
        {"row from the right", container(VL_FlexDirection::RowReverse, 10, 5), 200, 100, two,
         L"140,10,50,20 85,10,50,40"},
        {"column from below", container(VL_FlexDirection::ColumnReverse), 200, 100, two,
         L"0,80,50,20 0,40,50,40"},
    });
}

void lines()
{
    const std::vector<VL_FlexItem> three = {item(60, 20), item(60, 40), item(60, 30)};
    check({
        {"lines at the top", wrapping(VL_FlexAlign::Start, 10), 130, 200, three,
         L"0,0,60,20 70,0,60,40 0,50,60,30"},
        {"lines in the middle", wrapping(VL_FlexAlign::Center, 10), 130, 200, three,
         L"0,70,60,20 70,60,60,40 0,110,60,30"},
        {"stretched lines", wrapping(VL_FlexAlign::Stretch, 10), 130, 200, three,
         L"0,0,60,100 70,0,60,100 0,110,60,90"},
        {"an item wider than all",
         wrapping(VL_FlexAlign::Start, 0),
         50,
         200,
         {item(60, 20, 0, 0), item(20, 20)},
         L"0,0,60,20 0,20,20,20"},
        {"growing within its line",
         wrapping(VL_FlexAlign::Start, 0),
         100,
         200,
         {item(60, 20, 1), item(60, 20, 1)},
         L"0,0,100,20 0,20,100,20"},
    });
}

// Neighbours share their edge, and the last one ends where the container ends.
void rounding()
{
    for (int width = 90; width < 110; ++width) {
        std::vector<VL_FlexItem> items(7, item(0, 10, 1));
        VL_FlexLayout(container(), width, 10, items);
        for (size_t i = 1; i < items.size(); ++i)
            CHECK_EQ(items[i].x, items[i - 1].x + items[i - 1].width);
        CHECK_EQ(items.back().x + items.back().width, width);
    }
    // A whole size keeps it wherever it begins.
    std::vector<VL_FlexItem> items = {item(33, 10), item(33, 10)};
    VL_FlexLayout(justified(VL_FlexJustify::Center), 101, 10, items);
    CHECK_EQ(places(items), std::wstring(L"18,0,33,10 51,0,33,10"));
}

void grids()
{
    std::vector<VL_FlexItem> items(3, item(10, 10));
    VL_GridLayout(2, 10, {5, 5, 5, 5}, 120, 80, items);
    CHECK_EQ(places(items), std::wstring(L"5,5,50,30 65,5,50,30 5,45,50,30"));
    items[0].hidden = true;
    VL_GridLayout(2, 10, {5, 5, 5, 5}, 120, 80, items);
    CHECK_EQ(places({items[1], items[2]}), std::wstring(L"5,5,50,70 65,5,50,70"));
    VL_GridLayout(-3, 10, {0, 0, 0, 0}, 3, 3, items);
    CHECK(items[2].width >= 0 && items[2].height >= 0);
}

// Numbers that no form should hold: nothing negative, nothing that is no number, no end without.
void oddNumbers()
{
    const double odd[] = {0, -1, 1e300, -1e300, None, -None, std::nan(""), 1e-300, 0.5};
    for (const double a : odd) {
        for (const double b : odd) {
            std::vector<VL_FlexItem> items = {item(a, b, b, a), limited(item(b, a, a, b), a, b),
                                              withMargin(item(10, 10, 1), a)};
            for (const VL_FlexDirection direction :
                 {VL_FlexDirection::Row, VL_FlexDirection::ColumnReverse}) {
                VL_FlexContainer box = container(direction, b, a);
                box.wrap = a < b;
                VL_FlexLayout(box, a, b, items);
                for (const VL_FlexItem &one : items)
                    CHECK(one.x >= 0 && one.y >= 0 && one.width >= 0 && one.height >= 0);
            }
        }
    }
    std::vector<VL_FlexItem> many(100000, item(3, 3, 1));
    VL_FlexLayout(container(), 1000, 10, many);
    CHECK_EQ(many.back().x + many.back().width, 1000);
    std::vector<VL_FlexItem> nothing;
    VL_FlexLayout(container(), 10, 10, nothing);
    VL_GridLayout(2, 5, {}, 10, 10, nothing);
}

} // namespace

void runTests()
{
    sizes();
    alignment();
    lines();
    rounding();
    grids();
    oddNumbers();
}
