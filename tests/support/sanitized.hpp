#pragma once

// Whether the tests have to do with what was made with the address sanitizer: the sources that are linked to
// them, or the program that they start.
bool isSanitized();
