#include "plugins/DirectedGraph/ConditionName.h"

namespace vellum {

std::optional<ConditionName> parseConditionName(std::string_view identifier) {
    if (identifier == "vertices")
        return ConditionName{ConditionNameKind::VertexCount, {}};
    if (identifier == "edges")
        return ConditionName{ConditionNameKind::EdgeCount, {}};
    const std::size_t dot = identifier.find('.');
    if (dot == std::string_view::npos || dot + 1 == identifier.size())
        return std::nullopt;
    const std::string_view head = identifier.substr(0, dot);
    const std::string argument(identifier.substr(dot + 1));
    if (head == "vertices")
        return ConditionName{ConditionNameKind::VertexLabelCount, argument};
    if (head == "edges")
        return ConditionName{ConditionNameKind::EdgeLabelCount, argument};
    if (head == "applicable")
        return ConditionName{ConditionNameKind::Applicable, argument};
    return std::nullopt;
}

}  // namespace vellum
