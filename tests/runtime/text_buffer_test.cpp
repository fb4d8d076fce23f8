// The stored text of the large text box and its editing, against a plain string as the truth.
#include "90_text_editing.h"
#include "runtime_test.h"

namespace {

const size_t kNone = (size_t)-1;

VL_TextPieces cut(const std::wstring &text)
{
    VL_TextCutter cutter;
    cutter.add(text.data(), text.size());
    return cutter.take();
}

std::wstring whole(const VirtualTextData &data)
{
    return data.text(0, data.length());
}

// A small generator, so that a failure comes again.
struct Random
{
    unsigned state = 12345;
    size_t below(size_t limit)
    {
        state = state * 1664525 + 1013904223;
        return limit ? (state >> 8) % limit : 0;
    }
};

std::wstring randomText(Random &random, size_t length)
{
    std::wstring text;
    for (size_t i = 0; i < length; ++i)
        text += L"ab \n\u4E2D"[random.below(5)];
    return text;
}

void checkLines(const VirtualTextData &data, const std::wstring &truth, Random &random)
{
    size_t lines = 1;
    for (wchar_t unit : truth)
        lines += unit == L'\n';
    CHECK_EQ(data.lineCount(), lines);
    for (int i = 0; i < 5; ++i) {
        const size_t offset = random.below(truth.size() + 1);
        const size_t before = offset ? truth.rfind(L'\n', offset - 1) : std::wstring::npos;
        const size_t start = before == std::wstring::npos ? 0 : before + 1;
        const size_t after = truth.find(L'\n', offset);
        const size_t line = data.lineOf(offset);
        CHECK_EQ(data.lineStart(line), start);
        CHECK_EQ(data.lineEnd(line), after == std::wstring::npos ? truth.size() : after);
        CHECK_EQ(data.at(offset), offset < truth.size() ? truth[offset] : L'\0');
    }
}

// Sizes from a letter to several pieces, so that pieces are cut, joined and taken out whole.
void randomEdits()
{
    Random random;
    VirtualTextData data;
    std::wstring truth;
    const size_t sizes[] = {1, 3, 50, 5000, 70000, 200000};
    for (int round = 0; round < 400; ++round) {
        const size_t offset = random.below(truth.size() + 1);
        const size_t size = random.below(sizes[random.below(6)]) + 1;
        if (random.below(2) || truth.empty()) {
            const std::wstring text = randomText(random, size);
            CHECK_EQ(data.insert(offset, cut(text)), text.size());
            truth.insert(offset, text);
        } else {
            std::wstring gone;
            for (const std::wstring &piece : data.erase(offset, size))
                gone += piece;
            CHECK(gone == truth.substr(offset, size));
            truth.erase(offset, size);
        }
        checkLines(data, truth, random);
    }
    CHECK(whole(data) == truth);
    CHECK(truth.size() > 100000);
    data.erase(0, kNone);
    CHECK_EQ(data.length(), (size_t)0);
    CHECK_EQ(data.lineCount(), (size_t)1);
}

void lineEnds()
{
    const struct
    {
        const wchar_t *given;
        const wchar_t *stored;
        const wchar_t *lineEnd;
    } rows[] = {
        {L"a\r\nb", L"a\nb", L"\r\n"},   {L"a\nb\r\n", L"a\nb\n", L"\n"}, {L"a\rb", L"a\nb", L"\r"},
        {L"\r\r\n\n", L"\n\n\n", L"\r"}, {L"\r\n\r", L"\n\n", L"\r\n"},
    };
    for (const auto &row : rows) {
        // Unit by unit, so that every pair lies across two parts.
        VL_TextCutter cutter;
        for (const wchar_t *unit = row.given; *unit; ++unit)
            cutter.add(unit, 1);
        CHECK_EQ(std::wstring(cutter.lineEnd()), std::wstring(row.lineEnd));
        VirtualTextData data;
        data.insert(0, cutter.take());
        CHECK_EQ(whole(data), std::wstring(row.stored));
    }
    VirtualTextData data;
    data.insert(0, cut(L"ab\ncd\n\ne"));
    CHECK_EQ(data.outerLength(), (size_t)11);
    CHECK_EQ(data.outerOffset(6), (size_t)8);
    for (size_t inner = 0; inner <= data.length(); ++inner)
        CHECK_EQ(data.innerOffset(data.outerOffset(inner)), inner);
    // Between CR and LF is ahead of the line end; beyond the text is its end.
    CHECK_EQ(data.innerOffset(3), (size_t)2);
    CHECK_EQ(data.innerOffset(100), (size_t)8);
    wchar_t room[5] = L"zzzz";
    CHECK_EQ(data.copyOuter(1, 5, L"\r\n", room, 3), (size_t)3);
    CHECK_EQ(std::wstring(room), std::wstring(L"b\r\nz"));
}

void searching()
{
    std::wstring text;
    for (int i = 0; i < 30000; ++i)
        text += L"aab ";
    text += L"Needle\u00C4\u4E2D\nend";
    // Across the border of two pieces, which are 32768 units each.
    text.replace(32766, 5, L"AcRoS");
    VirtualTextData data;
    data.insert(0, cut(text));
    const size_t needle = text.find(L"Needle");
    const struct
    {
        const wchar_t *pattern;
        size_t begin;
        size_t end;
        size_t first;
        size_t last;
    } rows[] = {
        {L"nEEDLE\u00E4", 0, kNone, needle, needle},
        {L"\u4E2D\nE", 0, kNone, needle + 7, needle + 7},
        {L"acros", 0, kNone, 32766, 32766},
        {L"acros", 32767, kNone, kNone, kNone},
        {L"acros", 0, 32770, kNone, kNone},
        {L"aab ", 1, kNone, 4, needle - 4},
        {L"ab aab", 0, 20, 1, 13},
        {L"", 0, kNone, kNone, kNone},
        {L"missing", 0, kNone, kNone, kNone},
    };
    for (const auto &row : rows) {
        CHECK_EQ(data.find(row.pattern, row.begin, row.end), row.first);
        CHECK_EQ(data.findLast(row.pattern, row.begin, row.end), row.last);
    }
    // A pattern that nearly matches everywhere, as long as the text itself.
    VirtualTextData same;
    same.insert(0, cut(std::wstring(400000, L'a')));
    CHECK_EQ(same.find(std::wstring(200000, L'a') + L"b", 0, kNone), kNone);
    CHECK_EQ(same.findLast(std::wstring(399999, L'a'), 0, kNone), (size_t)1);
}

// Types one letter after the other, as keys come.
void type(VL_TextEditing &editing, const wchar_t *text)
{
    for (; *text; ++text)
        editing.insert(std::wstring(1, *text), VL_TextEditing::Kind::Typing);
}

void undoSteps()
{
    VL_TextEditing editing;
    editing.setText(cut(L"one\ntwo"), L"\n");
    editing.moveTo(7, false);
    type(editing, L" and more");
    editing.removeTo(editing.previous(editing.caret()));
    editing.removeTo(editing.previous(editing.caret()));
    editing.newLine();
    editing.select(0, 3);
    type(editing, L"1");
    // What the program appends meanwhile is no step, and stays.
    editing.append(L"\nlog");
    const wchar_t *states[] = {
        L"1\ntwo and mo\n\nlog",   L"one\ntwo and mo\n\nlog", L"one\ntwo and mo\nlog",
        L"one\ntwo and more\nlog", L"one\ntwo and\nlog",      L"one\ntwo\nlog",
    };
    const int last = 5;
    for (int i = 0; i <= last; ++i) {
        CHECK_EQ(whole(editing.data()), std::wstring(states[i]));
        CHECK_EQ(editing.canUndo(), i < last);
        if (i == 1)
            CHECK_EQ(editing.selectionEnd() - editing.selectionBegin(), (size_t)3);
        editing.undo();
    }
    for (int i = last; i >= 0; --i) {
        CHECK_EQ(whole(editing.data()), std::wstring(states[i]));
        editing.redo();
    }
    editing.undo();
    type(editing, L"x");
    CHECK(!editing.canRedo());
}

// Any mixture of edits, undone to the start and redone to the end.
void undoRandomly()
{
    Random random;
    VL_TextEditing editing;
    editing.setText(cut(randomText(random, 100000)), L"\n");
    const std::wstring start = whole(editing.data());
    for (int i = 0; i < 150; ++i) {
        const size_t length = editing.data().length();
        editing.select(random.below(length + 1), random.below(length + 1));
        if (random.below(3))
            editing.moveTo(editing.caret(), false);
        switch (random.below(5)) {
        case 0:
            type(editing, L"q w");
            break;
        case 1:
            editing.removeTo(editing.wordRight(editing.caret()));
            break;
        case 2:
            editing.insert(randomText(random, random.below(60000)));
            break;
        case 3:
            editing.indent(4);
            break;
        default:
            editing.outdent(4);
            break;
        }
    }
    const std::wstring end = whole(editing.data());
    while (editing.canUndo())
        editing.undo();
    CHECK(whole(editing.data()) == start);
    while (editing.canRedo())
        editing.redo();
    CHECK(whole(editing.data()) == end);
}

void movingByWords()
{
    VL_TextEditing editing;
    //                  0123456789    10   11 12  13    14        16
    editing.setText(cut(L"ab_1  +=(x)\n\u4E2D\u6587en \U0001F600!"), nullptr);
    const size_t right[] = {6, 9, 10, 11, 12, 14, 17, 19, 20, 20};
    size_t offset = 0;
    for (const size_t expected : right)
        CHECK_EQ(offset = editing.wordRight(offset), expected);
    const size_t left[] = {19, 17, 14, 12, 11, 10, 9, 6, 0, 0};
    for (const size_t expected : left)
        CHECK_EQ(offset = editing.wordLeft(offset), expected);
    // Never between the halves of a pair.
    CHECK_EQ(editing.next(17), (size_t)19);
    CHECK_EQ(editing.previous(19), (size_t)17);
    editing.select(18, 18);
    CHECK_EQ(editing.caret(), (size_t)17);
    size_t begin = 0;
    size_t end = 0;
    editing.wordAround(13, begin, end);
    CHECK_EQ(begin, (size_t)12);
    CHECK_EQ(end, (size_t)14);
    editing.wordAround(11, begin, end);
    CHECK_EQ(begin, (size_t)10);
}

void indenting()
{
    VL_TextEditing editing;
    editing.setText(cut(L"  a\n\n\tb\nc"), L"\n");
    editing.select(1, 7);
    editing.indent(4);
    CHECK_EQ(whole(editing.data()), std::wstring(L"      a\n\n    \tb\nc"));
    editing.outdent(4);
    editing.outdent(4);
    CHECK_EQ(whole(editing.data()), std::wstring(L"a\n\nb\nc"));
    editing.moveTo(1, false);
    editing.indent(4);
    CHECK_EQ(whole(editing.data()), std::wstring(L"a   \n\nb\nc"));
    editing.setText(cut(L" \tx"), L"\n");
    editing.moveTo(3, false);
    editing.newLine();
    CHECK_EQ(whole(editing.data()), std::wstring(L" \tx\n \t"));
    CHECK_EQ(std::wstring(editing.data().outerLineEnd()), std::wstring(L"\n"));
}

} // namespace

void runTests()
{
    randomEdits();
    lineEnds();
    searching();
    undoSteps();
    undoRandomly();
    movingByWords();
    indenting();
}
