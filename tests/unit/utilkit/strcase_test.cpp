// Letter case.
#include "utilkit/strcase.hpp"

#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

namespace {

struct Conversion {
    const char* text;
    const char* upper;
    const char* lower;
};

const Conversion conversions[] = {
    {"", "", ""},
    {"Model.Ply", "MODEL.PLY", "model.ply"},
    {"azAZ", "AZAZ", "azaz"},
    {"@[`{09_-/. ", "@[`{09_-/. ", "@[`{09_-/. "}, // the neighbours of the letters
    {"\xE4\xC4\xFF", "\xE4\xC4\xFF", "\xE4\xC4\xFF"},
};

struct Equality {
    const char* one;
    const char* other;
    bool equal;
};

const Equality equalities[] = {
    {"", "", true},          {"-o", "-O", true},     {"ArG", "aRg", true}, {"-o", "-", false},
    {"-", "-o", false},      {"", "a", false},       {"a", "", false},     {"arg", "arh", false},
    {"arg", "argx", false},  {"argx", "arg", false}, {"[", "{", false},    {"@", "`", false},
    {"\xE4", "\xC4", false}, {"\xE4", "\xE4", true},
};

} // namespace

TEST(MakeUpper, ConvertsLettersInPlace) {
    for (const Conversion& one : conversions) {
        std::string text = one.text;
        makeUpper(text.data());
        EXPECT_EQ(text, one.upper);
    }
}

TEST(MakeLower, ConvertsLettersInPlace) {
    for (const Conversion& one : conversions) {
        std::string text = one.text;
        makeLower(text.data());
        EXPECT_EQ(text, one.lower);
    }
}

TEST(EqualsIgnoringCase, ComparesWholeTexts) {
    for (const Equality& pair : equalities) {
        EXPECT_EQ(equalsIgnoringCase(pair.one, pair.other), pair.equal) << pair.one << " and " << pair.other;
    }
}
