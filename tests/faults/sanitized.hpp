// FAULTS_SANITIZED is defined in what is compiled with the address sanitizer.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define FAULTS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FAULTS_SANITIZED 1
#endif
#endif
