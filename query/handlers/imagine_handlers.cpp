// imagine: a filter evaluated on a board with pieces added, squares swapped
// or the other side to move, each change given by a specifier.
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "query/convert.h"
#include "query/handlers/handler_support.h"
#include "query/handlers/registry.h"
#include "query/nodes/imagine_nodes.h"
#include "query/nodes/piece_designator_node.h"

namespace tarnfold::zmf {

namespace {

// Reads a token that must come next, with the frame's message otherwise.
bool expect(Parser& parser, TokenKind kind) {
    Token next = parser.peekToken();
    if (next.kind == kind) {
        parser.nextToken();
        return true;
    }
    if (next.kind == TokenKind::EndOfFile) {
        parser.report(next.begin, MessageLevel::Error, "Unexpected end of file");
        return false;
    }
    parser.report(next.begin, MessageLevel::Error, joinPieces({"Unexpected token: '", next.text, "'"}));
    return false;
}

// imagine piece designator --> S | swap S S | sidetomove (white | black | reverse) ... : F
class ImagineHandler : public PrefixHandler {
public:
    ImagineHandler(Parser& parser) : PrefixHandler(parser, TokenKind::KwImagine) {}

    NodePtr parse(const Token& token) override {
        reportExtension(parser, token, "imagine");
        std::vector<NodePtr> specifiers;
        for (;;) {
            Token next = parser.peekToken();
            NodePtr specifier;
            if (next.kind == TokenKind::KwPiece)
                specifier = piece(token);
            else if (next.kind == TokenKind::KwSwap)
                specifier = swap(token);
            else if (next.kind == TokenKind::KwSidetomove)
                specifier = sideToMove();
            else
                break;
            if (!specifier) return nullptr;
            specifiers.push_back(std::move(specifier));
        }
        if (!expect(parser, TokenKind::Colon)) return nullptr;
        // The set before the colon may have declined it as an operator.
        parser.clearPending();
        NodePtr body = parser.parseExpression(0);
        if (!body) return nullptr;
        return makeNode<ImagineNode>(parser, token, std::move(specifiers), std::move(body));
    }

private:
    NodePtr set(const Token& keyword) {
        NodePtr operand = parser.parseExpression(0);
        if (!operand) return nullptr;
        convertPieceToSet(operand);
        if (operand->valueType != ValueType::Set) {
            parser.reportOperand(keyword, *operand,
                                 "The operand to the 'imagine' filter must be a set filter");
            return nullptr;
        }
        return operand;
    }

    // piece designator --> S, the designator naming one piece of one colour.
    NodePtr piece(const Token& keyword) {
        Token start = parser.nextToken();
        if (!expectDesignator()) return nullptr;
        NodePtr operand = parser.parseExpression(pieceParameter);
        if (!operand) return nullptr;
        std::optional<Piece> code = onePiece(*operand);
        if (!code) {
            parser.reportOperand(keyword, *operand,
                                 "The piece designator after 'imagine piece' must name exactly one piece and "
                                 "no squares");
            return nullptr;
        }
        std::string text = static_cast<const PieceDesignatorNode&>(*operand).text;
        if (!expect(parser, TokenKind::ForwardArrow)) return nullptr;
        NodePtr squares = set(keyword);
        if (!squares) return nullptr;
        return makeNode<ImaginePieceNode>(parser, start, *code, std::move(text), std::move(squares));
    }

    bool expectDesignator() {
        Token next = parser.peekToken();
        if (next.kind == TokenKind::PieceDesignator) return true;
        return expect(parser, TokenKind::PieceDesignator);
    }

    // The piece of a designator with exactly one piece letter of a colour
    // and no square part.
    static std::optional<Piece> onePiece(const ZMFNode& operand) {
        if (operand.kind != NodeKind::PieceDesignator) return std::nullopt;
        const auto& designator = static_cast<const PieceDesignatorNode&>(operand);
        if (designator.squares || !designator.pieceMask) return std::nullopt;
        unsigned mask = *designator.pieceMask;
        if (std::popcount(mask) != 1 || mask >= (1u << 12)) return std::nullopt;
        int bit = std::countr_zero(mask);
        return makePiece(PieceType(bit % 6), bit < 6 ? White : Black);
    }

    // swap S S
    NodePtr swap(const Token& keyword) {
        Token start = parser.nextToken();
        NodePtr left = set(keyword);
        if (!left) return nullptr;
        NodePtr right = set(keyword);
        if (!right) return nullptr;
        return makeNode<ImagineSwapNode>(parser, start, std::move(left), std::move(right));
    }

    // sidetomove white | black | reverse
    NodePtr sideToMove() {
        Token start = parser.nextToken();
        Token side = parser.peekToken();
        ImaginedSide which;
        if (side.kind == TokenKind::KwWhite)
            which = ImaginedSide::White;
        else if (side.kind == TokenKind::KwBlack)
            which = ImaginedSide::Black;
        else if (side.kind == TokenKind::KwReverse)
            which = ImaginedSide::Reverse;
        else {
            expect(parser, TokenKind::KwWhite);
            return nullptr;
        }
        parser.nextToken();
        return makeNode<ImagineSidetomoveNode>(parser, start, which);
    }
};

}  // namespace

void registerImagineHandlers(Parser& parser) {
    parser.registerPrefix(std::make_unique<ImagineHandler>(parser));
}

}  // namespace tarnfold::zmf
