// What a run that ended early may have left of its output.
#pragma once

#include <string>

// What is wrong with `left` as the beginning of the TMD `whole`; empty when nothing is. The object table is
// written twice, first with offsets of 0: up to some byte of it the offsets may be the final ones.
[[nodiscard]] std::string findFaultInUnfinished(const std::string& left, const std::string& whole);
