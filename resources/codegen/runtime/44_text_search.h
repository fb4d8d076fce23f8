// Text commands that look for text: find, count, compare, replace, extract, split, trim, case.
// Positions count UTF-16 units from 0. Every search takes time in proportion to the text.
#pragma once
#include "10_any.h"

// No command makes a text longer than this many units; on 32 bits memory is scarce.
const size_t VL_MAX_TEXT_LENGTH = sizeof(void *) == 8 ? (size_t)1 << 29 : (size_t)1 << 26;

// True when `position` lies between the two halves of a surrogate pair.
bool VL_CutsPair(const std::wstring &text, size_t position);

// Case by the rules that hold for all languages; the length never changes.
std::wstring VL_ToUpper(const std::wstring &text);
std::wstring VL_ToLower(const std::wstring &text);

// Takes the characters of `characters` off the ends; when it is empty, all blanks, tabs, line ends,
// and the wide blank of Chinese text.
std::wstring VL_Trim(const std::wstring &text, const std::wstring &characters = L"");
std::wstring VL_TrimLeft(const std::wstring &text, const std::wstring &characters = L"");
std::wstring VL_TrimRight(const std::wstring &text, const std::wstring &characters = L"");

// Position of the first (last) `what` or -1; an empty `what` is found nowhere. A negative `start`
// means 0.
intptr_t VL_StrFind(const std::wstring &text, const std::wstring &what, intptr_t start = 0,
                    bool caseSensitive = true);
intptr_t VL_StrFindLast(const std::wstring &text, const std::wstring &what,
                        bool caseSensitive = true);
// All positions; finds that overlap an earlier one only when `overlapping`.
std::vector<VL_Any> VL_StrFindAll(const std::wstring &text, const std::wstring &what,
                                  bool caseSensitive = true, bool overlapping = false);
intptr_t VL_StrCount(const std::wstring &text, const std::wstring &what, bool caseSensitive = true);

bool VL_StrContains(const std::wstring &text, const std::wstring &what, bool caseSensitive = true);
// An empty `what` begins and ends every text.
bool VL_StrStartsWith(const std::wstring &text, const std::wstring &what,
                      bool caseSensitive = true);
bool VL_StrEndsWith(const std::wstring &text, const std::wstring &what, bool caseSensitive = true);
// -1, 0 or 1 by the numbers of the characters.
intptr_t VL_StrCompare(const std::wstring &left, const std::wstring &right,
                       bool caseSensitive = true);

// Replaces from `start` on: everything when `all`, else at most `count` times. An empty `what`, and
// a result beyond VL_MAX_TEXT_LENGTH, leave the text as it is.
std::wstring VL_StrReplace(const std::wstring &text, const std::wstring &what,
                           const std::wstring &replacement, bool caseSensitive = true,
                           bool all = true, intptr_t start = 0, intptr_t count = 1);
std::wstring VL_StrReplaceAll(const std::wstring &text, const std::wstring &what,
                              const std::wstring &replacement, bool caseSensitive = true);
std::wstring VL_StrReplaceFirst(const std::wstring &text, const std::wstring &what,
                                const std::wstring &replacement, bool caseSensitive = true);

// The text between the first `left` from `start` on and the next `right`. An empty `left` stands
// for `start` itself, an empty `right` for the end; empty when a mark is missing.
std::wstring VL_StrExtractBetween(const std::wstring &text, const std::wstring &left,
                                  const std::wstring &right, intptr_t start = 0,
                                  bool caseSensitive = true);
// All such texts one behind the other. `maxCount` below 0 means no limit; without `acrossLines` a
// pair of marks must stand on one line. Both marks must be non-empty.
std::vector<VL_Any> VL_StrExtractBetweenAll(const std::wstring &text, const std::wstring &left,
                                            const std::wstring &right, bool includeMarks = false,
                                            bool caseSensitive = true, bool keepEmpty = true,
                                            intptr_t maxCount = -1, bool acrossLines = true);

// The parts between separators; at most `maxParts` when that is positive, the last one then holding
// the rest. An empty separator splits into characters; an empty text has no parts.
std::vector<VL_Any> VL_StrSplit(const std::wstring &text, const std::wstring &separator = L",",
                                intptr_t maxParts = 0, bool skipEmpty = false, bool trim = false);
