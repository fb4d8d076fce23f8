// Masks blurred and grown: shadows, glows and outlines of what a mask covers.
#pragma once
#include "68_raster.h"

void VL_BlurMask(VL_Mask &mask, int radius);
// What lies within `radius` pixels of the covered ones; `soft` fades out towards the rim.
VL_Mask VL_GrowMask(const VL_Mask &mask, double radius, bool soft);
