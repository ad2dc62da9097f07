// Message texts, statuses, the ignore list, and how failures and warnings are reported.
#include "utilkit/errors.hpp"

#include "unit/support.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/status.hpp"

#include <cstdlib>
#include <set>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

struct Message {
    MessageCode code;
    const char* text;
};

const Message messages[] = {
    {OPEN_ERR, "Cannot open: \"%s\"\n"},
    {ALC_ERR, "Alloc Error: \"%s\" %d x %ld(+%ld-%ld:sum=%ld)\n"},
    {EOF_ERR, "Unexpected EOF: \"%s\" at %ld bytes\n"},
    {READ_ERR, "Fail to read: \"%s\" at %ld bytes\n"},
    {WRIT_ERR, "Fail to write: \"%s\" at %ld bytes\n"},
    {EOT_ERR, "Unexpected EOF: \"%s\" line=%ld\n"},
    {RTXT_ERR, "Fail to read: \"%s\" line=%ld\n"},
    {ARG_ERR, "Bad argument: %s %s\n"},
    {FORM_ERR, "\"%s\" is not a %s file\n"},
    {VER_ERR, "\"%s\" has a bad version: %s\n"},
    {SYN_ERR, "Syntax Error: %s line=%ld \"%s\"\n"},
    {WARN_MSG, "WARNING: "},
    {LEAK_ERR, "Memory leak!: %ld times @ %s\n"},
    {INDEX_ERR, "Bad index: %u [0-%u]\n"},
    {CLOSE_ERR, "Fail to Close File : %s\n"},
    {SEEK_ERR, "Seek error \"%s\" at %ld bytes"},
    {GETCWD_ERR, "Cannot getcwd: \"%s\"\n"},
    {PATH_ERR, "Bad path name: \"%s\"\n"},
    {MATLIST_ERR, "\nERROR:\tBad MAT Format : %s\n"},
    {SCALE_ERR, "Bad scale factor: %G (must be > 0)\n"},
    {OPTION_ERR, "%s : Illegal option.\n"},
    {TEXTURE_MSG, "\nCannot Open: \"%s\" for %s\n"},
    {CLUT_MSG, "Bad CLUT address! : (%d %d)"},
    {CLUT_X_MSG, " (x should be 16*n)"},
    {PIXEL_MSG, "Bad Texture address! : (%d %d)\n"},
    {NO_MATERIAL_MSG, "Some primitives have no material (WHITE is assigned.)\n"},
};

// Taken before any test runs.
const auto ignoreListAtStart = _ignoreErr_;
const std::int32_t ignoreCountAtStart = _igno_;

struct Raised {
    std::int32_t status;
    void (*raise)();
    const char* text;
};

// One line per code: its arguments, and what has to stand on the standard error.
const Raised raised[] = {
    {2, [] { raiseError(2, ARG_ERR, "-s", "x"); }, "\nBad argument: -s x\n"},
    {12, [] { raiseError(12, ALC_ERR, "tables", 7, 8L, 9L, -10L, 2147483647L); },
     "\nAlloc Error: \"tables\" 7 x 8(+9--10:sum=2147483647)\n"},
    {17, [] { raiseError(17, INDEX_ERR, 4294967295U, 4294967294U); },
     "\nBad index: 4294967295 [0-4294967294]\n"},
    {30, [] { raiseError(30, OPEN_ERR, "a b.rsd"); }, "\nCannot open: \"a b.rsd\"\n"},
    {31, [] { raiseError(31, CLOSE_ERR, "a.tmd"); }, "\nFail to Close File : a.tmd\n"},
    {32, [] { raiseError(32, SEEK_ERR, "a.tmd", 12L); }, "\nSeek error \"a.tmd\" at 12 bytes"},
    {33, [] { raiseError(33, RTXT_ERR, "a.ply", 3L); }, "\nFail to read: \"a.ply\" line=3\n"},
    {34, [] { raiseError(34, EOT_ERR, "a.ply", 0L); }, "\nUnexpected EOF: \"a.ply\" line=0\n"},
    {36, [] { raiseError(36, WRIT_ERR, "a.tmd", 8L); }, "\nFail to write: \"a.tmd\" at 8 bytes\n"},
    {38, [] { raiseError(38, READ_ERR, "a.tim", 2L); }, "\nFail to read: \"a.tim\" at 2 bytes\n"},
    {39, [] { raiseError(39, EOF_ERR, "a.tim", -4L); }, "\nUnexpected EOF: \"a.tim\" at -4 bytes\n"},
    {51, [] { raiseError(51, GETCWD_ERR, "a"); }, "\nCannot getcwd: \"a\"\n"},
    {52, [] { raiseError(52, PATH_ERR, "/a/../.."); }, "\nBad path name: \"/a/../..\"\n"},
    {70, [] { raiseError(70, FORM_ERR, "a.ply", "PLY"); }, "\n\"a.ply\" is not a PLY file\n"},
    {71, [] { raiseError(71, VER_ERR, "a.ply", "@PLY1"); }, "\n\"a.ply\" has a bad version: @PLY1\n"},
    {72, [] { raiseError(72, MATLIST_ERR, "x,2"); }, "\n\nERROR:\tBad MAT Format : x,2\n"},
    {95, [] { raiseError(95, SYN_ERR, "/m/a.ply", 5L, "1 2"); }, "\nSyntax Error: /m/a.ply line=5 \"1 2\"\n"},
};

struct SiteNumber {
    std::int32_t status;
    std::int32_t number;
};

const SiteNumber siteNumbers[] = {
    {normalEnd, 0},
    {illegalOption, 1},
    {badScaleFactor, 1},
    {noOutput, 1},
    {noTexture, 1},
    {badArgument, 2},
    {notAProject, 3},
    {plyNotFound, 100},
    {matNotFound, 200},
    {allocFailed, 10},
    {fileRecordAllocFailed, 11},
    {strAllocFailed, 12},
    {strCopyFailed, 13},
    {arrayHeaderAllocFailed, 14},
    {fullBlockAllocFailed, 15},
    {lastBlockAllocFailed, 16},
    {badIndex, 17},
    {openFailed, 30},
    {closeFailed, 31},
    {seekFailed, 32},
    {lineReadFailed, 33},
    {lineAtEnd, 34},
    {writeFailed, 36},
    {read2Failed, 38},
    {read2AtEnd, 39},
    {read4Failed, 40},
    {read4AtEnd, 41},
    {noWorkingDirectory, 51},
    {badPathName, 52},
    {wrongFormat, 70},
    {wrongVersion, 71},
    {badPolygonList, 72},
    {clutAtEnd, 73},
    {clutReadFailed, 74},
    {pixelsAtEnd, 75},
    {pixelsReadFailed, 76},
    {rsdPlySyntax, 90},
    {rsdMatSyntax, 91},
    {rsdNtexSyntax, 92},
    {plyCountSyntax, 94},
    {plyVertexSyntax, 95},
    {plyNormalSyntax, 96},
    {plyPolygonSyntax, 97},
    {matCountSyntax, 98},
    {matLineSyntax, 99},
    {matGradationSyntax, 100},
    {matColourSyntax, 101},
    {matTextureSyntax, 102},
    {matTextureColourSyntax, 103},
    {matTextureGradationSyntax, 104},
};

} // namespace

TEST(MessageCodes, TextsAreExact) {
    for (const Message& message : messages) {
        EXPECT_STREQ(message.code, message.text);
    }
}

TEST(MessageCodes, AreDistinctObjects) {
    std::set<MessageCode> addresses;
    for (const Message& message : messages) {
        addresses.insert(message.code);
    }
    EXPECT_EQ(addresses.size(), std::size(messages));
}

TEST(Status, ClassBases) {
    EXPECT_EQ(memCode, 10);
    EXPECT_EQ(fileCode, 30);
    EXPECT_EQ(libCode, 50);
    EXPECT_EQ(formCode, 70);
    EXPECT_EQ(synCode, 90);
}

TEST(Status, SiteNumbersAreExact) {
    for (const SiteNumber& site : siteNumbers) {
        EXPECT_EQ(site.status, site.number);
    }
}

TEST(IgnoreList, StartsEmpty) {
    EXPECT_EQ(ignoreCountAtStart, 0);
    for (const MessageCode entry : ignoreListAtStart) {
        EXPECT_EQ(entry, nullptr);
    }
}

TEST(IgnoreList, IsAStack) {
    const FreshGlobals globals;
    pushIgnore(EOT_ERR);
    pushIgnore(ALC_ERR);
    EXPECT_EQ(_igno_, 2);
    EXPECT_EQ(_ignoreErr_[0], EOT_ERR);
    EXPECT_EQ(_ignoreErr_[1], ALC_ERR);
    popIgnore();
    EXPECT_EQ(_igno_, 1);
    pushIgnore(OPEN_ERR);
    EXPECT_EQ(_igno_, 2);
    EXPECT_EQ(_ignoreErr_[0], EOT_ERR);
    EXPECT_EQ(_ignoreErr_[1], OPEN_ERR);
}

TEST(IgnoreList, PopOnEmptyListLeavesZero) {
    const FreshGlobals globals;
    popIgnore();
    EXPECT_EQ(_igno_, 0);
    pushIgnore(OPEN_ERR);
    popIgnore();
    popIgnore();
    EXPECT_EQ(_igno_, 0);
}

TEST(IgnoreList, HoldsThirtyCodes) {
    const FreshGlobals globals;
    EXPECT_EQ(_ignoreErr_.size(), 30U);
    for (int i = 0; i < 29; ++i) {
        pushIgnore(EOT_ERR);
    }
    pushIgnore(OPEN_ERR);
    EXPECT_EQ(_igno_, 30);
    EXPECT_EQ(_ignoreErr_[29], OPEN_ERR);
    EXPECT_EXIT(
        {
            raiseError(30, OPEN_ERR, "a");
            std::exit(7);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(IgnoreList, IsAskedForACode) {
    const FreshGlobals globals;
    EXPECT_FALSE(isIgnored(VER_ERR));
    pushIgnore(FORM_ERR);
    pushIgnore(VER_ERR);
    EXPECT_TRUE(isIgnored(VER_ERR));
    EXPECT_TRUE(isIgnored(FORM_ERR));
    EXPECT_FALSE(isIgnored(OPEN_ERR));
    popIgnore();
    // The entry is still there, but no longer live.
    EXPECT_FALSE(isIgnored(VER_ERR));
    EXPECT_TRUE(isIgnored(FORM_ERR));
}

TEST(RaiseError, WritesEmptyLineAndMessageAndEndsWithStatus) {
    const FreshGlobals globals;
    for (const Raised& one : raised) {
        SCOPED_TRACE(one.text);
        EXPECT_EXIT(one.raise(), ExitedWithCode(one.status), Eq(one.text));
    }
}

TEST(RaiseError, LeavesStandardOutputAlone) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            sendStandardOutputTo("out");
            raiseError(30, OPEN_ERR, "a");
        },
        ExitedWithCode(30), Eq("\nCannot open: \"a\"\n"));
    EXPECT_EQ(bytesOf("out"), "");
}

TEST(RaiseError, IgnoredCodePrintsNothingAndReturns) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(OPEN_ERR);
            raiseError(30, OPEN_ERR, "a");
            std::exit(7);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(RaiseError, EveryLiveEntryOfTheListCounts) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(OPEN_ERR);
            pushIgnore(ALC_ERR);
            pushIgnore(EOT_ERR);
            raiseError(30, OPEN_ERR, "a");
            raiseError(12, ALC_ERR, "a", 1, 2L, 3L, 4L, 5L);
            raiseError(34, EOT_ERR, "a", 1L);
            std::exit(7);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(RaiseError, OtherCodesOnTheListDoNotCount) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(RTXT_ERR);
            pushIgnore(EOF_ERR);
            raiseError(34, EOT_ERR, "a", 1L);
        },
        ExitedWithCode(34), Eq("\nUnexpected EOF: \"a\" line=1\n"));
}

TEST(RaiseError, IgnoreListHoldsObjectsNotTexts) {
    const FreshGlobals globals;
    static const char sameText[] = "Cannot open: \"%s\"\n";
    EXPECT_EXIT(
        {
            pushIgnore(sameText);
            raiseError(30, OPEN_ERR, "a");
        },
        ExitedWithCode(30), Eq("\nCannot open: \"a\"\n"));
}

TEST(RaiseError, CodePushedTwiceAndPoppedOnceStaysIgnored) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(OPEN_ERR);
            pushIgnore(OPEN_ERR);
            popIgnore();
            raiseError(30, OPEN_ERR, "a");
            std::exit(7);
        },
        ExitedWithCode(7), Eq(""));
}

TEST(RaiseError, PoppedCodeIsRaisedAgain) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(OPEN_ERR);
            popIgnore();
            raiseError(30, OPEN_ERR, "a");
        },
        ExitedWithCode(30), Eq("\nCannot open: \"a\"\n"));
}

TEST(RaiseError, EndsInTheStartDirectory) {
    const TestDirectory here({{"sub/", ""}});
    EXPECT_EXIT(
        {
            showDirectoryAtEnd();
            chDir("sub");
            raiseError(30, OPEN_ERR, "a");
        },
        ExitedWithCode(30), Eq("\nCannot open: \"a\"\n" + here.path()));
}

TEST(Warn, WritesPrefixAndMessageAndCarriesOn) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            warn(ARG_ERR, "-x", "");
            warn(SYN_ERR, "/m/a.ply", 5L, "1 2");
            std::exit(0);
        },
        ExitedWithCode(0),
        Eq("WARNING: Bad argument: -x \nWARNING: Syntax Error: /m/a.ply line=5 \"1 2\"\n"));
}

TEST(Warn, DoesNotConsultTheIgnoreList) {
    const FreshGlobals globals;
    EXPECT_EXIT(
        {
            pushIgnore(ARG_ERR);
            pushIgnore(WARN_MSG);
            warn(ARG_ERR, "-x", "y");
            std::exit(0);
        },
        ExitedWithCode(0), Eq("WARNING: Bad argument: -x y\n"));
}

TEST(Warn, LeavesStandardOutputAlone) {
    const TestDirectory here;
    EXPECT_EXIT(
        {
            sendStandardOutputTo("out");
            warn(ARG_ERR, "-x", "y");
            std::exit(0);
        },
        ExitedWithCode(0), Eq("WARNING: Bad argument: -x y\n"));
    EXPECT_EQ(bytesOf("out"), "");
}
