#include "faults/unfinished.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t headerBytes = 12;
constexpr std::size_t entryBytes = 28;

// The TMD as it is before its table is written anew: every entry begins with an offset and a number for
// each of vertices, normals and primitives.
std::string withoutOffsets(std::string tmd) {
    const auto objects = static_cast<unsigned char>(tmd[8]); // few, in a test
    for (std::size_t i = 0; i < objects; ++i) {
        for (std::size_t field = 0; field < 6; field += 2)
            std::memset(tmd.data() + headerBytes + i * entryBytes + 4 * field, 0, 4);
    }
    return tmd;
}

} // namespace

std::string findFaultInUnfinished(const std::string& left, const std::string& whole) {
    if (left.size() > whole.size())
        return "more bytes than the whole has";
    if (whole.starts_with(left))
        return {};
    const std::string placeholder = withoutOffsets(whole);
    const auto end = left.begin() + static_cast<std::ptrdiff_t>(left.size());
    const auto offset = std::mismatch(left.begin(), end, whole.begin()).first;
    const auto at = offset - left.begin();
    if (std::equal(offset, end, placeholder.begin() + at))
        return {};
    const auto wrong = std::mismatch(offset, end, placeholder.begin() + at).first;
    return "byte " + std::to_string(wrong - left.begin()) + " is none of the output's";
}
