// libFuzzer target: any text given to setFen ends in a board or in errors,
// and a board that was set up writes a FEN that reads back to the same key.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "chess/board.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tarnfold;
    std::string_view text(reinterpret_cast<const char*>(data), size);
    for (Variant variant : {Variant::Standard, Variant::Crazyhouse, Variant::ThreeCheck, Variant::Chess960}) {
        Board board(variant);
        std::vector<FenError> errors;
        bool ok = board.setFen(text, &errors);
        if (ok != errors.empty()) std::abort();
        if (!ok) continue;
        if (board.key != board.fullKey()) std::abort();
        Board again(variant);
        if (!again.setFen(board.toFen()) || again.key != board.key) std::abort();
    }
    return 0;
}
