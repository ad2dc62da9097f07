#include "utilkit/stralloc.hpp"

#include "utilkit/errors.hpp"
#include "utilkit/status.hpp"

#include <cstdlib>
#include <cstring>

namespace vexbind {

Text strAlloc(std::size_t size, const char* name) {
    const auto counted = static_cast<std::uint32_t>(size);
    countAllocation(counted);
    Text text(static_cast<char*>(std::malloc(size)));
    if (!text) {
        raiseAllocError(strAllocFailed, name == nullptr ? "strAlloc" : name, counted, 1);
    }
    return text;
}

Text strCopy(const char* text) {
    const std::size_t size = std::strlen(text) + 1;
    // Kept: a failed copy is reported here, as a copy of this text, and not by strAlloc.
    pushIgnore(ALC_ERR);
    Text copy = strAlloc(size, text);
    popIgnore();
    if (!copy) {
        raiseAllocError(strCopyFailed, text, static_cast<std::uint32_t>(size), 1);
        return copy;
    }
    std::memcpy(copy.get(), text, size);
    return copy;
}

} // namespace vexbind
