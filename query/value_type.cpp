#include "query/value_type.h"

namespace tarnfold::zmf {

std::string_view printableType(ValueType type) {
    switch (type) {
        case ValueType::Empty: return "Empty";
        case ValueType::Boolean: return "Boolean";
        case ValueType::Numeric: return "Numeric";
        case ValueType::Set: return "Set";
        case ValueType::Position: return "Position";
        case ValueType::Piece: return "Piece";
        case ValueType::String: return "String";
        case ValueType::Dictionary: return "Dictionary";
    }
    return "???";
}

}  // namespace tarnfold::zmf
