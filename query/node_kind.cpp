#include "query/node_kind.h"

#include <array>

#include "query/nodes/all_nodes.h"

namespace tarnfold::zmf {

namespace {

struct KindRow {
    NodeKindState state;
    std::string_view filterName;
    std::string_view kindName;
};

constexpr std::array<KindRow, nodeKindCount> kindRows{{
#define ZMF_STATE_evaluated NodeKindState::Evaluated
#define ZMF_STATE_pending NodeKindState::Pending
#define ZMF_STATE_part NodeKindState::Part
#define ZMF_STATE_unbuilt NodeKindState::Unbuilt
#define ZMF_NODE(Kind, Class, family, state, name) {ZMF_STATE_##state, name, #Kind},
#include "query/node_kinds.def"
#undef ZMF_NODE
}};

// Each class built so far declares the kind the list gives it.
#define ZMF_CHECK_evaluated(Kind, Class) static_assert(Class::kind == NodeKind::Kind, #Class);
#define ZMF_CHECK_pending(Kind, Class) ZMF_CHECK_evaluated(Kind, Class)
#define ZMF_CHECK_part(Kind, Class) ZMF_CHECK_evaluated(Kind, Class)
#define ZMF_CHECK_unbuilt(Kind, Class)
#define ZMF_NODE(Kind, Class, family, state, name) ZMF_CHECK_##state(Kind, Class)
#include "query/node_kinds.def"
#undef ZMF_NODE

}  // namespace

NodeKindState nodeKindState(NodeKind kind) { return kindRows[std::size_t(kind)].state; }

std::string_view nodeKindFilterName(NodeKind kind) { return kindRows[std::size_t(kind)].filterName; }

std::string_view nodeKindName(NodeKind kind) { return kindRows[std::size_t(kind)].kindName; }

}  // namespace tarnfold::zmf
