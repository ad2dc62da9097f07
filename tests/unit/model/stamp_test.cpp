// The first lines of RSD, PLY and MAT files.
#include "model/stamp.hpp"

#include "unit/support.hpp"

#include "utilkit/errors.hpp"

#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

// What get_id makes of a first line, and what it prints.
struct IdResult {
    StampVersion version;
    std::string messages;
};

IdResult idOf(const std::string& line) {
    writeFile("in", line + "\n");
    FileRecord* file = fileOpen("in", "r");
    testing::internal::CaptureStderr();
    const StampVersion version = get_id(file, "PLY");
    const std::string messages = testing::internal::GetCapturedStderr();
    fileClose(file);
    return {version, messages};
}

} // namespace

TEST(GetId, TellsTheKnownDatesApart) {
    const TestDirectory directory;
    EXPECT_EQ(idOf("@PLY940101").version, 1);
    EXPECT_EQ(idOf("@PLY940102").version, 2);
    EXPECT_EQ(idOf("@PLY940801 and more").version, 2);
}

TEST(GetId, EndsTheRunForAnyOtherDate) {
    const TestDirectory directory;
    for (const std::string line : {"@PLY", "@PLYx", "@PLY940100", "@PLY940103", "@PLY940800", "@PLY940802"}) {
        SCOPED_TRACE(line);
        writeFile("in", line);
        EXPECT_EXIT(get_id(fileOpen("in", "r"), "PLY"), ExitedWithCode(71),
                    Eq("\n\"in\" has a bad version: " + line + "\n"));
    }
}

TEST(GetId, EndsTheRunForAnotherFormat) {
    const TestDirectory directory;
    for (const std::string line : {"@RSD940102", "@ply940102", "PLY940102", "x@PLY940102", "@PL"}) {
        SCOPED_TRACE(line);
        writeFile("in", line);
        EXPECT_EXIT(get_id(fileOpen("in", "r"), "PLY"), ExitedWithCode(70),
                    Eq("\n\"in\" is not a PLY file\n"));
    }
}

TEST(GetId, TakesAnIgnoredFormatForACurrentOne) {
    const TestDirectory directory;
    pushIgnore(FORM_ERR);
    const IdResult result = idOf("@RSD940101");
    EXPECT_EQ(result.version, 2);
    EXPECT_EQ(result.messages, "");
}

TEST(GetId, GivesNoVersionWhenABadOneIsIgnored) {
    const TestDirectory directory;
    pushIgnore(VER_ERR);
    const IdResult result = idOf("@PLY940103");
    EXPECT_EQ(result.version, 0);
    EXPECT_EQ(result.messages, "");
}
