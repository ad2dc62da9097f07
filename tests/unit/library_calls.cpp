#include "unit/library_calls.hpp"

#include <cstdio>
#include <ctime>
#include <utility>

// The linker's names for the library's routines and for what stands in for them.
extern "C" {
std::FILE* __real_fopen(const char* name, const char* mode);
std::FILE* __wrap_fopen(const char* name, const char* mode);
std::tm* __real_localtime(const std::time_t* time);
std::tm* __wrap_localtime(const std::time_t* time);
}

static std::function<bool(const char*)> mayOpenNow;
static bool hasLocalTime = true;

BeforeOpening::BeforeOpening(std::function<bool(const char*)> mayOpen) {
    mayOpenNow = std::move(mayOpen);
}

BeforeOpening::~BeforeOpening() {
    mayOpenNow = nullptr;
}

NoLocalTime::NoLocalTime() {
    hasLocalTime = false;
}

NoLocalTime::~NoLocalTime() {
    hasLocalTime = true;
}

std::FILE* __wrap_fopen(const char* name, const char* mode) {
    return mayOpenNow && !mayOpenNow(name) ? nullptr : __real_fopen(name, mode);
}

std::tm* __wrap_localtime(const std::time_t* time) {
    return hasLocalTime ? __real_localtime(time) : nullptr;
}
