// The table behind keywords.h and its hash.
#include "frontend/keywords.h"

#include "frontend/lexer.h"

#include <array>

const std::vector<Keyword> &keywords()
{
    static const std::vector<Keyword> table = {
        {QStringLiteral("变量"), Lexer::Var},
        {QStringLiteral("整数"), Lexer::Int},
        {QStringLiteral("长整数"), Lexer::Int},
        {QStringLiteral("小数"), Lexer::Double},
        {QStringLiteral("双浮点"), Lexer::Double},
        {QStringLiteral("单浮点"), Lexer::Float},
        {QStringLiteral("文本"), Lexer::Text},
        {QStringLiteral("逻辑"), Lexer::Bool},
        {QStringLiteral("数组"), Lexer::Array},
        {QStringLiteral("二维数组"), Lexer::Array2D},
        {QStringLiteral("三维数组"), Lexer::Array3D},
        {QStringLiteral("字节集"), Lexer::ByteArray},
        {QStringLiteral("通用"), Lexer::Any},
        {QStringLiteral("空"), Lexer::Void},
        {QStringLiteral("如果"), Lexer::If},
        {QStringLiteral("否则"), Lexer::Else},
        {QStringLiteral("否则如果"), Lexer::ElseIf},
        {QStringLiteral("选择"), Lexer::Switch},
        {QStringLiteral("分支"), Lexer::CaseWord},
        {QStringLiteral("默认"), Lexer::Default},
        {QStringLiteral("当"), Lexer::While},
        {QStringLiteral("循环"), Lexer::Loop},
        {QStringLiteral("计次循环"), Lexer::Loop},
        {QStringLiteral("遍历"), Lexer::ForEach},
        {QStringLiteral("跳出"), Lexer::Break},
        {QStringLiteral("继续"), Lexer::Continue},
        {QStringLiteral("函数"), Lexer::Function},
        {QStringLiteral("返回"), Lexer::Return},
        {QStringLiteral("类"), Lexer::Class},
        {QStringLiteral("属性"), Lexer::Property},
        {QStringLiteral("方法"), Lexer::Method},
        {QStringLiteral("公开"), Lexer::Public},
        {QStringLiteral("私有"), Lexer::Private},
        {QStringLiteral("真"), Lexer::True},
        {QStringLiteral("假"), Lexer::False},
        {QStringLiteral("并且"), Lexer::And},
        {QStringLiteral("且"), Lexer::And},
        {QStringLiteral("或者"), Lexer::Or},
        {QStringLiteral("或"), Lexer::Or},
        {QStringLiteral("非"), Lexer::Not},
        // A class name, protected so that it is never split at "类".
        {QStringLiteral("拖放类"), Lexer::Identifier},
    };
    return table;
}

namespace {

constexpr int slotBits = 8;
constexpr int slotCount = 1 << slotBits;

// At most four UTF-16 units: a word is one 64-bit number, and no two words share one.
quint64 packed(const QChar *text, int length)
{
    quint64 key = 0;
    for (int i = 0; i < length; ++i)
        key = (key << 16) | text[i].unicode();
    return key;
}

int firstSlot(quint64 key)
{
    return int((key * Q_UINT64_C(0x9E3779B97F4A7C15)) >> (64 - slotBits));
}

// Open addressing with steps of one; three quarters and more of the slots stay empty.
class KeywordHash
{
public:
    KeywordHash()
    {
        for (const Keyword &keyword : keywords()) {
            Q_ASSERT(keyword.word.size() <= maxKeywordLength);
            const quint64 key = packed(keyword.word.constData(), keyword.word.size());
            int slot = firstSlot(key);
            while (m_slots[slot].keyword)
                slot = (slot + 1) % slotCount;
            m_slots[slot] = {key, &keyword};
        }
    }

    const Keyword *find(quint64 key) const
    {
        int slot = firstSlot(key);
        while (m_slots[slot].keyword && m_slots[slot].key != key)
            slot = (slot + 1) % slotCount;
        return m_slots[slot].keyword;
    }

private:
    struct Slot
    {
        quint64 key = 0;
        const Keyword *keyword = nullptr;
    };
    std::array<Slot, slotCount> m_slots;
};

} // namespace

const Keyword *findKeyword(const QChar *text, int length)
{
    static const KeywordHash hash;
    return length > 0 && length <= maxKeywordLength ? hash.find(packed(text, length)) : nullptr;
}
