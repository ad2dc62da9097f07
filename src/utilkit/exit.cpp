#include "utilkit/exit.hpp"

#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/reporttext.hpp"

#include <cstdlib>

namespace vexbind {

void Exit(std::int32_t status) {
    writePendingWords();
    sendReport();
    chDir(cwd.data());
    std::exit(status);
}

} // namespace vexbind
