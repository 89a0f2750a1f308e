// What the caller of an evaluation lends the library functions besides the variables: an object
// of the caller's own layer (rule application lends the host graph and the objects the rule's
// variables are bound to), which the expression language passes on without knowing its kind. A
// function finds the kind it can use with dynamic_cast and treats any other as none.
#pragma once

namespace vellum {

class EvaluationContext {
  public:
    virtual ~EvaluationContext();
};

}  // namespace vellum
