// FAULTS_SANITIZED is defined, and `sanitized` true, when the sources are compiled with the address
// sanitizer, whether or not this test is.
#pragma once

#if defined(VEXBIND_SANITIZED) || defined(__SANITIZE_ADDRESS__)
#define FAULTS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FAULTS_SANITIZED 1
#endif
#endif

#ifdef FAULTS_SANITIZED
inline constexpr bool sanitized = true;
#else
inline constexpr bool sanitized = false;
#endif
