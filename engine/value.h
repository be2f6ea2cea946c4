#pragma once

// What evaluating any node gives: a type and a payload. The first six types
// live in a small union and never allocate; strings and dictionaries share
// their payload by reference count.

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "chess/types.h"
#include "pgn/game_tree.h"
#include "query/value_type.h"
#include "query/zmf_string.h"

namespace tarnfold::zmf {

// One row of the position table, as a value.
struct PositionRef {
    PGN::AnnotatedGameTreeNode* node = nullptr;
    uint32_t id = 0;
    uint16_t depth = 0;
    bool virtualMainline = false;

    bool operator==(const PositionRef&) const = default;
};

// Keys in order; both sides UTF-8.
using ZmfDictionary = std::map<std::string, std::string>;
using DictionaryPtr = std::shared_ptr<const ZmfDictionary>;

class Value {
public:
    Value() = default;

    static Value boolean(bool value) {
        Value result(ValueType::Boolean);
        result.payload_.boolean = value;
        return result;
    }
    static Value numeric(int64_t value) {
        Value result(ValueType::Numeric);
        result.payload_.number = value;
        return result;
    }
    static Value set(Bitboard value) {
        Value result(ValueType::Set);
        result.payload_.squares = value;
        return result;
    }
    static Value position(const PositionRef& value) {
        Value result(ValueType::Position);
        result.payload_.position = value;
        return result;
    }
    static Value pieceId(uint16_t value) {
        Value result(ValueType::Piece);
        result.payload_.pieceId = value;
        return result;
    }
    static Value string(ZmfString value) {
        Value result(ValueType::String);
        result.string_ = std::move(value);
        return result;
    }
    static Value dictionary(DictionaryPtr value) {
        Value result(ValueType::Dictionary);
        result.dictionary_ = std::move(value);
        return result;
    }

    ValueType type() const { return type_; }
    bool isNone() const { return type_ == ValueType::Empty; }
    bool is(ValueType type) const { return type_ == type; }

    // Reading a payload under the wrong type is an internal fault.
    bool asBoolean() const { return expect(ValueType::Boolean).payload_.boolean; }
    int64_t asNumeric() const { return expect(ValueType::Numeric).payload_.number; }
    Bitboard asSet() const { return expect(ValueType::Set).payload_.squares; }
    const PositionRef& asPosition() const { return expect(ValueType::Position).payload_.position; }
    uint16_t asPieceId() const { return expect(ValueType::Piece).payload_.pieceId; }
    const ZmfString& asString() const { return expect(ValueType::String).string_; }
    const DictionaryPtr& asDictionary() const { return expect(ValueType::Dictionary).dictionary_; }

    // The one truth test of the language: None, false, the empty set and
    // piece id 0 are false; every number, position, string and dictionary
    // is true.
    bool isTrue() const {
        switch (type_) {
            case ValueType::Empty: return false;
            case ValueType::Boolean: return payload_.boolean;
            case ValueType::Numeric: return true;
            case ValueType::Set: return payload_.squares != 0;
            case ValueType::Position: return true;
            case ValueType::Piece: return payload_.pieceId != 0;
            case ValueType::String: return true;
            case ValueType::Dictionary: return true;
        }
        return false;
    }

private:
    explicit Value(ValueType type) : type_(type) {}

    const Value& expect(ValueType type) const {
        if (type_ != type) std::abort();
        return *this;
    }

    ValueType type_ = ValueType::Empty;
    union Payload {
        bool boolean;
        int64_t number;
        Bitboard squares;
        PositionRef position;
        uint16_t pieceId;
    } payload_{.number = 0};
    ZmfString string_;
    DictionaryPtr dictionary_;
};

}  // namespace tarnfold::zmf
