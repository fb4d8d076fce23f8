// Unpacking byte arrays in the zlib format.
#pragma once
#include "12_byte_array.h"

// Takes any zlib stream; what is damaged, cut off or unpacks to more than 2 GB gives an empty
// array.
VL_ByteArray VL_ByteArrayDecompress(const VL_ByteArray &bytes);
