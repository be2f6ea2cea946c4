#include "query/nodes/hhdb_nodes.h"

#include <string>
#include <string_view>

#include "query/nodes/node_support.h"

namespace tarnfold::zmf {

HHDBNode::HHDBNode(OptionalOffset location, std::uint32_t code, ValueType resultKind, std::string command)
    : ZMFNode(kind, resultKind, location),
      code(code),
      resultKind(resultKind),
      command(std::move(command)) {}

void HHDBNode::print(PrintTarget& target) const {
    target << "hhdb " << command;
    target.ends = PrintedEnds{};
}

void HHDBNode::dump(DumpTarget& target, bool isLast) const {
    std::string name("HHDB (");
    name.append(command);
    name.append(", code ");
    name.append(std::to_string(code));
    if (code == hhdbAwardCode) {
        static constexpr std::string_view kinds[] = {"any", "prize", "hm", "commendation"};
        name.append(", ");
        name.append(kinds[static_cast<std::uint32_t>(awardKind)]);
        if (special) name.append(", special");
        if (nonspecial) name.append(", nonspecial");
        if (max) name.append(", max");
        if (sortable) name.append(", sortable");
    }
    name.push_back(')');
    dumpNode(*this, target, isLast, name);
}

}  // namespace tarnfold::zmf
