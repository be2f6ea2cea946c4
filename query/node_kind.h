#pragma once
// One value per node class, dense and in a fixed order, so that the engine
// can dispatch with a switch instead of virtual calls. The kinds are listed
// once, in query/node_kinds.def; everything here is expanded from that list.

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnfold::zmf {

#define ZMF_NODE(Kind, Class, family, state, name) class Class;
#include "query/node_kinds.def"
#undef ZMF_NODE

enum class NodeKind : std::uint32_t {
#define ZMF_NODE(Kind, Class, family, state, name) Kind,
#include "query/node_kinds.def"
#undef ZMF_NODE
};

inline constexpr std::size_t nodeKindCount = 0
#define ZMF_NODE(Kind, Class, family, state, name) +1
#include "query/node_kinds.def"
#undef ZMF_NODE
    ;
static_assert(nodeKindCount == 162, "one kind for each node class");

// How far a kind has come: see the state column of the list.
enum class NodeKindState : std::uint8_t { Evaluated, Pending, Part, Unbuilt };

NodeKindState nodeKindState(NodeKind kind);
// The filter's word for messages; empty where the text at the node's
// location names it better.
std::string_view nodeKindFilterName(NodeKind kind);
// The kind's name as listed ("Abs", "QueryContainer").
std::string_view nodeKindName(NodeKind kind);

}  // namespace tarnfold::zmf
