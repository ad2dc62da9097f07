// The whole run.
#pragma once

namespace vexbind {

/// Converts what the words of the command line name. Ends through Exit.
[[noreturn]] void run(int argumentCount, char** arguments);

} // namespace vexbind
