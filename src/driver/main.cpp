#include "driver/run.hpp"
#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"

#include <new>

int main(int argc, char** argv) {
    try {
        vexbind::run(argc, argv);
    } catch (const std::bad_alloc&) {
        // Names are put together in strings of the library, which does not say how much it wanted.
        vexbind::raiseAllocError(vexbind::allocFailed, "main", 0, 0);
    }
    return vexbind::allocFailed; // GCOVR_EXCL_LINE: run ends the process, and so does the error
}
