#include "koral/KoralException.h"

#include "base/Console.h"

namespace vellum {

koralInitialConditionViolated::koralInitialConditionViolated(const koralUnit* unit,
                                                             std::string unitName)
    : koralRuntimeException("Initial condition violated!", "koralEvaluate", unit,
                            std::move(unitName)) {}

koralTerminalConditionViolated::koralTerminalConditionViolated(const koralUnit* unit,
                                                               std::string unitName)
    : koralRuntimeException("Terminal condition violated!", "koralEvaluate", unit,
                            std::move(unitName)) {}

void reportCaught(const koralException& exception) {
    console() << "caugh't: " << exception.message() << "\n"
              << "from class: " << exception.className() << "\n";
}

}  // namespace vellum
