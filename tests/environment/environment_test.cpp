// Standard streams that are closed or full, and a start directory that is gone.
#include "environment/shell_runs.hpp"
#include "faults/judge.hpp"

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

namespace {

using Environment = ShellRuns;

TEST_F(Environment, ClosedStandardErrorDoesNotReachTheOutput) {
    ASSERT_EQ(run("vexbind -o whole.tmd samples/cube.rsd"), 0);
    EXPECT_EQ(run("vexbind -v -o out.tmd samples/cube.rsd 2>&-"), 0);
    EXPECT_EQ(left("out.tmd"), left("whole.tmd"));
}

TEST_F(Environment, ClosedStandardOutputIsReportedAndDoesNotReachTheOutput) {
    ASSERT_EQ(run("vexbind -o whole.tmd samples/cube.rsd"), 0);
    EXPECT_EQ(run("vexbind -info -o out.tmd samples/cube.rsd >&-"), 31);
    EXPECT_EQ(complained(), startNotice + "\nFail to Close File : standard output\n");
    EXPECT_EQ(left("out.tmd"), left("whole.tmd"));
}

TEST_F(Environment, ClosedStandardOutputDoesNotMatterWhenNothingIsPrinted) {
    EXPECT_EQ(run("vexbind -o out.tmd samples/cube.rsd >&-"), 0);
    EXPECT_EQ(complained(), startNotice);
}

// The reader sees some twenty of 1000 packets, whose report is far more than a pipe takes in: the run ends on
// the way. The TMD then has the packets that were shown.
TEST_F(Environment, PacketsOfADumpThatIsBrokenOffAreInTheTmd) {
    std::string ply = "@PLY940102\n3 1 1000\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n";
    for (int i = 0; i < 1000; ++i)
        ply += "0 0 1 2 0 0 0 0 0\n";
    writeFiles(directory, {{"m.rsd", "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=0\n"},
                           {"m.ply", ply},
                           {"m.mat", "@MAT940102\n1\n0-999 0 F C 1 2 3\n"}});
    EXPECT_EQ(run("{ vexbind -info -o out.tmd m.rsd; echo $? >status; } | head -c 5000 >/dev/null"), 0);
    EXPECT_EQ(left("status"), "141\n"); // SIGPIPE
    // Header, table, and packets of 16 bytes.
    EXPECT_GE(left("out.tmd").size(), 12U + 28U + 16U * 20U);
}

// Into one log: the dump so far is sent on with the warning, and not only when the next object is read.
TEST_F(Environment, WarningOfMissingMaterialSendsTheReportOn) {
    const std::string body = "3 1 2\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n0 2 1 0 0 0 0 0 0\n";
    writeFiles(directory, {{"a.rsd", "@RSD940102\nPLY=a.ply\nMAT=m.mat\nNTEX=0\n"},
                           {"b.rsd", "@RSD940102\nPLY=b.ply\nMAT=m.mat\nNTEX=0\n"},
                           {"a.ply", "@PLY940102\n" + body},
                           {"b.ply", "@PLY940102\n" + body},
                           {"m.mat", "@MAT940102\n1\n0 0 F C 1 2 3\n"}});
    EXPECT_EQ(run("vexbind -v -info -o out.tmd a.rsd b.rsd >log 2>&1"), 0);
    const std::string log = left("log");
    const std::size_t first = log.find("= [  0] FLAT NO TEX 3-POLY");
    const std::size_t second = log.find("= [  1] FLAT NO TEX 3-POLY");
    const std::size_t nextObject = log.find("(Reading b.ply...)");
    ASSERT_NE(log.find("WARNING: Some primitives have no material"), std::string::npos);
    ASSERT_NE(second, std::string::npos);
    ASSERT_NE(nextObject, std::string::npos);
    EXPECT_LT(first, nextObject);
    EXPECT_GT(second, nextObject);
}

// All eight combinations, in a run that has something for each stream: what cannot be printed is told of by
// the status, and nothing of it gets into a file.
TEST_F(Environment, AnyStandardStreamsMayBeClosed) {
    const std::string words = "cd samples && vexbind -v -info -o ../out.tmd scene.prj";
    ASSERT_EQ(run(words), 0);
    const std::string tmd = left("out.tmd");
    const std::string list = withoutDate(left("samples/out.h"));
    for (unsigned closed = 0; closed < 8; ++closed) {
        fs::remove(directory + "/out.tmd");
        fs::remove(directory + "/samples/out.h");
        std::string script = words;
        script += (closed & 1U) != 0 ? " <&-" : "";
        script += (closed & 2U) != 0 ? " >&-" : "";
        script += (closed & 4U) != 0 ? " 2>&-" : "";
        EXPECT_EQ(run(script), (closed & 2U) != 0 ? 31 : 0) << script;
        EXPECT_EQ(left("out.tmd"), tmd) << script;
        EXPECT_EQ(withoutDate(left("samples/out.h")), list) << script;
        EXPECT_EQ(printed().empty(), (closed & 2U) != 0) << script;
        EXPECT_EQ(complained().empty(), (closed & 4U) != 0) << script;
    }
}

TEST_F(Environment, FullStandardOutputIsReported) {
    if (!fs::exists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    EXPECT_EQ(run("vexbind -info -o out.tmd samples/cube.rsd >/dev/full"), 31);
    EXPECT_EQ(complained(), startNotice + "\nFail to Close File : standard output\n");
}

TEST_F(Environment, MissingStartDirectoryEndsTheRun) {
    EXPECT_EQ(run("mkdir gone; cd gone; rmdir ../gone; exec vexbind " + directory + "/samples/cube.rsd"), 51);
    EXPECT_EQ(complained(), startNotice + "\nCannot getcwd: \".\"\n");
    EXPECT_FALSE(fs::exists(directory + "/samples/a.tmd"));
}

TEST_F(Environment, HelpNeedsNoStartDirectory) {
    EXPECT_EQ(run("mkdir gone; cd gone; rmdir ../gone; exec vexbind"), 0);
    EXPECT_TRUE(complained().starts_with(startNotice + "Version 3.72 Oct  1 1996\nUsage : vexbind"))
        << complained();
    EXPECT_EQ(printed(), "");
}

} // namespace
