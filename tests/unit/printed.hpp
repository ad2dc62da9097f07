// What a routine prints.
#pragma once

#include "utilkit/reporttext.hpp"

#include <cstdio>
#include <string>

// Calls `print` with a stream of its own; what it has written there.
template <class Print> std::string printed(Print print) {
    std::FILE* stream = std::tmpfile();
    if (stream == nullptr) {
        return "no temporary file";
    }
    print(stream);
    vexbind::sendReport();
    std::rewind(stream);
    std::string text;
    for (int character = std::fgetc(stream); character != EOF; character = std::fgetc(stream)) {
        text += static_cast<char>(character);
    }
    std::fclose(stream);
    return text;
}
