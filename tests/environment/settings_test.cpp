// Settings of the system and of the C library that must make no difference: locale, time zone, stack, and
// what fresh and freed memory holds.
#include "environment/shell_runs.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

// Numbers that a locale could misread or misprint: 12.25, -0.75 and 1e2 are scaled by 0.5, rounding halves
// away from zero; the scale is reported.
const std::vector<NamedFile> realFiles = {
    {"r.rsd", "@RSD940102\nPLY=r.ply\nMAT=r.mat\nNTEX=0\n"},
    {"r.ply", "@PLY940102\n1 0 0\n12.25 -0.75 1e2\n"},
    {"r.mat", "@MAT940102\n0\n"},
};
constexpr const char* realLine = "vexbind -v -s 0.5 -o r.tmd r.rsd";

class Settings : public ShellRuns {
  protected:
    void writeReals() { writeFiles(directory, realFiles); }

    // The vertex is 6.125 + 0.5, -0.375 - 0.5 and 50.5, cut.
    void expectReals(const std::string& script) {
        fs::remove(directory + "/r.tmd");
        EXPECT_EQ(run(script), 0) << script << "\n" << complained();
        const std::string tmd = left("r.tmd");
        ASSERT_EQ(tmd.size(), 12U + 28 + 8) << script;
        EXPECT_EQ(tmd.substr(40), std::string("\x06\0\0\0\x32\0\0\0", 8)) << script;
        EXPECT_NE(printed().find("   Scale       :   0.5\n"), std::string::npos) << printed();
    }

    // What `date` says of this moment there, as the ID list writes it.
    std::string dateIn(const std::string& zone) {
        EXPECT_EQ(run("export TZ='" + zone + "'; date '+%H:%M %m/%d/ %Y'"), 0);
        const std::string text = printed();
        const std::size_t blank = text.rfind(' ');
        return text.substr(0, blank) + std::to_string(std::stoi(text.substr(blank + 1)) - 1900);
    }
};

TEST_F(Settings, LocaleThatIsNone) {
    writeReals();
    for (const char* name : {"nonsense", "../../..", "C.UTF-8", "POSIX"})
        expectReals("export LC_ALL='" + std::string(name) + "'; " + realLine);
}

TEST_F(Settings, LocaleWithDecimalComma) {
    writeReals();
    const std::string use = "export LOCPATH=\"$PWD\" LC_ALL=de_DE; ";
    if (run("localedef -i de_DE -f ISO-8859-1 ./de_DE") > 1 || !fs::exists(directory + "/de_DE"))
        GTEST_SKIP() << "no locale can be made here: " << complained();
    ASSERT_EQ(run(use + "locale decimal_point"), 0);
    ASSERT_EQ(printed(), ",\n");
    expectReals(use + realLine);
}

TEST_F(Settings, TimeZoneOfTheIdList) {
    for (const char* zone : {"ABC-13:45", "XYZ+11:30", "", "UTC0", ":nonsense", "\xFF\x01"}) {
        std::set<std::string> dates = {dateIn(zone)};
        EXPECT_EQ(run("export TZ='" + std::string(zone) + "'; cd samples; vexbind scene.prj"), 0) << zone;
        dates.insert(dateIn(zone));
        const std::string list = left("samples/a.h");
        const auto has = [&](const std::string& date) {
            return list.find("Created by vexbind(v3.72) at " + date + "\n") != std::string::npos;
        };
        EXPECT_TRUE(std::any_of(dates.begin(), dates.end(), has)) << *dates.begin() << "\n" << list;
    }
}

TEST_F(Settings, TimeZoneOfAnyLength) {
    EXPECT_EQ(run("export TZ=$(printf '%5000d' 0); cd samples; vexbind scene.prj"), 0);
    EXPECT_TRUE(left("samples/a.h").ends_with("};\n"));
}

// A run takes some kilobytes of stack, however long its inputs are.
TEST_F(Settings, SmallStack) {
    std::vector<NamedFile> files = plainFiles();
    std::string comments;
    for (int i = 0; i < 50'000; ++i)
        comments += "#\n\r\x1A";
    files[1].content.insert(files[1].content.find('\n') + 1, comments);
    files.push_back({"w.arg", std::string(200'000, ' ') + "m.rsd" + std::string(200'000, '\n')});
    writeFiles(directory, files);
    ASSERT_EQ(run("vexbind -o whole.tmd m.rsd"), 0);
    EXPECT_EQ(run("ulimit -s 64 && exec vexbind -v -info -id p.prj w.arg"), 0) << complained();
    EXPECT_EQ(left("a.tmd"), left("whole.tmd"));
}

// Every scene with its memory filled with one byte and another, and with neither: by the C library's setting
// or by the sanitizer's.
TEST_F(Settings, ContentOfMemory) {
    for (const Scene& scene : scenes()) {
        const std::string place = directory + "/" + scene.format;
        fs::create_directory(place);
        std::vector<std::vector<NamedFile>> found;
        for (const char* byte : {"0", "85", "254"}) {
            writeFiles(place, scene.files);
            const std::string fill = std::string("export MALLOC_PERTURB_=") + byte +
                                     "; export ASAN_OPTIONS=\"${ASAN_OPTIONS:+$ASAN_OPTIONS:}"
                                     "max_malloc_fill_size=1048576:malloc_fill_byte=" +
                                     byte + ":max_free_fill_size=1048576:free_fill_byte=" + byte + "\"; ";
            EXPECT_EQ(run(fill + "cd " + scene.format + "; exec vexbind -v -info " + scene.line), 0)
                << complained();
            std::vector<NamedFile> files = takeNewFiles(place, scene.files);
            for (NamedFile& each : files)
                each.content = withoutDate(each.content);
            EXPECT_EQ(files.size(), scene.outputs);
            files.push_back({"standard output", printed()});
            files.push_back({"standard error", complained()});
            found.push_back(files);
        }
        EXPECT_TRUE(found[1] == found[0]) << scene.format;
        EXPECT_TRUE(found[2] == found[0]) << scene.format;
    }
}

} // namespace
