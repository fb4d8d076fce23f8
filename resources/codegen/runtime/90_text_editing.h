// Editing the text of the large text box: caret, selection, words, undoing.
#pragma once
#include "90_text_buffer.h"

// A text with a caret, a selection and the history of its changes; knows of no window.
class VL_TextEditing
{
public:
    // Which changes are undone in one step: letters typed one behind the other are, and so are
    // letters deleted one by one.
    enum class Kind
    {
        Typing,
        Deleting,
        Whole
    };

    // Called for each change with the line it begins in, the column there and how many lines came
    // or went.
    std::function<void(size_t line, size_t column, std::ptrdiff_t lines)> onChange;

    const VirtualTextData &data() const { return m_data; }
    size_t caret() const { return m_caret; }
    size_t anchor() const { return m_anchor; }
    size_t selectionBegin() const { return m_caret < m_anchor ? m_caret : m_anchor; }
    size_t selectionEnd() const { return m_caret < m_anchor ? m_anchor : m_caret; }
    bool hasSelection() const { return m_caret != m_anchor; }
    // Offsets beyond the text mean its end; inside a surrogate pair, the start of the pair.
    void select(size_t anchor, size_t caret);
    // Moves the caret, and with `extend` only the caret.
    void moveTo(size_t offset, bool extend);

    // Replaces everything and forgets the history. `lineEnd` NULL is CR LF.
    void setText(VL_TextPieces &&pieces, const wchar_t *lineEnd);
    // At the end of the text, beside the history: undoing leaves it alone. A caret at the end stays
    // at the end.
    void append(const std::wstring &text);
    void insert(const std::wstring &text, Kind kind = Kind::Whole);
    // The selection, or else what lies between the caret and `other`.
    void removeTo(size_t other);
    // A line end, and the blanks that the caret's line begins with.
    void newLine();
    // Tab: blanks up to the next stop, or ahead of every line of a selection over several lines.
    void indent(size_t tabSpaces);
    void outdent(size_t tabSpaces);

    bool canUndo() const { return !m_undo.empty(); }
    bool canRedo() const { return !m_redo.empty(); }
    void undo();
    void redo();

    // Neighbouring places for a caret.
    size_t previous(size_t offset) const;
    size_t next(size_t offset) const;
    size_t wordLeft(size_t offset) const;
    size_t wordRight(size_t offset) const;
    // The word, blanks or signs around `offset`.
    void wordAround(size_t offset, size_t &begin, size_t &end) const;

private:
    // A change that stands in the text, or was taken back. What is not in the text is held here.
    struct Edit
    {
        bool inserts;
        size_t offset;
        size_t length;
        VL_TextPieces held;
    };
    struct Step
    {
        Kind kind;
        size_t anchorBefore;
        size_t caretBefore;
        size_t anchorAfter;
        size_t caretAfter;
        std::vector<Edit> edits;
    };

    Step &beginStep(Kind kind, bool joins);
    void endStep(size_t anchor, size_t caret);
    void putIn(Step &step, size_t offset, VL_TextPieces &&pieces);
    void takeOut(Step &step, size_t offset, size_t length);
    void applyInsert(Edit &edit);
    void applyErase(Edit &edit);
    void replaceLines(size_t firstLine, size_t lastLine, const std::wstring &text);
    bool selectedLines(size_t &first, size_t &last) const;
    bool joinsTyping(const std::wstring &text) const;
    void adoptLineEnd(const wchar_t *lineEnd);

    VirtualTextData m_data;
    size_t m_caret = 0;
    size_t m_anchor = 0;
    std::vector<Step> m_undo;
    std::vector<Step> m_redo;
    // Whether the last step may take in what is typed next.
    bool m_open = false;
};
