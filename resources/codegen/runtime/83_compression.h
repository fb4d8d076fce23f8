// Packing byte arrays in the zlib format.
#pragma once
#include "12_byte_array.h"

// What packing and unpacking share of the format.
namespace vl_deflate {

const int kMaxBits = 15;      // of one code
const size_t kLiterals = 286; // bytes, the end of a block, lengths
const size_t kDistances = 30;
const size_t kCodeSymbols = 19;
const int kEndOfBlock = 256;
const size_t kMaxMatch = 258;
const size_t kLargest = 0x7FFFFFFF;

// The lowest value of each length and distance symbol, and how many bits follow to tell the rest.
extern const unsigned short lengthBase[29];
extern const unsigned char lengthExtra[29];
extern const unsigned short distanceBase[30];
extern const unsigned char distanceExtra[30];
// In which order the lengths of the code for code lengths are written.
extern const unsigned char codeOrder[kCodeSymbols];

unsigned checkSum(const unsigned char *data, size_t length);

} // namespace vl_deflate

// Empty only for what leaves no room under 2 GB.
VL_ByteArray VL_ByteArrayCompress(const VL_ByteArray &bytes);
