// Room for data that a client attaches to the vertices, edges and attributes of its own graphs
// (the rule model: variable names, references, expression texts). Host graph elements carry
// none and pay nothing for the possibility (see LabelSlot).
#pragma once

#include <memory>

namespace vellum {

class ObjectExtension {
  public:
    virtual ~ObjectExtension() = default;
    // A copy for the copy of the object that carries it.
    virtual std::unique_ptr<ObjectExtension> clone() const = 0;
};

}  // namespace vellum
