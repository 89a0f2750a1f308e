// A layout algorithm: the library NAME.layout in the folder named by "VellumLayout", which
// places the vertices of a graph by writing their "position" attributes. Also lists the
// algorithms that folder offers.
#pragma once

#include <string>
#include <vector>

#include "koral/KoralLibrary.h"
#include "koral/PluginApi.h"

namespace vellum {

class LayoutLibrary {
  public:
    // The names of the files matching "*.layout" in the folders of "VellumLayout" (the working
    // folder when it is unset or empty), each cut at its first ".", sorted, without repeats.
    static std::vector<std::string> available();

    // Loads NAME.layout, found with findFile() along "VellumLayout". Throws koralException (class
    // "koralLibrary"): "Could not load the library 'NAME.layout' !!!" when it is not found or
    // will not load, and for a name that is empty or holds a "/" or "\\" (only the folders of
    // "VellumLayout" are searched).
    explicit LayoutLibrary(const std::string& name);

    const std::string& name() const { return name_; }
    // What lyDescription returns; empty when the library has no such entry.
    std::string description() const;
    // Calls lyConfigure; throws the koralLibrary message when it is missing.
    void configure() const;
    // Calls lyCompleteLayout on the graph; true on success. Throws the koralLibrary message
    // when the entry is missing.
    bool completeLayout(DirectedGraph& graph, KoralFrame* notifier) const;

  private:
    std::string name_;
    koralLibrary library_;
};

}  // namespace vellum
