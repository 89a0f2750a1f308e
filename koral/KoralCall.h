// The statement `call LIB.METHOD`: runs a method of a method library on the graph. The library
// is bound when the module is compiled; a method that reports failure ends the run with the
// library's own message.
#pragma once

#include <string>

#include "koral/KoralMethodBinding.h"
#include "koral/KoralStatement.h"

namespace vellum {

class koralCall : public koralStatement {
  public:
    // Binds "LIB.METHOD" (see KoralMethodBinding); throws its koralException when it cannot.
    koralCall(const std::string& identifier, koralSourcePosition position);

    const std::string& libraryName() const { return binding_.libraryName(); }
    const std::string& methodName() const { return binding_.methodName(); }

    // A method result of 0 throws koralRuntimeException with the text of the library's Error
    // (class "koralEvalCall").
    void evaluate(DirectedGraph& graph, const koralUnit& unit, KoralFrame* frame,
                  KoralRun& run) const override;

  private:
    KoralMethodBinding binding_;
};

}  // namespace vellum
