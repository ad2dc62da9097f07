// Rules in the reports.
#pragma once

#include <cstdio>

namespace vexbind {

/// Writes `character` `count` times.
void drawLine(std::FILE* stream, char character, int count);

} // namespace vexbind
