// The one way out of the process. Its source stands alone so that tests and fuzzers can link
// another.
#pragma once

#include <cstdint>

namespace vexbind {

/// Returns to the start directory `cwd` and ends the process with `status`; what waits in output
/// streams is written.
[[noreturn]] void Exit(std::int32_t status);

} // namespace vexbind
