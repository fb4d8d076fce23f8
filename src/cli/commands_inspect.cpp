// vorelc tokens and vorelc tree.
#include "cli/cli_command.h"
#include "cli/json_text.h"
#include "driver/compiler_thread.h"
#include "driver/source_text.h"
#include "frontend/parser.h"

#include <QFile>

#include <cstdio>
#include <vector>

namespace {

SourceText readInput(const QString &path)
{
    if (path != QLatin1String("-"))
        return readSourceFile(path, path);
    const QString name = QStringLiteral("标准输入");
    QFile input;
    SourceText refused;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        refused.error = QStringLiteral("无法读取标准输入");
        return refused;
    }
    const QByteArray bytes = input.read(maxSourceBytes + 1);
    if (bytes.size() > maxSourceBytes) {
        refused.error = QStringLiteral("标准输入过大，上限约 %1 MB").arg(maxSourceBytes / 1048576);
        return refused;
    }
    return decodeSource(bytes, name);
}

// Reads the input and works on its text; the result is printed.
int inspect(const QString &path, QByteArray (*work)(const QString &text))
{
    const SourceText source = readInput(path);
    if (!source.isValid()) {
        BuildDiagnostic problem;
        problem.file = source.line > 0 ? path : QString();
        problem.line = source.line;
        problem.text = source.error;
        Console::tell(Console::formatted(problem));
        return ExitCode::failed;
    }
    QByteArray result;
    runWithDeepStack([&] { result = work(source.text); });
    Console::result(result);
    return ExitCode::done;
}

QByteArray tokensOf(const QString &text)
{
    QByteArray json("[");
    const QList<Lexer::Token> tokens = Lexer(text).tokenize();
    for (const Lexer::Token &token : tokens) {
        json += json.size() > 1 ? ",\n " : "";
        json += "{\"type\":" + QByteArray::number(token.type) +
                ",\"text\":" + JsonText::string(token.text) +
                ",\"line\":" + QByteArray::number(token.line) +
                ",\"column\":" + QByteArray::number(token.column) + '}';
    }
    return json + "]\n";
}

QByteArray nodeHead(const Parser::ASTNode &node)
{
    return "{\"type\":" + QByteArray::number(node.type) +
           ",\"value\":" + JsonText::string(node.value) +
           ",\"line\":" + QByteArray::number(node.line) +
           ",\"column\":" + QByteArray::number(node.column) +
           ",\"metadata\":" + JsonText::object(node.metadata) + ",\"children\":[";
}

// With a stack of its own: trees are as deep as sources nest.
QByteArray treeJson(const Parser::ASTNode &root)
{
    struct Level
    {
        const Parser::ASTNode *node;
        int next;
    };
    QByteArray json = nodeHead(root);
    std::vector<Level> levels{{&root, 0}};
    while (!levels.empty()) {
        Level &level = levels.back();
        if (level.next == level.node->children.size()) {
            json += "]}";
            levels.pop_back();
            continue;
        }
        const Parser::ASTNode *child = level.node->children.at(level.next);
        json += level.next++ > 0 ? "," : "";
        json += nodeHead(*child);
        levels.push_back({child, 0});
    }
    return json;
}

QByteArray membersJson(const QMap<QString, Parser::MemberInfo> &members)
{
    QByteArray json("{");
    for (auto it = members.begin(); it != members.end(); ++it) {
        json += json.size() > 1 ? "," : "";
        json += JsonText::string(it.key()) + ":{\"name\":" + JsonText::string(it->name) +
                ",\"cppName\":" + JsonText::string(it->cppName) +
                ",\"type\":" + JsonText::string(it->type) + '}';
    }
    return json + '}';
}

QByteArray classesJson(const ClassRegistryMap &classes)
{
    QByteArray json("{");
    for (auto it = classes.begin(); it != classes.end(); ++it) {
        json += json.size() > 1 ? "," : "";
        json += JsonText::string(it.key()) + ":{\"name\":" + JsonText::string(it->name) +
                ",\"cppName\":" + JsonText::string(it->cppName) +
                ",\"methods\":" + membersJson(it->methods) +
                ",\"properties\":" + membersJson(it->properties) + '}';
    }
    return json + '}';
}

QByteArray treeOf(const QString &text)
{
    Parser parser;
    const std::unique_ptr<Parser::ASTNode> root(parser.parse(Lexer(text).tokenize()));
    return "{\"tree\":" + treeJson(*root) + ",\"errors\":" + JsonText::strings(parser.errors()) +
           ",\"varTypes\":" + JsonText::object(parser.varTypes()) +
           ",\"classes\":" + classesJson(parser.classRegistry()) + "}\n";
}

} // namespace

int runTokens(const CliOptions &options)
{
    return inspect(options.inputs.first(), tokensOf);
}

int runTree(const CliOptions &options)
{
    return inspect(options.inputs.first(), treeOf);
}
