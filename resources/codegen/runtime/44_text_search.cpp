// Text commands that look for text: find, count, compare, replace, extract, split, trim, case.
#include "44_text_search.h"

#include <algorithm>

namespace vl_text_search {
namespace {

const size_t npos = std::wstring::npos;
// Plain comparison serves what is this short; longer texts get a failure table, so that repeated
// letters cannot make a search quadratic.
const size_t PlainLength = 16;
// A search without regard to case folds this much first and ever more as it goes on.
const size_t FirstFoldedPart = 1024;

bool isHighHalf(wchar_t unit)
{
    return (unit & 0xFC00) == 0xD800;
}

bool isLowHalf(wchar_t unit)
{
    return (unit & 0xFC00) == 0xDC00;
}

bool isBlank(wchar_t unit)
{
    return unit == L' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0x85 || unit == 0xA0 ||
           unit == 0x3000 || (unit >= 0x2000 && unit <= 0x200B) || unit == 0x2028 ||
           unit == 0x2029 || unit == 0x202F || unit == 0x205F || unit == 0xFEFF;
}

std::wstring mapCase(const std::wstring &text, DWORD kind)
{
    std::wstring result = text;
    const size_t step = (size_t)1 << 24;
    for (size_t at = 0; at < text.size(); at += step) {
        const int length = (int)std::min(step, text.size() - at);
        LCMapStringW(LOCALE_INVARIANT, kind, text.data() + at, length, &result[at], length);
    }
    return result;
}

bool isTrimmed(wchar_t unit, const std::wstring &characters)
{
    return characters.empty() ? isBlank(unit) : characters.find(unit) != npos;
}

size_t trimmedStart(const std::wstring &text, const std::wstring &characters)
{
    size_t start = 0;
    while (start < text.size() && isTrimmed(text[start], characters))
        ++start;
    return start;
}

size_t trimmedEnd(const std::wstring &text, const std::wstring &characters, size_t start)
{
    size_t end = text.size();
    while (end > start && isTrimmed(text[end - 1], characters))
        --end;
    return end;
}

// A text to look for, prepared once for any number of searches.
class Pattern
{
public:
    explicit Pattern(const std::wstring &what) : m_what(what)
    {
        if (what.size() <= PlainLength)
            return;
        m_failure.assign(what.size(), 0);
        for (size_t i = 1, matched = 0; i < what.size(); ++i) {
            while (matched > 0 && what[i] != what[matched])
                matched = m_failure[matched - 1];
            if (what[i] == what[matched])
                ++matched;
            m_failure[i] = matched;
        }
    }

    size_t size() const { return m_what.size(); }

    size_t find(const std::wstring &text, size_t from) const
    {
        if (m_what.empty() || from > text.size() || m_what.size() > text.size() - from)
            return npos;
        return m_failure.empty() ? text.find(m_what, from) : scan(text, from, NULL);
    }

    // All finds, overlapping ones too, in one pass.
    void findOverlapping(const std::wstring &text, std::vector<size_t> &found) const
    {
        if (!m_failure.empty()) {
            scan(text, 0, &found);
            return;
        }
        for (size_t at = find(text, 0); at != npos; at = find(text, at + 1))
            found.push_back(at);
    }

private:
    // Stops at the first find, or goes on and adds each to `found`.
    size_t scan(const std::wstring &text, size_t from, std::vector<size_t> *found) const
    {
        size_t matched = 0;
        for (size_t i = from; i < text.size(); ++i) {
            while (matched > 0 && text[i] != m_what[matched])
                matched = m_failure[matched - 1];
            if (text[i] == m_what[matched])
                ++matched;
            if (matched < m_what.size())
                continue;
            if (!found)
                return i + 1 - matched;
            found->push_back(i + 1 - matched);
            matched = m_failure[matched - 1];
        }
        return npos;
    }

    std::wstring m_what;
    std::vector<size_t> m_failure;
};

// A text and what is looked for in it, both folded when case does not count.
class Search
{
public:
    Search(const std::wstring &text, const std::wstring &what, bool caseSensitive)
        : m_folded(caseSensitive ? std::wstring() : VL_ToLower(text)),
          m_text(caseSensitive ? text : m_folded),
          m_pattern(caseSensitive ? what : VL_ToLower(what))
    {}
    Search(const Search &) = delete;
    Search &operator=(const Search &) = delete;

    const std::wstring &text() const { return m_text; }
    const Pattern &pattern() const { return m_pattern; }
    size_t find(size_t from) const { return m_pattern.find(m_text, from); }

private:
    std::wstring m_folded;
    const std::wstring &m_text;
    Pattern m_pattern;
};

// Folds only as far as it has to look, so that a loop of searches stays linear.
size_t findFolded(const std::wstring &text, const std::wstring &what, size_t from)
{
    const Pattern pattern(VL_ToLower(what));
    if (what.empty() || from > text.size())
        return npos;
    for (size_t part = FirstFoldedPart; from < text.size(); part *= 2) {
        const size_t length = std::min(text.size() - from, part + what.size() - 1);
        const size_t at = pattern.find(VL_ToLower(text.substr(from, length)), 0);
        if (at != npos)
            return from + at;
        if (length == text.size() - from)
            return npos;
        from += part;
    }
    return npos;
}

size_t findText(const std::wstring &text, const std::wstring &what, size_t from, bool caseSensitive)
{
    if (what.size() > text.size())
        return npos;
    return caseSensitive ? Pattern(what).find(text, from) : findFolded(text, what, from);
}

size_t position(intptr_t index)
{
    return index > 0 ? (size_t)index : 0;
}

intptr_t asIndex(size_t found)
{
    return found == npos ? -1 : (intptr_t)found;
}

bool equalAt(const std::wstring &text, size_t at, const std::wstring &what, bool caseSensitive)
{
    if (caseSensitive)
        return text.compare(at, what.size(), what) == 0;
    return VL_ToLower(text.substr(at, what.size())) == VL_ToLower(what);
}

size_t findLast(const std::wstring &text, const std::wstring &what)
{
    if (what.size() <= PlainLength)
        return text.rfind(what);
    const std::wstring reversedText(text.rbegin(), text.rend());
    const std::wstring reversedWhat(what.rbegin(), what.rend());
    const size_t at = Pattern(reversedWhat).find(reversedText, 0);
    return at == npos ? npos : text.size() - at - what.size();
}

std::vector<VL_Any> splitCharacters(const std::wstring &text, intptr_t maxParts)
{
    std::vector<VL_Any> parts;
    for (size_t at = 0; at < text.size();) {
        size_t length = VL_CutsPair(text, at + 1) ? 2 : 1;
        if (maxParts > 0 && parts.size() + 1 == (size_t)maxParts)
            length = text.size() - at;
        parts.push_back(VL_Any(text.substr(at, length)));
        at += length;
    }
    return parts;
}

// Walks over pairs of marks; every position is found once however the marks lie.
class MarkWalker
{
public:
    MarkWalker(const std::wstring &text, const std::wstring &left, const std::wstring &right,
               bool caseSensitive, bool acrossLines)
        : m_folded(caseSensitive ? std::wstring() : VL_ToLower(text)),
          m_text(caseSensitive ? text : m_folded),
          m_left(caseSensitive ? left : VL_ToLower(left)),
          m_right(caseSensitive ? right : VL_ToLower(right)),
          m_acrossLines(acrossLines)
    {}
    MarkWalker(const MarkWalker &) = delete;
    MarkWalker &operator=(const MarkWalker &) = delete;

    // Sets where the next content begins and ends; false when there is none.
    bool next(size_t &start, size_t &end)
    {
        for (;;) {
            const size_t mark = m_left.find(m_text, m_at);
            if (mark == npos)
                return false;
            start = mark + m_left.size();
            if (!m_searched || m_end < start)
                m_end = m_right.find(m_text, start);
            m_searched = true;
            if (m_end == npos)
                return false;
            m_at = start;
            if (m_acrossLines || lineEnd(start) >= m_end)
                break;
        }
        end = m_end;
        m_at = end + m_right.size();
        return true;
    }

private:
    size_t lineEnd(size_t from)
    {
        if (m_lineEnd != npos && m_lineEnd < from)
            m_lineEnd = 0;
        if (m_lineEnd == 0)
            m_lineEnd = m_text.find_first_of(L"\r\n", from);
        return m_lineEnd;
    }

    std::wstring m_folded;
    const std::wstring &m_text;
    Pattern m_left;
    Pattern m_right;
    bool m_acrossLines;
    bool m_searched = false;
    size_t m_at = 0;
    size_t m_end = 0;
    size_t m_lineEnd = 0;
};

} // namespace
} // namespace vl_text_search

bool VL_CutsPair(const std::wstring &text, size_t position)
{
    return position > 0 && position < text.size() &&
           vl_text_search::isHighHalf(text[position - 1]) &&
           vl_text_search::isLowHalf(text[position]);
}

std::wstring VL_ToUpper(const std::wstring &text)
{
    return vl_text_search::mapCase(text, LCMAP_UPPERCASE);
}

std::wstring VL_ToLower(const std::wstring &text)
{
    return vl_text_search::mapCase(text, LCMAP_LOWERCASE);
}

std::wstring VL_Trim(const std::wstring &text, const std::wstring &characters)
{
    const size_t start = vl_text_search::trimmedStart(text, characters);
    return text.substr(start, vl_text_search::trimmedEnd(text, characters, start) - start);
}

std::wstring VL_TrimLeft(const std::wstring &text, const std::wstring &characters)
{
    return text.substr(vl_text_search::trimmedStart(text, characters));
}

std::wstring VL_TrimRight(const std::wstring &text, const std::wstring &characters)
{
    return text.substr(0, vl_text_search::trimmedEnd(text, characters, 0));
}

intptr_t VL_StrFind(const std::wstring &text, const std::wstring &what, intptr_t start,
                    bool caseSensitive)
{
    return vl_text_search::asIndex(
        vl_text_search::findText(text, what, vl_text_search::position(start), caseSensitive));
}

intptr_t VL_StrFindLast(const std::wstring &text, const std::wstring &what, bool caseSensitive)
{
    if (what.empty())
        return -1;
    return vl_text_search::asIndex(
        caseSensitive ? vl_text_search::findLast(text, what)
                      : vl_text_search::findLast(VL_ToLower(text), VL_ToLower(what)));
}

std::vector<VL_Any> VL_StrFindAll(const std::wstring &text, const std::wstring &what,
                                  bool caseSensitive, bool overlapping)
{
    const vl_text_search::Search search(text, what, caseSensitive);
    std::vector<size_t> found;
    if (overlapping) {
        search.pattern().findOverlapping(search.text(), found);
    } else {
        for (size_t at = search.find(0); at != std::wstring::npos;
             at = search.find(at + what.size()))
            found.push_back(at);
    }
    std::vector<VL_Any> result;
    result.reserve(found.size());
    for (size_t at : found)
        result.push_back(VL_Any((intptr_t)at));
    return result;
}

intptr_t VL_StrCount(const std::wstring &text, const std::wstring &what, bool caseSensitive)
{
    const vl_text_search::Search search(text, what, caseSensitive);
    intptr_t count = 0;
    for (size_t at = search.find(0); at != std::wstring::npos; at = search.find(at + what.size()))
        ++count;
    return count;
}

bool VL_StrContains(const std::wstring &text, const std::wstring &what, bool caseSensitive)
{
    return what.empty() || VL_StrFind(text, what, 0, caseSensitive) >= 0;
}

bool VL_StrStartsWith(const std::wstring &text, const std::wstring &what, bool caseSensitive)
{
    return what.size() <= text.size() && vl_text_search::equalAt(text, 0, what, caseSensitive);
}

bool VL_StrEndsWith(const std::wstring &text, const std::wstring &what, bool caseSensitive)
{
    return what.size() <= text.size() &&
           vl_text_search::equalAt(text, text.size() - what.size(), what, caseSensitive);
}

intptr_t VL_StrCompare(const std::wstring &left, const std::wstring &right, bool caseSensitive)
{
    const int order =
        caseSensitive ? left.compare(right) : VL_ToLower(left).compare(VL_ToLower(right));
    return order < 0 ? -1 : order > 0 ? 1 : 0;
}

std::wstring VL_StrReplace(const std::wstring &text, const std::wstring &what,
                           const std::wstring &replacement, bool caseSensitive, bool all,
                           intptr_t start, intptr_t count)
{
    if (what.empty() || what.size() > text.size())
        return text;
    const vl_text_search::Search search(text, what, caseSensitive);
    std::wstring result;
    size_t copied = 0;
    size_t at = search.find(vl_text_search::position(start));
    for (intptr_t done = 0; at != std::wstring::npos && (all || done < count); ++done) {
        if (result.empty())
            result.reserve(text.size());
        result.append(text, copied, at - copied).append(replacement);
        if (result.size() > VL_MAX_TEXT_LENGTH)
            return text;
        copied = at + what.size();
        at = search.find(copied);
    }
    return result.append(text, copied, std::wstring::npos);
}

std::wstring VL_StrReplaceAll(const std::wstring &text, const std::wstring &what,
                              const std::wstring &replacement, bool caseSensitive)
{
    return VL_StrReplace(text, what, replacement, caseSensitive, true, 0, 0);
}

std::wstring VL_StrReplaceFirst(const std::wstring &text, const std::wstring &what,
                                const std::wstring &replacement, bool caseSensitive)
{
    return VL_StrReplace(text, what, replacement, caseSensitive, false, 0, 1);
}

std::wstring VL_StrExtractBetween(const std::wstring &text, const std::wstring &left,
                                  const std::wstring &right, intptr_t start, bool caseSensitive)
{
    size_t begin = vl_text_search::position(start);
    if (begin > text.size())
        return std::wstring();
    if (!left.empty()) {
        const size_t mark = vl_text_search::findText(text, left, begin, caseSensitive);
        if (mark == std::wstring::npos)
            return std::wstring();
        begin = mark + left.size();
    }
    const size_t end =
        right.empty() ? text.size() : vl_text_search::findText(text, right, begin, caseSensitive);
    return end == std::wstring::npos ? std::wstring() : text.substr(begin, end - begin);
}

std::vector<VL_Any> VL_StrExtractBetweenAll(const std::wstring &text, const std::wstring &left,
                                            const std::wstring &right, bool includeMarks,
                                            bool caseSensitive, bool keepEmpty, intptr_t maxCount,
                                            bool acrossLines)
{
    std::vector<VL_Any> result;
    if (left.empty() || right.empty())
        return result;
    vl_text_search::MarkWalker walker(text, left, right, caseSensitive, acrossLines);
    size_t start = 0, end = 0;
    while ((maxCount < 0 || result.size() < (size_t)maxCount) && walker.next(start, end)) {
        if (start == end && !keepEmpty)
            continue;
        if (includeMarks) {
            start -= left.size();
            end += right.size();
        }
        result.push_back(VL_Any(text.substr(start, end - start)));
    }
    return result;
}

std::vector<VL_Any> VL_StrSplit(const std::wstring &text, const std::wstring &separator,
                                intptr_t maxParts, bool skipEmpty, bool trim)
{
    if (separator.empty())
        return vl_text_search::splitCharacters(text, maxParts);
    std::vector<VL_Any> parts;
    if (text.empty())
        return parts;
    const vl_text_search::Pattern pattern(separator);
    for (size_t start = 0; start <= text.size();) {
        const bool last = maxParts > 0 && parts.size() + 1 == (size_t)maxParts;
        const size_t found = last ? std::wstring::npos : pattern.find(text, start);
        const size_t end = found == std::wstring::npos ? text.size() : found;
        std::wstring part = text.substr(start, end - start);
        if (trim)
            part = VL_Trim(part);
        if (!skipEmpty || !part.empty())
            parts.push_back(VL_Any(part));
        if (found == std::wstring::npos)
            break;
        start = end + separator.size();
    }
    return parts;
}
