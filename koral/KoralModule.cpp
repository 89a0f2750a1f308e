#include "koral/KoralModule.h"

namespace vellum {

const koralUnit* koralModule::findUnit(std::string_view name) const {
    for (const auto& unit : units_) {
        if (unit->name() == name)
            return unit.get();
    }
    return nullptr;
}

koralUnit& koralModule::addUnit(std::unique_ptr<koralUnit> unit) {
    units_.push_back(std::move(unit));
    return *units_.back();
}

}  // namespace vellum
