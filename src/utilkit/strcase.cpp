#include "utilkit/strcase.hpp"

#include <cctype>

namespace vexbind {

static int lower(char character) {
    return std::tolower(static_cast<unsigned char>(character));
}

void makeUpper(char* text) {
    for (; *text != '\0'; ++text) {
        *text = static_cast<char>(std::toupper(static_cast<unsigned char>(*text)));
    }
}

void makeLower(char* text) {
    for (; *text != '\0'; ++text) {
        *text = static_cast<char>(lower(*text));
    }
}

bool equalsIgnoringCase(const char* one, const char* other) {
    while (*one != '\0' && lower(*one) == lower(*other)) {
        ++one;
        ++other;
    }
    return lower(*one) == lower(*other);
}

} // namespace vexbind
