// Joining a directory and a name.
#pragma once

#include "utilkit/tracked.hpp"

#include <string>

namespace vexbind {

/// Fills `buffer` with `directory` + "/" + `name`, with one "/" between them, and returns its text. A
/// null directory gives the name alone, an empty one a name below the root.
const char* mkPathName0(const char* directory, const char* name, std::string& buffer);

/// The same as a new text.
Text mkPathName(const char* directory, const char* name);

} // namespace vexbind
