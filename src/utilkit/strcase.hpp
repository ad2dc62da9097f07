// Letter case.
#pragma once

namespace vexbind {

/// Converts `text` to upper case in place.
void makeUpper(char* text);

/// Converts `text` to lower case in place.
void makeLower(char* text);

/// Whether the texts are equal but for letter case.
bool equalsIgnoringCase(const char* one, const char* other);

} // namespace vexbind
