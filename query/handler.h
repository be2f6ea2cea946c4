#pragma once
// Parse rules. A prefix handler says how an expression can start with a
// token kind, an infix handler how an expression can go on; each filter of
// the language is one handler class with one `parse`.

#include <cstdint>

#include "query/binding_power.h"
#include "query/node.h"
#include "query/token.h"

namespace tarnfold::zmf {

class Parser;

class Handler {
public:
    Handler(Parser& parser, TokenKind kind) : parser(parser), kind_(kind) {}
    virtual ~Handler() = default;
    Handler(const Handler&) = delete;
    Handler& operator=(const Handler&) = delete;

    virtual TokenKind tokenKind() const { return kind_; }

protected:
    Parser& parser;

private:
    TokenKind kind_;
};

class PrefixHandler : public Handler {
public:
    using Handler::Handler;
    // Null on failure, after the handler has reported why.
    virtual NodePtr parse(const Token& token) = 0;
};

class InfixHandler : public Handler {
public:
    // Precedence and associativity are those of the kind's row in the infix
    // table, which the printers read too.
    InfixHandler(Parser& parser, TokenKind kind)
        : Handler(parser, kind),
          rightAssociative(infixOperator(kind).rightAssociative),
          precedence(infixOperator(kind).precedence) {}

    // Either moves `left` into the new node, or leaves it and returns it as
    // its own result (declining), or returns null.
    virtual NodePtr parse(NodePtr& left, const Token& token) = 0;

    // The right operand is always read with `precedence` as its minimum, so
    // the extra 1 lets a right-associative operator take its own level.
    virtual BindingPower bindingPower() const { return precedence + rightAssociative; }

    std::uint8_t rightAssociative;
    BindingPower precedence;
};

}  // namespace tarnfold::zmf
