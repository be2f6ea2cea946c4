// The transform filter: its copies were made while parsing, so evaluating
// it is an `or` over them, or a count of those that hold.
#include "engine/zmf_engine.h"
#include "query/nodes/transform_nodes.h"

namespace tarnfold::zmf {

Value ZMFEngine::eval(const TransformNode& node) {
    if (!node.counting && !node.range) {
        Value result;
        for (const TransformCopy& copy : node.copies) {
            result = evaluate(*copy.root);
            if (result.isTrue()) return result;
        }
        return result;
    }
    int64_t holding = 0;
    for (const TransformCopy& copy : node.copies)
        if (evaluate(*copy.root).isTrue()) ++holding;
    if (node.counting) return Value::numeric(holding);
    return Value::boolean(rangeHolds(*node.range, holding));
}

}  // namespace tarnfold::zmf
