#include <iostream>

#include "driver/entry.h"

namespace tarnfold::zmf {

bool runQuery(ZMFDriverOptions&) {
    // The query front end and the game loop are not part of this build yet;
    // say so rather than pretend that a query was run.
    std::cout << "zmfi: this build cannot parse or run queries yet\n" << std::flush;
    return false;
}

}  // namespace tarnfold::zmf
