#include "model/search.hpp"

#include "utilkit/isfile.hpp"
#include "utilkit/mkpname.hpp"
#include "utilkit/strcase.hpp"

#include <string>

namespace vexbind {

std::array<const char*, 2> RSD_EXT = {"rsd", "RSD"};
std::array<const char*, 2> PLY_EXT = {"ply", "PLY"};
std::array<const char*, 2> MAT_EXT = {"mat", "MAT"};
std::array<const char*, 2> TIM_EXT = {"tim", "TIM"};
const std::array<const char*, 2> TIM_DIR = {"../TIM", "../tim"};

bool find_other_case(char* name) {
    const std::string written = name;
    makeUpper(name);
    if (isFile(name)) {
        return true;
    }
    makeLower(name);
    if (isFile(name)) {
        return true;
    }
    written.copy(name, written.size());
    return false;
}

Text find_in_directories(const char* name, std::span<const char* const> directories) {
    std::string upper = name;
    std::string lower = name;
    makeUpper(upper.data());
    makeLower(lower.data());
    for (const char* directory : directories) {
        if (!isDir(directory)) {
            continue;
        }
        for (const char* form : {name, upper.c_str(), lower.c_str()}) {
            Text candidate = mkPathName(directory, form);
            if (isFile(candidate.get())) {
                return candidate;
            }
        }
    }
    return nullptr;
}

} // namespace vexbind
