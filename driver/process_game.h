#pragma once

// The steps every game goes through once it has been read, the same in the
// single-threaded loop and in each worker.

#include <cstdint>
#include <vector>

#include "driver/options.h"
#include "driver/run_totals.h"
#include "engine/zmf_engine.h"
#include "pgn/pgn_position.h"
#include "pgn/pgn_writer.h"

namespace tarnfold::zmf {

using RunGame = PGN::Game<PGN::AnnotatedGameTreeNode>;

// The engine's behaviour flags, given once before the first game.
void setUpEngine(ZMFEngine& engine, const ZMFDriverOptions& options);
PGN::PGNWriteOptions writeOptionsFrom(const ZMFDriverOptions& options);

// "There were errors while parsing game #N:" and one line per error.
void listErrors(const std::vector<PGN::PGNError>& errors, uint32_t number);
// "[N]" every lineIncrement games, a dot every tenth of that.
void showProgress(uint32_t number, const ZMFDriverOptions& options);

// Evaluates the query over the game, and when it matches decorates the game,
// puts its text for the output in `output` (whose room is kept from game to
// game) and sets `written`. False when reading should stop.
bool processGame(const ZMFDriverOptions& options, ParsedQuery& query, ZMFEngine& engine, RunGame& game,
                 uint32_t number, bool pool, GameCounts& counts, OutputGame& output, bool& written);

// The persistent variables of an engine's query by name: copied after the
// single loop, folded by their merge strategies as each worker ends. A quiet
// variable keeps its value to itself.
void foldPersistentVariables(const ParsedQuery& query, const ZMFEngine& engine,
                             std::map<std::string, Value>& variables);
void collectPersistentVariables(const ParsedQuery& query, const ZMFEngine& engine,
                                std::map<std::string, Value>& variables);

}  // namespace tarnfold::zmf
