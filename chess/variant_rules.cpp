#include "chess/board.h"

namespace tarnfold {

VariantRules variantRulesFor(Variant variant) {
    VariantRules rules;
    switch (variant) {
        case Crazyhouse: rules.hasPockets = true; break;
        case ThreeCheck: rules.countsChecks = true; break;
        case Suicide:
            rules.mandatoryCapture = rules.kingsNotRoyal = rules.kingPromotion = rules.noCastling = true;
            rules.stalemateByCount = rules.bareWins = true;
            break;
        case Giveaway:
            rules.mandatoryCapture = rules.kingsNotRoyal = rules.kingPromotion = rules.noCastling = true;
            rules.stalemateWins = rules.bareWins = true;
            break;
        case Losers:
            rules.mandatoryCapture = rules.stalemateWins = rules.checkmateWins = rules.bareWins = true;
            break;
        case Atomic: rules.kingsAdjacentSafe = rules.explosions = true; break;
        case RacingKings: rules.noCheckGiving = rules.blackMayEqual = true; break;
        // Chess960 lives in the castling homes, Horde in general rules that
        // need no switch; standard and unknown play by the ordinary rules.
        default: break;
    }
    return rules;
}

Bitboard variantGoalSquares(Variant variant) {
    switch (variant) {
        case KingOfTheHill: return 0x1818000000ULL;
        case RacingKings: return 0xFF00000000000000ULL;
        default: return 0;
    }
}

void Board::setVariant(Variant newVariant) {
    variant = newVariant;
    variantRules = variantRulesFor(newVariant);
    goalSquares = variantGoalSquares(newVariant);
    if (variantRules.countsChecks) checksRemaining = {3, 3};
    // Whether the pockets count towards the key depends on the variant.
    key = fullKey();
}

}  // namespace tarnfold
