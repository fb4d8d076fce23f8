// Feeds sources, and sequences of words of the language, to the parser and checks the tree.
#include "frontend/keywords.h"
#include "frontend/parser.h"
#include "frontend/parser_limits.h"
#include "frontend/type_blocks.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace {

void require(bool holds)
{
    if (!holds)
        std::abort();
}

QStringList makeVocabulary()
{
    QStringList words;
    for (const Keyword &keyword : keywords())
        words.append(keyword.word);
    const QString others = QStringLiteral("( ) { } [ ] , : ; . ? = == != < > <= >= + - * / % ++ -- "
                                          "+= ! & && || 甲 乙 丙 学生类 HTTP类 "
                                          "全局 任意 1 2.5 \"文\" \"#\" \"?\" 主函数 ...");
    return words + others.split(QLatin1Char(' '));
}

// Each byte is a word; one above the vocabulary repeats the word before it some hundred times.
QString sourceOfWords(const uint8_t *data, size_t size)
{
    static const QStringList vocabulary = makeVocabulary();
    QString source;
    QString last;
    for (size_t i = 0; i < size && source.size() < 60000; ++i) {
        if (int(data[i]) < vocabulary.size()) {
            last = vocabulary.at(data[i]) + QLatin1Char(' ');
            source += last;
        } else {
            source += last.repeated((data[i] - vocabulary.size()) * 8);
        }
    }
    return source;
}

// Readers of the tree may recurse: it must not be higher than the limits promise.
void checkHeight(const Parser::ASTNode &root)
{
    const int most = ParserLimits::expressionHeight + 8 * ParserLimits::nestedStatements;
    std::vector<std::pair<const Parser::ASTNode *, int>> pending{{&root, 1}};
    while (!pending.empty()) {
        const auto [node, height] = pending.back();
        pending.pop_back();
        require(height <= most);
        for (const Parser::ASTNode *child : node->children) {
            require(child != nullptr);
            pending.push_back({child, height + 1});
        }
    }
}

void parse(Parser *parser, const QString &source)
{
    const std::unique_ptr<Parser::ASTNode> tree(parser->parse(Lexer(source).tokenize()));
    checkHeight(*tree);
    require(parser->errors().size() <= ParserLimits::messages + 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    Parser parser;
    if (size > 0 && data[0] % 2 == 1) {
        parse(&parser, sourceOfWords(data + 1, size - 1));
        return 0;
    }
    const QString text = QString::fromUtf8(reinterpret_cast<const char *>(data), int(size));
    parse(&parser, text);
    parse(&parser, convertTypeBlocks(text, nullptr));
    return 0;
}
