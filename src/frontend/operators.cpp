// The tables behind operators.h.
#include "frontend/operators.h"

#include "frontend/lexer.h"

#include <array>

namespace {

struct Sign
{
    char16_t sign;
    int kind;
};

// What one character means, whatever follows it.
constexpr Sign signs[] = {
    {u'+', Lexer::Plus},          {u'-', Lexer::Minus},         {u'*', Lexer::Star},
    {u'×', Lexer::Star},          {u'/', Lexer::Slash},         {u'÷', Lexer::Slash},
    {u'%', Lexer::Percent},       {u'=', Lexer::Assign},        {u'＝', Lexer::Assign},
    {u'≈', Lexer::Equal},         {u'!', Lexer::Not},           {u'！', Lexer::Not},
    {u'≠', Lexer::NotEqual},      {u'<', Lexer::Less},          {u'≤', Lexer::LessEqual},
    {u'>', Lexer::Greater},       {u'≥', Lexer::GreaterEqual},  {u'&', Lexer::Ampersand},
    {u'(', Lexer::LeftParen},     {u'（', Lexer::LeftParen},    {u')', Lexer::RightParen},
    {u'）', Lexer::RightParen},   {u'{', Lexer::LeftBrace},     {u'｛', Lexer::LeftBrace},
    {u'}', Lexer::RightBrace},    {u'｝', Lexer::RightBrace},   {u'[', Lexer::LeftBracket},
    {u'［', Lexer::LeftBracket},  {u'【', Lexer::LeftBracket},  {u']', Lexer::RightBracket},
    {u'］', Lexer::RightBracket}, {u'】', Lexer::RightBracket}, {u',', Lexer::Comma},
    {u'，', Lexer::Comma},        {u';', Lexer::Semicolon},     {u'；', Lexer::Semicolon},
    {u':', Lexer::Colon},         {u'：', Lexer::Colon},        {u'.', Lexer::Dot},
    {u'?', Lexer::Question},
};

struct Pair
{
    char16_t first;
    char16_t second;
    int kind;
};

// The second character is always ASCII: "＝=" is one operator, "＝＝" is two.
constexpr Pair pairs[] = {
    {u'+', u'+', Lexer::PlusPlus},   {u'+', u'=', Lexer::PlusAssign},
    {u'-', u'-', Lexer::MinusMinus}, {u'-', u'=', Lexer::MinusAssign},
    {u'*', u'=', Lexer::StarAssign}, {u'/', u'=', Lexer::SlashAssign},
    {u'=', u'=', Lexer::Equal},      {u'＝', u'=', Lexer::Equal},
    {u'!', u'=', Lexer::NotEqual},   {u'！', u'=', Lexer::NotEqual},
    {u'<', u'=', Lexer::LessEqual},  {u'>', u'=', Lexer::GreaterEqual},
    {u'&', u'&', Lexer::And},        {u'|', u'|', Lexer::Or},
};

int singleKind(ushort code)
{
    static const auto asciiKinds = [] {
        std::array<int, 128> kinds;
        kinds.fill(Lexer::Error);
        for (const Sign &entry : signs) {
            if (entry.sign < kinds.size())
                kinds[entry.sign] = entry.kind;
        }
        return kinds;
    }();
    if (code < asciiKinds.size())
        return asciiKinds[code];
    for (const Sign &entry : signs) {
        if (entry.sign == code)
            return entry.kind;
    }
    return Lexer::Error;
}

bool mayEndPair(ushort second)
{
    return second == '=' || second == '+' || second == '-' || second == '&' || second == '|';
}

} // namespace

Operator findOperator(QChar current, QChar next)
{
    if (mayEndPair(next.unicode())) {
        for (const Pair &pair : pairs) {
            if (pair.first == current.unicode() && pair.second == next.unicode())
                return {pair.kind, 2};
        }
    }
    return {singleKind(current.unicode()), 1};
}

const QString &operatorText(int kind)
{
    static const auto texts = [] {
        std::array<QString, Lexer::Error + 1> table;
        for (const Sign &entry : signs) {
            if (entry.sign < 128)
                table[size_t(entry.kind)] = QChar(entry.sign);
        }
        for (const Pair &pair : pairs) {
            if (pair.first < 128)
                table[size_t(pair.kind)] = QString(QChar(pair.first)) + QChar(pair.second);
        }
        return table;
    }();
    return texts[size_t(kind)];
}
