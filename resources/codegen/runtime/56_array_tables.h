// Commands on arrays of two and three dimensions. Indices count from 0.
#pragma once
#include "55_arrays.h"

// Sizes below 0 count as 0; a table beyond the memory is empty.
VL_Array2D VL_Create2DArray(intptr_t rows, intptr_t cols, const VL_Any &initVal = VL_Any());
intptr_t VL_Get2DRows(const VL_Array2D &arr);
// The columns of the longest row.
intptr_t VL_Get2DCols(const VL_Array2D &arr);
VL_Any VL_Get2D(const VL_Array2D &arr, intptr_t row, intptr_t col,
                const VL_Any &fallback = VL_Any());
// False for a place outside the table.
bool VL_Set2D(VL_Array2D &arr, intptr_t row, intptr_t col, const VL_Any &value);
VL_Array VL_Get2DRow(const VL_Array2D &arr, intptr_t row);
// One item of each row; unset where a row is too short.
VL_Array VL_Get2DCol(const VL_Array2D &arr, intptr_t col);
bool VL_Set2DRow(VL_Array2D &arr, intptr_t row, const VL_Array &items);
void VL_Add2DRow(VL_Array2D &arr, const VL_Array &items);
bool VL_Remove2DRow(VL_Array2D &arr, intptr_t row);
// One line for each row.
void VL_Print2D(const VL_Array2D &arr);

VL_Array3D VL_Create3DArray(intptr_t x, intptr_t y, intptr_t z, const VL_Any &initVal = VL_Any());
// The size of dimension 0, 1 or 2, as the first row and column have it.
intptr_t VL_Get3DSize(const VL_Array3D &arr, intptr_t dim);
VL_Any VL_Get3D(const VL_Array3D &arr, intptr_t x, intptr_t y, intptr_t z,
                const VL_Any &fallback = VL_Any());
bool VL_Set3D(VL_Array3D &arr, intptr_t x, intptr_t y, intptr_t z, const VL_Any &value);
