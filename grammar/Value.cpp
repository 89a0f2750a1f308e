#include "grammar/Value.h"

#include <ostream>

namespace vellum {

const char* valueTypeName(ValueType type) {
    switch (type) {
        case ValueType::Integer:
            return "integer";
        case ValueType::Real:
            return "real";
        case ValueType::Boolean:
            return "boolean";
        case ValueType::String:
            return "string";
    }
    return "unknown";
}

std::ostream& operator<<(std::ostream& out, const Value& value) {
    switch (value.type()) {
        case ValueType::Integer:
            return out << value.asInteger();
        case ValueType::Real:
            return out << value.asReal();
        case ValueType::Boolean:
            return out << (value.asBoolean() ? "true" : "false");
        case ValueType::String:
            return out << value.asString();
    }
    return out;
}

}  // namespace vellum
