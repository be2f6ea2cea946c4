#pragma once
// Each family of filters registers its handlers with the parser; the parser
// constructor calls them all, so a handler is chosen by token kind alone.

namespace tarnfold::zmf {

class Parser;

void registerAllHandlers(Parser& parser);

void registerLiteralHandlers(Parser& parser);
void registerStructureHandlers(Parser& parser);
void registerArithmeticHandlers(Parser& parser);
void registerComparisonHandlers(Parser& parser);
void registerLogicalHandlers(Parser& parser);
void registerSetHandlers(Parser& parser);
void registerPositionStateHandlers(Parser& parser);
void registerPieceDesignatorHandler(Parser& parser);
void registerVariableHandlers(Parser& parser);
void registerFunctionHandlers(Parser& parser);
void registerSliceHandlers(Parser& parser);
void registerFenHandler(Parser& parser);
void registerStringHandlers(Parser& parser);
void registerAttackHandlers(Parser& parser);
void registerOperatorHandlers(Parser& parser);
void registerDeclarationHandlers(Parser& parser);
void registerIterationHandlers(Parser& parser);
void registerNavigationHandlers(Parser& parser);
void registerControlHandlers(Parser& parser);
void registerTextHandlers(Parser& parser);
void registerTagHandlers(Parser& parser);
void registerIoHandlers(Parser& parser);
void registerHHDBHandlers(Parser& parser);
void registerHeaderHandlers(Parser& parser);
void registerGeometryHandlers(Parser& parser);
void registerBoardStateHandlers(Parser& parser);
void registerMoveHandlers(Parser& parser);
void registerLineHandlers(Parser& parser);
void registerImagineHandlers(Parser& parser);
void registerTransformHandlers(Parser& parser);

}  // namespace tarnfold::zmf
