// How much the tests that try very many inputs try.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define VEXBIND_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(memory_sanitizer) || __has_feature(thread_sanitizer)
#define VEXBIND_SANITIZED 1
#endif
#endif

// `many` in an optimised build, `few` in one that is slow: with sanitizers, for the debugger, for coverage.
constexpr int atVolume(int many, int few) {
#if defined(NDEBUG) && !defined(VEXBIND_SANITIZED)
    static_cast<void>(few);
    return many;
#else
    static_cast<void>(many);
    return few;
#endif
}
