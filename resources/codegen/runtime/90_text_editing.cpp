// Editing the text of the large text box: caret, selection, words, undoing.
#include "90_text_editing.h"

#include <algorithm>

namespace vl_text_editing {
namespace {

// Classes of characters; plain numbers, which the operators of variants leave alone.
const int Blank = 0;
const int LineEnd = 1;
const int Letter = 2;
const int Ideograph = 3;
const int Sign = 4;

// The class of every unit. Halves of pairs count as letters: most pairs are letters of some script
// or emoji, which go together.
const unsigned char *classTable()
{
    static const std::vector<unsigned char> table = [] {
        std::vector<wchar_t> units(0x10000);
        for (size_t i = 0; i < units.size(); ++i)
            units[i] = (wchar_t)i;
        std::vector<WORD> types(units.size(), 0);
        GetStringTypeW(CT_CTYPE1, units.data(), (int)units.size(), types.data());
        std::vector<unsigned char> classes(units.size(), Sign);
        for (size_t i = 0; i < units.size(); ++i) {
            if (i >= 0x2E80 && i < 0xD800 && (types[i] & C1_ALPHA))
                classes[i] = Ideograph;
            else if ((types[i] & (C1_ALPHA | C1_DIGIT)) || i == L'_' || (i >= 0xD800 && i < 0xE000))
                classes[i] = Letter;
            else if (types[i] & (C1_SPACE | C1_BLANK))
                classes[i] = Blank;
        }
        classes[L'\n'] = LineEnd;
        return classes;
    }();
    return table.data();
}

int classOf(wchar_t unit)
{
    return classTable()[(unsigned short)unit];
}

bool isHigh(wchar_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLow(wchar_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

VL_TextPieces cut(const std::wstring &text, const wchar_t **lineEnd = nullptr)
{
    VL_TextCutter cutter;
    cutter.add(text.data(), text.size());
    if (lineEnd)
        *lineEnd = cutter.lineEnd();
    return cutter.take();
}

} // namespace
} // namespace vl_text_editing

size_t VL_TextEditing::previous(size_t offset) const
{
    if (offset == 0)
        return 0;
    offset = (std::min)(offset, m_data.length()) - 1;
    using namespace vl_text_editing;
    const bool pair = offset > 0 && isLow(m_data.at(offset)) && isHigh(m_data.at(offset - 1));
    return pair ? offset - 1 : offset;
}

size_t VL_TextEditing::next(size_t offset) const
{
    if (offset >= m_data.length())
        return m_data.length();
    using namespace vl_text_editing;
    return offset + (isHigh(m_data.at(offset)) && isLow(m_data.at(offset + 1)) ? 2 : 1);
}

size_t VL_TextEditing::wordLeft(size_t offset) const
{
    using namespace vl_text_editing;
    offset = (std::min)(offset, m_data.length());
    while (offset > 0 && classOf(m_data.at(offset - 1)) == Blank)
        --offset;
    if (offset == 0)
        return 0;
    const int own = classOf(m_data.at(offset - 1));
    if (own == LineEnd)
        return offset - 1;
    while (offset > 0 && classOf(m_data.at(offset - 1)) == own)
        --offset;
    return offset;
}

size_t VL_TextEditing::wordRight(size_t offset) const
{
    using namespace vl_text_editing;
    const size_t length = m_data.length();
    if (offset >= length)
        return length;
    const int own = classOf(m_data.at(offset));
    if (own == LineEnd)
        return offset + 1;
    while (offset < length && own != Blank && classOf(m_data.at(offset)) == own)
        ++offset;
    while (offset < length && classOf(m_data.at(offset)) == Blank)
        ++offset;
    return offset;
}

void VL_TextEditing::wordAround(size_t offset, size_t &begin, size_t &end) const
{
    using namespace vl_text_editing;
    const size_t length = m_data.length();
    begin = end = (std::min)(offset, length);
    if (length == 0)
        return;
    int own = begin < length ? classOf(m_data.at(begin)) : LineEnd;
    // Behind the last word of a line, that word is meant.
    if (own == LineEnd) {
        if (begin == 0 || classOf(m_data.at(begin - 1)) == LineEnd)
            return;
        own = classOf(m_data.at(begin - 1));
    }
    while (begin > 0 && classOf(m_data.at(begin - 1)) == own)
        --begin;
    while (end < length && classOf(m_data.at(end)) == own)
        ++end;
}

void VL_TextEditing::select(size_t anchor, size_t caret)
{
    using namespace vl_text_editing;
    const auto valid = [this](size_t offset) {
        offset = (std::min)(offset, m_data.length());
        const bool inPair = offset > 0 && isLow(m_data.at(offset)) && isHigh(m_data.at(offset - 1));
        return inPair ? offset - 1 : offset;
    };
    m_anchor = valid(anchor);
    m_caret = valid(caret);
    m_open = false;
}

void VL_TextEditing::moveTo(size_t offset, bool extend)
{
    select(extend ? m_anchor : offset, offset);
}

// The line end of the first lines that come is the one that the text goes out with.
void VL_TextEditing::adoptLineEnd(const wchar_t *lineEnd)
{
    if (lineEnd && m_data.lineCount() == 1)
        m_data.setOuterLineEnd(lineEnd);
}

void VL_TextEditing::setText(VL_TextPieces &&pieces, const wchar_t *lineEnd)
{
    m_undo.clear();
    m_redo.clear();
    m_open = false;
    m_data = VirtualTextData();
    m_caret = m_anchor = 0;
    if (lineEnd)
        m_data.setOuterLineEnd(lineEnd);
    m_data.insert(0, std::move(pieces));
}

void VL_TextEditing::append(const std::wstring &text)
{
    const wchar_t *lineEnd = nullptr;
    VL_TextPieces pieces = vl_text_editing::cut(text, &lineEnd);
    adoptLineEnd(lineEnd);
    const size_t old = m_data.length();
    const size_t lines = m_data.lineCount();
    const size_t column = old - m_data.lineStart(lines - 1);
    if (m_data.insert(old, std::move(pieces)) == 0)
        return;
    m_open = false;
    if (m_caret == old && m_anchor == old)
        m_caret = m_anchor = m_data.length();
    if (onChange)
        onChange(lines - 1, column, (std::ptrdiff_t)(m_data.lineCount() - lines));
}

// The step that a change goes into: a new one, or with `joins` the last one when it is of that
// kind.
VL_TextEditing::Step &VL_TextEditing::beginStep(Kind kind, bool joins)
{
    m_redo.clear();
    if (!joins || !m_open || m_undo.empty() || m_undo.back().kind != kind)
        m_undo.push_back({kind, m_anchor, m_caret, 0, 0, {}});
    return m_undo.back();
}

void VL_TextEditing::endStep(size_t anchor, size_t caret)
{
    m_anchor = anchor;
    m_caret = caret;
    Step &step = m_undo.back();
    step.anchorAfter = anchor;
    step.caretAfter = caret;
    m_open = step.kind != Kind::Whole;
}

void VL_TextEditing::applyInsert(Edit &edit)
{
    const size_t lines = m_data.lineCount();
    const size_t line = m_data.lineOf(edit.offset);
    const size_t column = edit.offset - m_data.lineStart(line);
    edit.length = m_data.insert(edit.offset, std::move(edit.held));
    edit.held.clear();
    edit.inserts = true;
    if (onChange)
        onChange(line, column, (std::ptrdiff_t)(m_data.lineCount() - lines));
}

void VL_TextEditing::applyErase(Edit &edit)
{
    const size_t lines = m_data.lineCount();
    const size_t line = m_data.lineOf(edit.offset);
    const size_t column = edit.offset - m_data.lineStart(line);
    edit.held = m_data.erase(edit.offset, edit.length);
    edit.inserts = false;
    if (onChange)
        onChange(line, column, -(std::ptrdiff_t)(lines - m_data.lineCount()));
}

void VL_TextEditing::putIn(Step &step, size_t offset, VL_TextPieces &&pieces)
{
    Edit edit = {true, offset, 0, std::move(pieces)};
    applyInsert(edit);
    // Typing makes one record grow.
    if (!step.edits.empty()) {
        Edit &last = step.edits.back();
        if (last.inserts && last.offset + last.length == offset) {
            last.length += edit.length;
            return;
        }
    }
    if (edit.length > 0)
        step.edits.push_back(std::move(edit));
}

void VL_TextEditing::takeOut(Step &step, size_t offset, size_t length)
{
    if (length == 0)
        return;
    step.edits.push_back({false, offset, length, {}});
    applyErase(step.edits.back());
}

// A step of typing ends where a word ends, so that undoing goes back word by word.
bool VL_TextEditing::joinsTyping(const std::wstring &text) const
{
    using namespace vl_text_editing;
    if (hasSelection() || m_caret == 0 || text.empty())
        return false;
    const bool blank = classOf(text[0]) == Blank;
    return !blank || classOf(m_data.at(m_caret - 1)) == Blank;
}

void VL_TextEditing::insert(const std::wstring &text, Kind kind)
{
    const wchar_t *lineEnd = nullptr;
    VL_TextPieces pieces = vl_text_editing::cut(text, &lineEnd);
    if (pieces.empty() && !hasSelection())
        return;
    adoptLineEnd(lineEnd);
    Step &step = beginStep(kind, kind == Kind::Typing && joinsTyping(text));
    const size_t begin = selectionBegin();
    takeOut(step, begin, selectionEnd() - begin);
    size_t length = 0;
    for (const std::wstring &piece : pieces)
        length += piece.size();
    if (length > 0)
        putIn(step, begin, std::move(pieces));
    endStep(begin + length, begin + length);
}

void VL_TextEditing::removeTo(size_t other)
{
    const bool selected = hasSelection();
    const size_t begin = selected ? selectionBegin() : (std::min)(m_caret, other);
    const size_t end = selected ? selectionEnd() : (std::max)(m_caret, other);
    if (begin == end)
        return;
    Step &step = beginStep(selected ? Kind::Whole : Kind::Deleting, !selected);
    takeOut(step, begin, end - begin);
    endStep(begin, begin);
}

void VL_TextEditing::newLine()
{
    const size_t start = m_data.lineStart(m_data.lineOf(selectionBegin()));
    std::wstring text = L"\n";
    for (size_t i = start; i < selectionBegin() && i - start < 1000; ++i) {
        const wchar_t unit = m_data.at(i);
        if (unit != L' ' && unit != L'\t' && unit != 0x3000)
            break;
        text += unit;
    }
    // The text keeps the line end it has; a line made here counts as CR LF.
    const wchar_t *lineEnd = m_data.outerLineEnd();
    insert(text);
    m_data.setOuterLineEnd(lineEnd);
}

// Whether the selection spans several lines; a line of which only the start is touched is not
// counted.
bool VL_TextEditing::selectedLines(size_t &first, size_t &last) const
{
    first = m_data.lineOf(selectionBegin());
    last = m_data.lineOf(selectionEnd());
    if (first == last)
        return false;
    if (selectionEnd() == m_data.lineStart(last))
        --last;
    return true;
}

// All lines at once: one by one, a million lines would take minutes.
void VL_TextEditing::replaceLines(size_t firstLine, size_t lastLine, const std::wstring &text)
{
    const size_t begin = m_data.lineStart(firstLine);
    Step &step = beginStep(Kind::Whole, false);
    takeOut(step, begin, m_data.lineEnd(lastLine) - begin);
    putIn(step, begin, vl_text_editing::cut(text));
    endStep(begin, begin + text.size());
}

void VL_TextEditing::indent(size_t tabSpaces)
{
    size_t first = 0;
    size_t last = 0;
    if (!selectedLines(first, last)) {
        const size_t column = selectionBegin() - m_data.lineStart(first);
        insert(std::wstring(tabSpaces - column % tabSpaces, L' '), Kind::Typing);
        return;
    }
    const size_t begin = m_data.lineStart(first);
    const std::wstring old = m_data.text(begin, m_data.lineEnd(last) - begin);
    const std::wstring blanks(tabSpaces, L' ');
    std::wstring fresh;
    fresh.reserve(old.size() + (last - first + 1) * tabSpaces);
    for (size_t i = 0; i < old.size(); ++i) {
        const bool lineBegins = i == 0 || old[i - 1] == L'\n';
        if (lineBegins && old[i] != L'\n')
            fresh += blanks;
        fresh += old[i];
    }
    replaceLines(first, last, fresh);
}

void VL_TextEditing::outdent(size_t tabSpaces)
{
    size_t first = 0;
    size_t last = 0;
    selectedLines(first, last);
    const size_t begin = m_data.lineStart(first);
    const std::wstring old = m_data.text(begin, m_data.lineEnd(last) - begin);
    std::wstring fresh;
    fresh.reserve(old.size());
    for (size_t i = 0; i < old.size();) {
        if (i == 0 || old[i - 1] == L'\n') {
            const size_t from = i;
            while (i < old.size() && i - from < tabSpaces && old[i] == L' ')
                ++i;
            if (i == from && i < old.size() && old[i] == L'\t')
                ++i;
        }
        const size_t lineEnd = old.find(L'\n', i);
        const size_t until = lineEnd == std::wstring::npos ? old.size() : lineEnd + 1;
        fresh.append(old, i, until - i);
        i = until;
    }
    if (fresh.size() == old.size())
        return;
    const bool single = !hasSelection();
    const size_t gone = old.size() - fresh.size();
    const size_t caret = m_caret > begin + gone ? m_caret - gone : begin;
    replaceLines(first, last, fresh);
    if (single)
        endStep(caret, caret);
}

void VL_TextEditing::undo()
{
    if (m_undo.empty())
        return;
    Step step = std::move(m_undo.back());
    m_undo.pop_back();
    for (size_t i = step.edits.size(); i-- > 0;) {
        if (step.edits[i].inserts)
            applyErase(step.edits[i]);
        else
            applyInsert(step.edits[i]);
    }
    m_anchor = step.anchorBefore;
    m_caret = step.caretBefore;
    m_open = false;
    m_redo.push_back(std::move(step));
}

void VL_TextEditing::redo()
{
    if (m_redo.empty())
        return;
    Step step = std::move(m_redo.back());
    m_redo.pop_back();
    for (Edit &edit : step.edits) {
        if (edit.inserts)
            applyErase(edit);
        else
            applyInsert(edit);
    }
    m_anchor = step.anchorAfter;
    m_caret = step.caretAfter;
    m_open = false;
    m_undo.push_back(std::move(step));
}
