// Finding files along the search paths of SearchPaths ("koralModules", "koralGraphRules",
// "koralGraphClasses", "VellumLayout"), seeded from the environment variables: a value is a
// ";"-separated list of folders, tried in order. A folder name may end in "/" or, as written for
// other systems, in
// "\"; either way exactly one "/" comes between folder and file name.
#pragma once

#include <string>
#include <vector>

namespace vellum {

// The folders listed in the variable, in order, empty entries left out; none when the variable
// is unset or empty.
std::vector<std::string> searchDirectories(const std::string& variable);

// The folder joined with the file name by one "/": a trailing "/" is kept, a trailing "\"
// becomes "/", and otherwise a "/" is added.
std::string joinPath(const std::string& directory, const std::string& fileName);

// The first existing file among the variable's folders joined with `fileName`. With the variable
// unset or empty, the file name itself when that file exists (relative to the working folder).
// Empty when nothing is found.
std::string findFile(const std::string& fileName, const std::string& variable);

// A found file made into a path that the system loader takes as it stands: a bare file name
// would send the loader to its own search folders instead of the working folder, where
// findFile() found it.
std::string loaderPath(const std::string& file);

}  // namespace vellum
