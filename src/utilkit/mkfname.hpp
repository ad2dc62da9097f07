// Adding or replacing the extension of a name.
#pragma once

#include "utilkit/tracked.hpp"

#include <span>
#include <string>

namespace vexbind {

/// Extensions to try, in order, without their dots.
using ExtensionList = std::span<const char*>;

/// Fills `buffer` with `path` and an extension, and returns its text: a path without extension gets
/// `extension`; one whose extension ends an entry of the list gets the first such entry in its place;
/// any other stays as it is. A leading "." of that entry is dropped from the caller's list for good.
const char* mkFileName0(const char* path, const char* extension, ExtensionList extensions,
                        std::string& buffer);

/// The same as a new text.
Text mkFileName(const char* path, const char* extension, ExtensionList extensions);

} // namespace vexbind
