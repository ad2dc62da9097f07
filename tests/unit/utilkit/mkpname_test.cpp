// Joining a directory and a name.
#include "utilkit/mkpname.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Joining {
    const char* directory;
    const char* name;
    const char* result;
};

const Joining joinings[] = {
    {"dir/", "f", "dir/f"},    {"dir", "f", "dir/f"},       {nullptr, "f", "f"}, {"/", "f", "/f"},
    {"dir//", "f", "dir//f"},  {"dir", "/f", "dir//f"},     {"dir", "", "dir/"}, {nullptr, "", ""},
    {"a/b", "c/d", "a/b/c/d"}, {"..", "f.ply", "../f.ply"},
};

} // namespace

TEST(MkPathName0, PutsOneSlashBetween) {
    for (const Joining& joining : joinings) {
        SCOPED_TRACE(joining.result);
        std::string buffer = "stale";
        const char* result = mkPathName0(joining.directory, joining.name, buffer);
        EXPECT_STREQ(result, joining.result);
        EXPECT_EQ(result, buffer.c_str());
    }
}

TEST(MkPathName, GivesTheSameAsANewText) {
    const FreshGlobals globals;
    for (const Joining& joining : joinings) {
        EXPECT_STREQ(mkPathName(joining.directory, joining.name).get(), joining.result);
    }
}

TEST(MkPathName, HandlesLongPathsWhole) {
    const FreshGlobals globals;
    const std::string directory(3000, 'd');
    const std::string name(3000, 'f');
    EXPECT_EQ(mkPathName(directory.c_str(), name.c_str()).get(), directory + "/" + name);
}

TEST(MkPathName, IsACopyOfTheJoinedName) {
    const FreshGlobals globals;
    mkPathName("dir/", "f");
    EXPECT_EQ(counters(), (Counters{6, 1, 1}));
    EXPECT_EXIT(
        {
            failAllocation(1);
            mkPathName("dir", "f");
        },
        ExitedWithCode(13), Eq("\nAlloc Error: \"dir/f\" 6 x 1(+2-1:sum=12)\n"));
}
