#pragma once

// Direct reading of a stream buffer's characters where they lie, a buffered
// run at a time, for the loops that would otherwise take one sbumpc per
// character. The get-area pointers are protected members of std::streambuf;
// pointers to member formed through a derived class reach them on any
// stream buffer.

#include <streambuf>

namespace tarnfold::PGN {

struct GetArea : std::streambuf {
    static char* next(std::streambuf& buffer) { return (buffer.*&GetArea::gptr)(); }
    static char* end(std::streambuf& buffer) { return (buffer.*&GetArea::egptr)(); }
    static void consume(std::streambuf& buffer, int count) { (buffer.*&GetArea::gbump)(count); }
};

}  // namespace tarnfold::PGN
