// The settings that tell the program where to look for files and which extensions they have: the
// search paths "koralModules", "koralGraphRules", "koralGraphClasses" and "VellumLayout", and the
// file extensions CLASS + "EXTGRAPH" / CLASS + "EXTRULE" of each graph class. They come from the
// environment, but the program changes them while it runs (the command line points the module
// paths at a module's folder, a dialog may edit them) and the interpreter's worker reads them at
// the same time: the environment itself is not safe for that, so every reader and writer goes
// through this object.
#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace vellum {

class SearchPaths {
  public:
    // The one the program and every plug-in share.
    static SearchPaths& instance();

    // A name the program has not set (or has reset) reads the environment variable of that name;
    // an unset value and an empty one are told apart.
    bool isSet(const std::string& name) const;
    std::string value(const std::string& name) const;

    void set(const std::string& name, std::string value);
    // Sets the value only when it is unset, so that a value the user chose always wins; true
    // when it did.
    bool setDefault(const std::string& name, const std::string& value);
    // Forgets the value the program set: the name reads the environment again.
    void reset(const std::string& name);

  private:
    std::optional<std::string> lookUp(const std::string& name) const;

    mutable std::mutex mutex_;
    std::map<std::string, std::string> values_;  // set by the program; win over the environment
};

}  // namespace vellum
