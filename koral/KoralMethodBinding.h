// The bound call of a module's `call LIB.METHOD` statement: the method library is loaded and both
// the method and the library's mandatory `Error` entry are looked up once, when the module is
// compiled; running the statement then only calls them.
#pragma once

#include <string>

#include "koral/KoralLibrary.h"
#include "koral/PluginApi.h"

namespace vellum {

class KoralMethodBinding {
  public:
    // Binds "LIB.METHOD", split at the first ".": LIB is the library's file name, loaded as
    // koralLibrary::load() finds it, METHOD the entry. Throws koralException (class
    // "koralLibrary"): "Could not find the character '.'" without a "."; the loader's message when
    // the library cannot be loaded; "Could not find the method 'METHOD' in the library 'LIB' !!!"
    // and "Could not find the method 'Error' in the library 'LIB' !!!" for missing entries.
    explicit KoralMethodBinding(const std::string& identifier);

    const std::string& libraryName() const { return libraryName_; }
    const std::string& methodName() const { return methodName_; }

    // Runs the method on the graph; true when it reports success.
    bool call(DirectedGraph& graph, KoralFrame* frame) const;
    // The library's message for the failure of a call made while running `unit`; a null text
    // from the library gives an empty message.
    std::string error(const koralUnit* unit) const;

  private:
    std::string libraryName_;
    std::string methodName_;
    koralLibrary library_;  // keeps the entries below loaded
    KoralMethodEntry method_ = nullptr;
    KoralErrorEntry error_ = nullptr;
};

}  // namespace vellum
