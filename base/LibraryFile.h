// A look at a library file before the system loader sees it. The loader maps a shared object
// and trusts its headers; one cut short (an interrupted copy) kills the process with a bus error
// when the missing pages are touched, so such a file must be turned away unopened.
#pragma once

#include <string>

namespace vellum {

// True for a shared object of this machine whose program headers or loadable segments reach
// past the end of the file. Anything else that is not a library (text, an object of another
// machine, a missing file) gives false: the loader refuses those by itself.
bool isCutShortLibrary(const std::string& file);

// The file the system loader takes first for a bare library name from the folders of
// LD_LIBRARY_PATH (an empty entry is the working folder); empty when none of them holds one.
std::string findOnLibraryPath(const std::string& name);

}  // namespace vellum
