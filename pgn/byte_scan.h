#pragma once

// Searches over raw bytes sixteen at a time, for the scans that pass over
// long runs of characters that need no look of their own (comments, tag
// values, move text between its few special characters). Written with the
// compiler's generic vectors, so any target gets them, SIMD where it has it.

#include <cstdint>
#include <cstring>

namespace tarnfold::PGN {

namespace byte_scan {

using Block = unsigned char __attribute__((vector_size(16)));

inline Block load(const char* p) {
    Block block;
    std::memcpy(&block, p, sizeof block);
    return block;
}

// The offset of the first nonzero byte of a block of 0x00/0xff bytes, or 16.
inline int firstHit(Block hits) {
    uint64_t half[2];
    std::memcpy(half, &hits, sizeof half);
    if (half[0] != 0) return __builtin_ctzll(half[0]) / 8;
    if (half[1] != 0) return 8 + __builtin_ctzll(half[1]) / 8;
    return 16;
}

template <char... Stops>
inline bool isStop(char c) {
    return ((c == Stops) || ...);
}

}  // namespace byte_scan

// The first byte of [p, end) that is one of Stops, or end.
template <char... Stops>
inline const char* findFirstOf(const char* p, const char* end) {
    using namespace byte_scan;
    while (end - p >= 16) {
        const Block block = load(p);
        const Block hits = (... | Block(block == static_cast<unsigned char>(Stops)));
        const int at = firstHit(hits);
        if (at < 16) return p + at;
        p += 16;
    }
    while (p < end && !isStop<Stops...>(*p)) ++p;
    return p;
}

// How many bytes of [p, end) are c. Each lane of a block counts its own hits
// (a hit is 0xff, so subtracting it adds one), for at most 255 blocks.
inline uint64_t countByte(const char* p, const char* end, char c) {
    using namespace byte_scan;
    uint64_t count = 0;
    while (end - p >= 16) {
        const long blocks = (end - p) / 16 < 255 ? (end - p) / 16 : 255;
        const char* const stop = p + 16 * blocks;
        Block lanes = {};
        for (; p < stop; p += 16) lanes -= Block(load(p) == static_cast<unsigned char>(c));
        unsigned char bytes[16];
        std::memcpy(bytes, &lanes, sizeof bytes);
        for (unsigned char lane : bytes) count += lane;
    }
    for (; p < end; ++p) count += *p == c;
    return count;
}

}  // namespace tarnfold::PGN
