#include "support/sanitized.hpp"

#include <cstdlib>

// There in a program that is linked with the sanitizer.
extern "C" [[gnu::weak]] void __asan_init();

bool isSanitized() {
    return &__asan_init != nullptr || std::getenv("VEXBIND_SANITIZED") != nullptr;
}
