// The variables move, unchanged, from the memory of the process into a private mapping of an unnamed file:
// to drop the pages of it that were written is to have the file's again. Nothing here may be seen by a
// sanitizer, since the space between two variables is forbidden ground to it: the kernel does the copying.
#include "faults/kept_globals.hpp"

#include "faults/sanitized.hpp"

#include <cstddef>
#include <cstdint>

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

extern "C" {
// Where the variables begin and end.
extern char __data_start;
extern char end;
#ifdef FAULTS_SANITIZED
void __asan_init();
extern const char __executable_start;
#endif
// There when lines are counted for gcov.
[[gnu::weak]] void __gcov_init(void*);
}

namespace {

struct Pages {
    char* first;
    std::size_t size;
};

Pages pagesOfGlobals() {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(&__data_start) / page * page;
    const std::uintptr_t last = (reinterpret_cast<std::uintptr_t>(&end) + page - 1) / page * page;
    return {reinterpret_cast<char*>(first), last - first};
}

// Whether there is something among the variables that must not be set back: the counts of gcov, or the
// state of a sanitizer that lies in the executable.
bool holdsMore() {
    if (&__gcov_init != nullptr)
        return true;
#ifdef FAULTS_SANITIZED
    const auto* routine = reinterpret_cast<const char*>(&__asan_init);
    return routine >= &__executable_start && routine < &end;
#else
    return false;
#endif
}

} // namespace

bool keepGlobals() {
    if (holdsMore())
        return false;
    const Pages pages = pagesOfGlobals();
    const int file = memfd_create("globals", MFD_CLOEXEC);
    const bool written =
        file >= 0 && syscall(SYS_write, file, pages.first, pages.size) == static_cast<long>(pages.size);
    const bool mapped = written && mmap(pages.first, pages.size, PROT_READ | PROT_WRITE,
                                        MAP_PRIVATE | MAP_FIXED, file, 0) != MAP_FAILED;
    close(file);
    return mapped;
}

void restoreGlobals() {
    const Pages pages = pagesOfGlobals();
    madvise(pages.first, pages.size, MADV_DONTNEED);
}
