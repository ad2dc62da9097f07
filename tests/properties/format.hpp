#pragma once

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

namespace properties {

// What printf writes; up to 511 bytes.
[[gnu::format(printf, 1, 2)]] inline std::string format(const char* form, ...) {
    std::array<char, 512> text{};
    std::va_list values;
    va_start(values, form);
    std::vsnprintf(text.data(), text.size(), form, values);
    va_end(values);
    return text.data();
}

} // namespace properties
