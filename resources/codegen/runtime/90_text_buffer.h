// The text of the large text box: kept in pieces, so that editing the middle of many megabytes is
// as quick as editing a small text.
#pragma once
#include "00_prelude.h"

// Text on its way into or out of a VirtualTextData; every line ends with one L'\n'.
typedef std::vector<std::wstring> VL_TextPieces;

// Cuts text into pieces of the size that VirtualTextData likes and makes one L'\n' of every kind of
// line end. Takes the text in parts of any size; a CR LF may lie across two parts.
class VL_TextCutter
{
public:
    void add(const wchar_t *text, size_t count);
    // The pieces; the cutter is empty afterwards.
    VL_TextPieces take();
    // The first line end that came: L"\r\n", L"\n" or L"\r"; NULL without one.
    const wchar_t *lineEnd() const { return m_lineEnd; }

private:
    void store(wchar_t unit);
    void flush();

    VL_TextPieces m_pieces;
    std::wstring m_current;
    size_t m_used = 0;
    size_t m_breaks = 0;
    bool m_afterReturn = false;
    const wchar_t *m_lineEnd = nullptr;
};

// Offsets count UTF-16 units from 0, a line end is one unit; lines count from 0. Offsets and counts
// that reach beyond the text are cut to it.
class VirtualTextData
{
public:
    size_t length() const { return m_length; }
    // At least 1.
    size_t lineCount() const { return m_breaks + 1; }
    size_t lineStart(size_t line) const;
    // Where the line's text ends, ahead of its line end.
    size_t lineEnd(size_t line) const;
    size_t lineOf(size_t offset) const;
    // L'\0' at the end of the text and beyond.
    wchar_t at(size_t offset) const
    {
        if (offset - m_seenStart < m_seenLength)
            return m_seen[offset - m_seenStart];
        return atElsewhere(offset);
    }
    // Returns how many units were copied.
    size_t copy(size_t offset, size_t count, wchar_t *target) const;
    std::wstring text(size_t offset, size_t count) const;

    // Returns the length of what was inserted.
    size_t insert(size_t offset, VL_TextPieces &&pieces);
    VL_TextPieces erase(size_t offset, size_t count);

    // The first place in begin..end where the text is `pattern`, regardless of case; -1 without
    // one. A pattern's lines end with L'\n'. Takes time in proportion to the text.
    size_t find(const std::wstring &pattern, size_t begin, size_t end) const;
    // The last such place.
    size_t findLast(const std::wstring &pattern, size_t begin, size_t end) const;

    // The line end with which the text goes out: L"\r\n", L"\n" or L"\r".
    const wchar_t *outerLineEnd() const { return m_lineEnd; }
    void setOuterLineEnd(const wchar_t *lineEnd) { m_lineEnd = lineEnd; }
    // Length, offsets and text as they are with those line ends.
    size_t outerLength() const { return outerOffset(m_length); }
    size_t outerOffset(size_t offset) const;
    size_t innerOffset(size_t outerOffset) const;
    // Writes at most `room` units of the range, line ends as given, and returns how many.
    size_t copyOuter(size_t offset, size_t count, const wchar_t *lineEnd, wchar_t *target,
                     size_t room) const;
    // The stored pieces, for whoever walks over the whole text.
    size_t chunkCount() const { return m_chunks.size(); }
    const std::wstring &chunk(size_t index) const { return m_chunks[index].text; }

private:
    struct Chunk
    {
        std::wstring text;
        size_t breaks = 0;
        // Where the chunk's line ends are; made when asked for.
        mutable std::vector<unsigned> places;
        mutable bool hasPlaces = false;
    };

    static Chunk makeChunk(std::wstring &&text);
    static const std::vector<unsigned> &placesOf(const Chunk &chunk);
    wchar_t atElsewhere(size_t offset) const;
    void settle() const;
    void changedFrom(size_t chunk);
    size_t chunkOf(size_t offset) const;
    size_t splitAt(size_t offset);
    void join(size_t chunk);
    bool insertInto(size_t chunk, size_t place, const std::wstring &text);

    std::vector<Chunk> m_chunks;
    size_t m_length = 0;
    size_t m_breaks = 0;
    const wchar_t *m_lineEnd = L"\r\n";
    // Units and line ends ahead of each chunk, right for the first m_settled chunks.
    mutable std::vector<size_t> m_starts;
    mutable std::vector<size_t> m_lines;
    mutable size_t m_settled = 0;
    // The chunk that at() read last.
    mutable const wchar_t *m_seen = nullptr;
    mutable size_t m_seenStart = 0;
    mutable size_t m_seenLength = 0;
};
