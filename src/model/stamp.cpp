#include "model/stamp.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/status.hpp"

#include <cstdio>
#include <cstring>

namespace vexbind {

static constexpr std::size_t formatLetters = 3;

StampVersion get_id(FileRecord* file, const char* format) {
    const char* text = getLine(file).text;
    if (text[0] != '@' || std::strncmp(text + 1, format, formatLetters) != 0) {
        raiseError(wrongFormat, FORM_ERR, file->name, format);
        return currentStamp;
    }
    long date = 0;
    // NOLINTNEXTLINE(cert-err34-c): a date that does not fit is no known date either
    const bool hasDate = std::sscanf(text + 1 + formatLetters, "%ld", &date) == 1;
    if (hasDate && date == 940101) {
        return oldStamp;
    }
    if (hasDate && (date == 940102 || date == 940801)) {
        return currentStamp;
    }
    raiseError(wrongVersion, VER_ERR, file->name, text);
    return badStamp;
}

} // namespace vexbind
