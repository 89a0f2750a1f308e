// A compiled Koral module: its name, graph class, the modules it uses, the names it exports and
// its transformation units in text order. Built by the module compiler and then kept, unchanged,
// by the module cache; the units and their statements belong to it.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "koral/KoralUnit.h"

namespace vellum {

class koralModule {
  public:
    explicit koralModule(std::string file) : file_(std::move(file)) {}
    koralModule(const koralModule&) = delete;
    koralModule& operator=(const koralModule&) = delete;

    // As written after `module`.
    const std::string& name() const { return name_; }
    const std::string& graphClass() const { return graphClass_; }
    // The file it was compiled from.
    const std::string& file() const { return file_; }
    const std::vector<const koralModule*>& uses() const { return uses_; }
    const std::vector<std::string>& exports() const { return exports_; }
    const std::vector<std::unique_ptr<koralUnit>>& units() const { return units_; }
    // Set once the whole text compiled.
    bool loaded() const { return loaded_; }

    // The first unit of that name; null when there is none.
    const koralUnit* findUnit(std::string_view name) const;

    // For the compiler.
    void setName(std::string name) { name_ = std::move(name); }
    void setGraphClass(std::string graphClass) { graphClass_ = std::move(graphClass); }
    void addUse(const koralModule& module) { uses_.push_back(&module); }
    void addExport(std::string name) { exports_.push_back(std::move(name)); }
    // Returns the unit, now owned by the module.
    koralUnit& addUnit(std::unique_ptr<koralUnit> unit);
    void markLoaded() { loaded_ = true; }

  private:
    std::string name_;
    std::string graphClass_;
    std::string file_;
    std::vector<const koralModule*> uses_;  // owned by the module cache
    std::vector<std::string> exports_;
    std::vector<std::unique_ptr<koralUnit>> units_;
    bool loaded_ = false;
};

}  // namespace vellum
