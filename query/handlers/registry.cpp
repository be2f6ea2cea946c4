#include "query/handlers/registry.h"

namespace tarnfold::zmf {

void registerAllHandlers(Parser& parser) {
    registerLiteralHandlers(parser);
    registerStructureHandlers(parser);
    registerArithmeticHandlers(parser);
    registerComparisonHandlers(parser);
    registerLogicalHandlers(parser);
    registerSetHandlers(parser);
    registerPositionStateHandlers(parser);
    registerPieceDesignatorHandler(parser);
    registerVariableHandlers(parser);
    registerFunctionHandlers(parser);
    registerSliceHandlers(parser);
    registerFenHandler(parser);
    registerStringHandlers(parser);
    registerAttackHandlers(parser);
    registerOperatorHandlers(parser);
    registerDeclarationHandlers(parser);
    registerIterationHandlers(parser);
    registerNavigationHandlers(parser);
    registerControlHandlers(parser);
    registerTextHandlers(parser);
    registerTagHandlers(parser);
    registerIoHandlers(parser);
    registerHHDBHandlers(parser);
    registerHeaderHandlers(parser);
    registerGeometryHandlers(parser);
    registerBoardStateHandlers(parser);
    registerMoveHandlers(parser);
    registerLineHandlers(parser);
    registerImagineHandlers(parser);
    registerTransformHandlers(parser);
}

}  // namespace tarnfold::zmf
