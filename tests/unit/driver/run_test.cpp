// The end of a run.
#include "driver/run.hpp"

#include "unit/support.hpp"

#include "utilkit/tracked.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

// A stream that can be read only refuses every byte at once, so that there is nothing left to fail later.
TEST(Run, ReportsALostLineOfTheStandardOutput) {
    const TestDirectory directory;
    std::array<std::string, 3> words = {"vexbind", "-info", "none"};
    std::array<char*, 3> arguments = {words[0].data(), words[1].data(), words[2].data()};
    EXPECT_EXIT(
        {
            if (std::freopen("/dev/null", "r", stdout) != nullptr) {
                run(3, arguments.data());
            }
        },
        testing::ExitedWithCode(31),
        testing::Eq("vexbind: RSD to TMD model converter\nCannot open: \"none.rsd\"\n"
                    "\nFail to Close File : standard output\n"));
}

// The totals differ in the end, as closed files stay in them; the blocks do not.
TEST(Run, ReleasesAllThatItTakes) {
    const TestDirectory directory({
        {"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"},
        {"m.ply", "@PLY940102\n3 1 1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n"},
        {"m.mat", "@MAT940102\n1\n0 0 F C 1 2 3\n"},
    });
    std::array<std::string, 3> words = {"vexbind", "m.rsd", "m.rsd"};
    std::array<char*, 3> arguments = {words[0].data(), words[1].data(), words[2].data()};
    EXPECT_EXIT(
        {
            std::atexit([] { std::fprintf(stderr, "%d blocks left\n", allocCount - freeCount); });
            run(3, arguments.data());
        },
        testing::ExitedWithCode(0), testing::Eq("vexbind: RSD to TMD model converter\n0 blocks left\n"));
}
