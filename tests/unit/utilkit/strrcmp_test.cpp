// Comparing texts from their ends.
#include "utilkit/strrcmp.hpp"

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

struct Comparison {
    const char* text;
    const char* tail;
    int result;
};

const Comparison comparisons[] = {
    {"model.ply", "ply", 0},
    {"model.ply", ".ply", 0},
    {"model.ply", "model.ply", 0},
    {"ply", "model.ply", -1}, // shorter than the tail
    {"abc", "", 0},
    {"", "", 0},
    {"", "a", -1},
    {"ply", "PLY", -1}, // case counts
    {"ply", "plx", -1},
    {"ply", "xly", -1}, // different at the front only
    {"ply", "ly", 0},
    {"ply", "y", 0},
    {"ply", "p", -1}, // a head is no tail
    {"ply.txt", "ply", -1},
    {"aab", "ab", 0},
    {"a\xFF", "\xFF", 0},
};

} // namespace

TEST(Strrcmp, IsZeroForTailsOnly) {
    for (const Comparison& one : comparisons) {
        EXPECT_EQ(strrcmp(one.text, one.tail), one.result) << one.text << " ends in " << one.tail;
    }
}
