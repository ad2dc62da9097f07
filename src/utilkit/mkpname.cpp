#include "utilkit/mkpname.hpp"

#include "utilkit/platform.hpp"
#include "utilkit/stralloc.hpp"

namespace vexbind {

const char* mkPathName0(const char* directory, const char* name, std::string& buffer) {
    buffer.clear();
    if (directory != nullptr) {
        buffer = directory;
        if (buffer.empty() || !isSeparator(buffer.back())) {
            buffer += '/';
        }
    }
    buffer += name;
    return buffer.c_str();
}

Text mkPathName(const char* directory, const char* name) {
    std::string buffer;
    return strCopy(mkPathName0(directory, name, buffer));
}

} // namespace vexbind
