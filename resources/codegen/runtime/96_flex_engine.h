// Layout of the children of one container: flexible rows and columns, and grids of equal cells.
// Knows nothing of windows; lengths are in whatever unit the caller has.
#pragma once
#include <limits>
#include <string>
#include <vector>

enum class VL_FlexDirection
{
    Row,
    Column,
    RowReverse,
    ColumnReverse
};

enum class VL_FlexJustify
{
    Start,
    Center,
    End,
    SpaceBetween,
    SpaceAround,
    SpaceEvenly
};

enum class VL_FlexAlign
{
    Start,
    Center,
    End,
    Stretch
};

struct VL_FlexSides
{
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
};

struct VL_FlexContainer
{
    VL_FlexDirection direction = VL_FlexDirection::Row;
    bool wrap = false;
    VL_FlexJustify justifyContent = VL_FlexJustify::Start;
    // Also places the lines of a container that wraps.
    VL_FlexAlign alignItems = VL_FlexAlign::Start;
    VL_FlexSides padding;
    double mainGap = 0;  // between items of a line
    double crossGap = 0; // between lines
};

struct VL_FlexItem
{
    // What the item would like to be.
    double baseWidth = 0;
    double baseHeight = 0;
    double grow = 0;
    double shrink = 1;
    // A least size wins against a greatest one.
    double minWidth = 0;
    double minHeight = 0;
    double maxWidth = std::numeric_limits<double>::infinity();
    double maxHeight = std::numeric_limits<double>::infinity();
    VL_FlexSides margin;
    bool hidden = false; // takes no room and keeps its place

    // The result, in whole units from the container's corner; never negative.
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// Lays the items out in a container of that size. Items that share an edge before rounding share it
// afterwards. What does not fit runs out at the right and the bottom.
void VL_FlexLayout(const VL_FlexContainer &container, double width, double height,
                   std::vector<VL_FlexItem> &items);
// Cells of equal size, filled line by line; `columns` below 1 counts as 1. An item takes its cell
// less its margins, within its least and greatest sizes.
void VL_GridLayout(int columns, double spacing, const VL_FlexSides &padding, double width,
                   double height, std::vector<VL_FlexItem> &items);
