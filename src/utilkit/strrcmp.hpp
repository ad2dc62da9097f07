// Comparing texts from their ends.
#pragma once

namespace vexbind {

/// 0 when `tail` ends `text` or `tail` is empty, else -1.
int strrcmp(const char* text, const char* tail);

} // namespace vexbind
