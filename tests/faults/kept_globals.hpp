// Sets all global variables of the executable back to what they once were: the state of its sources, not
// that of the shared libraries.
#pragma once

// Remembers how they are, for this process and those that it forks. False where they cannot be set back.
[[nodiscard]] bool keepGlobals();

// Sets them back.
void restoreGlobals();
