// Limits of the parser: how deep a source may nest, and how many messages one run keeps.
#pragma once

// They keep the parser within a stack of 8 MiB (with sanitizers) and every recursive reader of the
// tree within 32 MiB.
namespace ParserLimits {

// Expressions inside each other: parentheses, arguments, indices, elements. The outermost one nests
// in nothing and is not counted.
constexpr int nestedExpressions = 512;
// Statements, functions and classes inside each other.
constexpr int nestedStatements = 512;
// Height of one expression's tree: also a long flat chain such as 1+1+1+... is a high tree.
constexpr int expressionHeight = 2500;
// Links of one "否则如果" chain.
constexpr int elseIfChain = 2500;
// Messages of one run; one more says that the rest was left out.
constexpr int messages = 1000;
// Characters of a source text that a message quotes.
constexpr int quotedText = 200;

} // namespace ParserLimits
