#include "utilkit/strrcmp.hpp"

#include <string_view>

namespace vexbind {

int strrcmp(const char* text, const char* tail) {
    return std::string_view(text).ends_with(tail) ? 0 : -1;
}

} // namespace vexbind
