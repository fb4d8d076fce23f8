// The text of the large text box: kept in pieces, so that editing the middle of many megabytes is
// as quick as editing a small text.
#include "90_text_buffer.h"

#include <algorithm>

namespace vl_text_buffer {
namespace {

// Units in a fresh piece, and in a piece that has grown before it is cut.
const size_t kPiece = 0x8000;
const size_t kLargestPiece = 0x10000;
const size_t kNone = (size_t)-1;

// Every unit in lower case, for comparisons that ignore case.
const wchar_t *foldTable()
{
    static const std::vector<wchar_t> table = [] {
        std::vector<wchar_t> units(0x10000);
        for (size_t i = 0; i < units.size(); ++i)
            units[i] = (wchar_t)i;
        std::vector<wchar_t> folded(units);
        LCMapStringW(LOCALE_INVARIANT, LCMAP_LOWERCASE, units.data(), (int)units.size(),
                     folded.data(), (int)folded.size());
        return folded;
    }();
    return table.data();
}

// Finds a pattern in text that comes piece by piece, in one pass whatever text and pattern are
// (Knuth, Morris and Pratt).
class Matcher
{
public:
    explicit Matcher(const std::wstring &pattern)
        : m_fold(foldTable()), m_pattern(pattern), m_fallback(pattern.size(), 0)
    {
        for (wchar_t &unit : m_pattern)
            unit = m_fold[(unsigned short)unit];
        for (size_t i = 1, matched = 0; i < m_pattern.size(); ++i) {
            while (matched > 0 && m_pattern[matched] != m_pattern[i])
                matched = m_fallback[matched - 1];
            if (m_pattern[matched] == m_pattern[i])
                ++matched;
            m_fallback[i] = matched;
        }
    }

    // How many units of `text`, from its start, were read when the pattern was complete; kNone when
    // it is not yet.
    size_t feed(const wchar_t *text, size_t count)
    {
        return run(count, [text](size_t i) { return text[i]; });
    }
    // The same from the text's end backwards.
    size_t feedBack(const wchar_t *text, size_t count)
    {
        return run(count, [text, count](size_t i) { return text[count - 1 - i]; });
    }

private:
    template <typename Unit>
    size_t run(size_t count, Unit unit)
    {
        const size_t length = m_pattern.size();
        const wchar_t first = m_pattern[0];
        size_t matched = m_matched;
        for (size_t i = 0; i < count;) {
            if (matched == 0) {
                while (i < count && m_fold[(unsigned short)unit(i)] != first)
                    ++i;
                if (i == count)
                    break;
                matched = 1;
            } else {
                const wchar_t next = m_fold[(unsigned short)unit(i)];
                while (matched > 0 && m_pattern[matched] != next)
                    matched = m_fallback[matched - 1];
                if (m_pattern[matched] == next)
                    ++matched;
            }
            ++i;
            if (matched == length)
                return i;
        }
        m_matched = matched;
        return kNone;
    }

    const wchar_t *m_fold;
    std::wstring m_pattern;
    std::vector<size_t> m_fallback;
    size_t m_matched = 0;
};

size_t countBreaks(const std::wstring &text)
{
    return (size_t)std::count(text.begin(), text.end(), L'\n');
}

} // namespace
} // namespace vl_text_buffer

void VL_TextCutter::flush()
{
    m_current.resize(m_used);
    m_pieces.push_back(std::move(m_current));
    m_current.clear();
    m_used = 0;
}

void VL_TextCutter::store(wchar_t unit)
{
    if (m_used == m_current.size()) {
        // Doubling from a small size: most texts that come are a few characters.
        if (m_used >= vl_text_buffer::kPiece)
            flush();
        m_current.resize(m_used ? m_used * 2 : m_pieces.empty() ? 64 : vl_text_buffer::kPiece);
    }
    m_current[m_used++] = unit;
}

void VL_TextCutter::add(const wchar_t *text, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        const wchar_t unit = text[i];
        if (unit == L'\n' && m_afterReturn) {
            m_afterReturn = false;
            if (m_breaks == 1)
                m_lineEnd = L"\r\n";
            continue;
        }
        m_afterReturn = unit == L'\r';
        if (m_afterReturn || unit == L'\n') {
            if (m_breaks++ == 0)
                m_lineEnd = m_afterReturn ? L"\r" : L"\n";
            store(L'\n');
        } else {
            store(unit);
        }
    }
}

VL_TextPieces VL_TextCutter::take()
{
    if (m_used > 0)
        flush();
    VL_TextPieces pieces;
    pieces.swap(m_pieces);
    m_afterReturn = false;
    return pieces;
}

VirtualTextData::Chunk VirtualTextData::makeChunk(std::wstring &&text)
{
    Chunk chunk;
    chunk.text = std::move(text);
    chunk.breaks = vl_text_buffer::countBreaks(chunk.text);
    return chunk;
}

const std::vector<unsigned> &VirtualTextData::placesOf(const Chunk &chunk)
{
    if (!chunk.hasPlaces) {
        chunk.places.clear();
        chunk.places.reserve(chunk.breaks);
        const wchar_t *text = chunk.text.data();
        for (size_t i = 0; i < chunk.text.size(); ++i)
            if (text[i] == L'\n')
                chunk.places.push_back((unsigned)i);
        chunk.hasPlaces = true;
    }
    return chunk.places;
}

void VirtualTextData::settle() const
{
    const size_t count = m_chunks.size();
    if (m_settled >= count)
        return;
    m_starts.resize(count);
    m_lines.resize(count);
    for (size_t i = m_settled; i < count; ++i) {
        m_starts[i] = i ? m_starts[i - 1] + m_chunks[i - 1].text.size() : 0;
        m_lines[i] = i ? m_lines[i - 1] + m_chunks[i - 1].breaks : 0;
    }
    m_settled = count;
}

// The chunk's own start stays right, what is behind it moves.
void VirtualTextData::changedFrom(size_t chunk)
{
    m_settled = (std::min)(m_settled, (std::min)(chunk + 1, m_chunks.size()));
    m_seenLength = 0;
}

// The chunk that holds the unit at `offset`, the last one for the end of the text. There must be
// one.
size_t VirtualTextData::chunkOf(size_t offset) const
{
    settle();
    const auto begin = m_starts.begin();
    const auto after = std::upper_bound(begin, begin + (std::ptrdiff_t)m_chunks.size(), offset);
    return (size_t)(after - begin) - 1;
}

wchar_t VirtualTextData::atElsewhere(size_t offset) const
{
    if (offset >= m_length)
        return L'\0';
    const size_t index = chunkOf(offset);
    m_seen = m_chunks[index].text.data();
    m_seenStart = m_starts[index];
    m_seenLength = m_chunks[index].text.size();
    return m_seen[offset - m_seenStart];
}

size_t VirtualTextData::lineStart(size_t line) const
{
    if (line == 0)
        return 0;
    if (line > m_breaks)
        return m_length;
    settle();
    // The chunk with the line end that is ahead of this line: the last one with fewer ahead of it.
    const auto begin = m_lines.begin();
    const auto after = std::lower_bound(begin, begin + (std::ptrdiff_t)m_chunks.size(), line);
    const size_t index = (size_t)(after - begin) - 1;
    return m_starts[index] + placesOf(m_chunks[index])[line - m_lines[index] - 1] + 1;
}

size_t VirtualTextData::lineEnd(size_t line) const
{
    return line >= m_breaks ? m_length : lineStart(line + 1) - 1;
}

size_t VirtualTextData::lineOf(size_t offset) const
{
    if (offset >= m_length)
        return m_breaks;
    const size_t index = chunkOf(offset);
    const std::vector<unsigned> &places = placesOf(m_chunks[index]);
    const unsigned local = (unsigned)(offset - m_starts[index]);
    const auto found = std::lower_bound(places.begin(), places.end(), local);
    return m_lines[index] + (size_t)(found - places.begin());
}

size_t VirtualTextData::copy(size_t offset, size_t count, wchar_t *target) const
{
    if (offset >= m_length)
        return 0;
    count = (std::min)(count, m_length - offset);
    size_t index = chunkOf(offset);
    size_t local = offset - m_starts[index];
    for (size_t done = 0; done < count; ++index, local = 0) {
        const std::wstring &text = m_chunks[index].text;
        const size_t part = (std::min)(text.size() - local, count - done);
        std::copy_n(text.data() + local, part, target + done);
        done += part;
    }
    return count;
}

std::wstring VirtualTextData::text(size_t offset, size_t count) const
{
    std::wstring result;
    if (offset < m_length) {
        result.resize((std::min)(count, m_length - offset));
        copy(offset, result.size(), &result[0]);
    }
    return result;
}

// Makes a chunk begin at `offset` and returns its number.
size_t VirtualTextData::splitAt(size_t offset)
{
    if (offset >= m_length)
        return m_chunks.size();
    const size_t index = chunkOf(offset);
    const size_t local = offset - m_starts[index];
    if (local == 0)
        return index;
    Chunk &left = m_chunks[index];
    Chunk right = makeChunk(left.text.substr(local));
    left.text.resize(local);
    left.text.shrink_to_fit();
    left.breaks -= right.breaks;
    left.hasPlaces = false;
    m_chunks.insert(m_chunks.begin() + (std::ptrdiff_t)index + 1, std::move(right));
    changedFrom(index);
    return index + 1;
}

// Makes one chunk of this and the one ahead of it when they are small.
void VirtualTextData::join(size_t chunk)
{
    if (chunk == 0 || chunk >= m_chunks.size())
        return;
    Chunk &left = m_chunks[chunk - 1];
    Chunk &right = m_chunks[chunk];
    if (left.text.size() + right.text.size() > vl_text_buffer::kPiece)
        return;
    left.text += right.text;
    left.breaks += right.breaks;
    left.hasPlaces = false;
    m_chunks.erase(m_chunks.begin() + (std::ptrdiff_t)chunk);
    changedFrom(chunk - 1);
}

// False when the chunk would become too large.
bool VirtualTextData::insertInto(size_t chunk, size_t place, const std::wstring &text)
{
    Chunk &target = m_chunks[chunk];
    const size_t old = target.text.size();
    if (old + text.size() > vl_text_buffer::kLargestPiece)
        return false;
    target.text.insert(place, text);
    const size_t breaks = vl_text_buffer::countBreaks(text);
    target.breaks += breaks;
    if (place != old)
        target.hasPlaces = false;
    // A growing log must not be scanned again for every line that comes.
    for (size_t i = 0; target.hasPlaces && breaks && i < text.size(); ++i)
        if (text[i] == L'\n')
            target.places.push_back((unsigned)(old + i));
    m_length += text.size();
    m_breaks += breaks;
    changedFrom(chunk);
    return true;
}

size_t VirtualTextData::insert(size_t offset, VL_TextPieces &&pieces)
{
    size_t total = 0;
    for (const std::wstring &piece : pieces)
        total += piece.size();
    if (total == 0)
        return 0;
    offset = (std::min)(offset, m_length);
    if (pieces.size() == 1 && !m_chunks.empty()) {
        const size_t chunk = chunkOf(offset);
        if (insertInto(chunk, offset - m_starts[chunk], pieces[0]))
            return total;
    }
    std::vector<Chunk> fresh;
    fresh.reserve(pieces.size());
    size_t breaks = 0;
    for (std::wstring &piece : pieces) {
        if (piece.empty())
            continue;
        fresh.push_back(makeChunk(std::move(piece)));
        breaks += fresh.back().breaks;
    }
    const size_t first = splitAt(offset);
    const size_t count = fresh.size();
    m_chunks.insert(m_chunks.begin() + (std::ptrdiff_t)first,
                    std::make_move_iterator(fresh.begin()), std::make_move_iterator(fresh.end()));
    m_length += total;
    m_breaks += breaks;
    changedFrom(first ? first - 1 : 0);
    join(first + count);
    join(first);
    return total;
}

VL_TextPieces VirtualTextData::erase(size_t offset, size_t count)
{
    VL_TextPieces pieces;
    if (offset >= m_length || count == 0)
        return pieces;
    count = (std::min)(count, m_length - offset);
    const size_t chunk = chunkOf(offset);
    const size_t local = offset - m_starts[chunk];
    Chunk &target = m_chunks[chunk];
    if (count < target.text.size() && local + count <= target.text.size()) {
        pieces.push_back(target.text.substr(local, count));
        const size_t breaks = vl_text_buffer::countBreaks(pieces[0]);
        target.text.erase(local, count);
        target.breaks -= breaks;
        target.hasPlaces = false;
        m_length -= count;
        m_breaks -= breaks;
        changedFrom(chunk);
        join(chunk);
        return pieces;
    }
    const size_t first = splitAt(offset);
    const size_t last = splitAt(offset + count);
    for (size_t i = first; i < last; ++i) {
        m_breaks -= m_chunks[i].breaks;
        pieces.push_back(std::move(m_chunks[i].text));
    }
    m_chunks.erase(m_chunks.begin() + (std::ptrdiff_t)first,
                   m_chunks.begin() + (std::ptrdiff_t)last);
    m_length -= count;
    changedFrom(first ? first - 1 : 0);
    join(first);
    return pieces;
}

size_t VirtualTextData::find(const std::wstring &pattern, size_t begin, size_t end) const
{
    end = (std::min)(end, m_length);
    if (pattern.empty() || begin >= end || end - begin < pattern.size())
        return vl_text_buffer::kNone;
    vl_text_buffer::Matcher matcher(pattern);
    for (size_t i = chunkOf(begin); i < m_chunks.size() && m_starts[i] < end; ++i) {
        const size_t from = begin > m_starts[i] ? begin - m_starts[i] : 0;
        const size_t to = (std::min)(m_chunks[i].text.size(), end - m_starts[i]);
        const size_t read = matcher.feed(m_chunks[i].text.data() + from, to - from);
        if (read != vl_text_buffer::kNone)
            return m_starts[i] + from + read - pattern.size();
    }
    return vl_text_buffer::kNone;
}

size_t VirtualTextData::findLast(const std::wstring &pattern, size_t begin, size_t end) const
{
    end = (std::min)(end, m_length);
    if (pattern.empty() || begin >= end || end - begin < pattern.size())
        return vl_text_buffer::kNone;
    vl_text_buffer::Matcher matcher(std::wstring(pattern.rbegin(), pattern.rend()));
    for (size_t i = chunkOf(end - 1) + 1;
         i-- > 0 && m_starts[i] + m_chunks[i].text.size() > begin;) {
        const size_t from = begin > m_starts[i] ? begin - m_starts[i] : 0;
        const size_t to = (std::min)(m_chunks[i].text.size(), end - m_starts[i]);
        const size_t read = matcher.feedBack(m_chunks[i].text.data() + from, to - from);
        if (read != vl_text_buffer::kNone)
            return m_starts[i] + to - read;
    }
    return vl_text_buffer::kNone;
}

size_t VirtualTextData::outerOffset(size_t offset) const
{
    offset = (std::min)(offset, m_length);
    return m_lineEnd[1] ? offset + lineOf(offset) : offset;
}

size_t VirtualTextData::innerOffset(size_t outerOffset) const
{
    if (!m_lineEnd[1])
        return (std::min)(outerOffset, m_length);
    // The last line that begins at that place or ahead of it.
    size_t low = 0;
    size_t high = m_breaks;
    while (low < high) {
        const size_t middle = low + (high - low + 1) / 2;
        if (lineStart(middle) + middle <= outerOffset)
            low = middle;
        else
            high = middle - 1;
    }
    return (std::min)(outerOffset - low, lineEnd(low));
}

size_t VirtualTextData::copyOuter(size_t offset, size_t count, const wchar_t *lineEnd,
                                  wchar_t *target, size_t room) const
{
    if (offset >= m_length)
        return 0;
    count = (std::min)(count, m_length - offset);
    size_t index = chunkOf(offset);
    size_t local = offset - m_starts[index];
    size_t used = 0;
    for (; count > 0 && used < room; ++index, local = 0) {
        const std::wstring &text = m_chunks[index].text;
        const size_t part = (std::min)(text.size() - local, count);
        count -= part;
        for (size_t i = local; i < local + part && used < room; ++i) {
            if (text[i] != L'\n') {
                target[used++] = text[i];
                continue;
            }
            target[used++] = lineEnd[0];
            if (lineEnd[1] && used < room)
                target[used++] = lineEnd[1];
        }
    }
    return used;
}
