// CompletionItem: one thing that completion offers.
#pragma once

#include <QString>

#include <cstddef>

enum class CompletionKind
{
    Function,
    UserFunction,
    Property,
    Method,
    Event,
    Keyword,
    Type,
    Variable,
    Component,
    Snippet,
    Constant,
    Count,
};

struct CompletionKindRow
{
    CompletionKind kind;
    const char16_t *word;   // how the user calls the kind
    const char16_t *prefix; // stands before the name in the list
};

inline constexpr CompletionKindRow completionKinds[] = {
    {CompletionKind::Function, u"函数", u"◆ "},  {CompletionKind::UserFunction, u"用户函数", u"◆ "},
    {CompletionKind::Property, u"属性", u"● "},  {CompletionKind::Method, u"方法", u"▸ "},
    {CompletionKind::Event, u"事件", u"⚡ "},     {CompletionKind::Keyword, u"关键字", u"▶ "},
    {CompletionKind::Type, u"类型", u"■ "},      {CompletionKind::Variable, u"变量", u"○ "},
    {CompletionKind::Component, u"组件", u"□ "}, {CompletionKind::Snippet, u"代码片段", u"✦ "},
    {CompletionKind::Constant, u"常量", u"# "},
};

constexpr bool completionKindsStandInOrder()
{
    std::size_t index = 0;
    for (const CompletionKindRow &row : completionKinds) {
        if (row.kind != CompletionKind(index++))
            return false;
    }
    return index == std::size_t(CompletionKind::Count);
}
static_assert(completionKindsStandInOrder());

// The mark of a function or user function without parameters.
inline constexpr char16_t plainFunctionPrefix[] = u"◇ ";

struct CompletionItem
{
    QString text;    // what is inserted
    QString display; // what the list shows
    CompletionKind kind = CompletionKind::Function;
    QString detail; // the call form or the type
    int score = 0;
    bool takesParameters = true; // functions, user functions and methods
    QString record = {}; // the name in the command catalogue of what explains it; may be empty

    QString kindWord() const { return QString::fromUtf16(row().word); }
    QString prefix() const
    {
        const bool isFunction =
            kind == CompletionKind::Function || kind == CompletionKind::UserFunction;
        return QString::fromUtf16(isFunction && !takesParameters ? plainFunctionPrefix
                                                                 : row().prefix);
    }
    // By what the item is found: a snippet by its name, all others by what they insert.
    const QString &soughtName() const { return kind == CompletionKind::Snippet ? display : text; }

private:
    const CompletionKindRow &row() const { return completionKinds[std::size_t(kind)]; }
};
