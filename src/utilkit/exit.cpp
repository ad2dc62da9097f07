#include "utilkit/exit.hpp"

#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"

#include <cstdlib>

namespace vexbind {

void Exit(std::int32_t status) {
    chDir(cwd.data());
    std::exit(status);
}

} // namespace vexbind
