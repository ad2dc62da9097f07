// Every allocation of a run fails: once, and from there on. Whoever wanted the memory, the run ends as
// documented, or comes to the right outputs without it.
#include "faults/alloc_message.hpp"
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"
#include "faults/unfinished.hpp"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <iostream>
#include <ostream>
#include <set>
#include <string_view>

#include <gtest/gtest.h>

namespace {

constexpr int mostAllocations = 3000; // no scene takes as many
constexpr int mostFaults = 5;         // after them a test makes no more runs

// What a run needs whose allocations are to fail.
struct HungryScene {
    const char* name;
    std::vector<NamedFile> (*files)();
    const char* line;
    int status;            // of the run that gets all its memory
    std::set<int> endings; // statuses that some failure must lead to, among others
};

void PrintTo(const HungryScene& scene, std::ostream* out) {
    *out << scene.name;
}

// A project of two objects, one in a directory of its own, with every kind of material, ranges, and
// textures that are found in another directory and in upper case.
std::vector<NamedFile> projectFiles() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"two.prj", "@PRJ940401\n1\n7 m.rsd\n8 d/N.rsd\n"});
    files.push_back({"TIM/B.TIM", timWithClut(20, 20)});
    files.push_back({"d/n.rsd", "@RSD940102\nPLY=n\nMAT=n\nGRP=n.grp\nNTEX=2\nTEX[0]=b.tim\nTEX[1]=../a\n"});
    files.push_back({"d/n.ply", "@PLY940102\n4 1 6\n0 0 0\n1 0 0\n0 1 0\n1 1 0\n0 0 1\n"
                                "1 0 1 2 3 0 0 0 0\n0 0 1 2 0 0 0 0 0\n0 0 1 2 0 0 0 0 0\n"
                                "1 0 1 2 3 0 0 0 0\n2 0 1 0 0 0 0 0 0\n3 0 4 4 0 0 0 0 0\n"});
    files.push_back({"d/n.mat", "@MAT940102\n5\n0-1,4 0 F C 1 2 3\n1 1 G G 1 2 3 4 5 6 7 8 9 1 2 3\n"
                                "2,5 0 F T 0 0 0 1 0 0 1 1 1\n3 4 F D 1 0 0 1 0 0 1 1 1 9 9 9\n"
                                "0-0 1 G H 1 0 0 1 0 0 1 1 1 1 2 3 4 5 6 7 8 9 1 2 3\n"});
    return files;
}

// Words from a file, an ID list, and a name in which the extension is completed: "m.sd" is "m.rsd".
std::vector<NamedFile> wordFiles() {
    std::vector<NamedFile> files = plainFiles();
    files.push_back({"w.arg", "-o out/x.tmd -id p.prj\nm.sd -s 2 -t 1 2 3 m"});
    files.push_back({"out/x", ""});
    return files;
}

// Files in upper case and in a directory of the usual name, for names that are given otherwise.
std::vector<NamedFile> otherCaseFiles() {
    const std::string model = "@RSD940102\nPLY=k.ply\nMAT=k.mat\nNTEX=0\n";
    return {{"rsd/K.RSD", model}, {"rsd/K.PLY", "@PLY940102\n0 0 0\n"}, {"rsd/K.MAT", "@MAT940101\n0\n"}};
}

// More textures than the fixed table holds (all but one are missing, which is warned about), and a line
// that does not fit into the first block of text.
std::vector<NamedFile> longFiles() {
    const std::string text = "@RSD940102\nPLY=m.ply\nMAT=m.mat\nNTEX=21\nTEX[0]=a\n";
    return plainWith("m.rsd", "#" + std::string(300'000, 'x') + "\n" + text);
}

// 25,000 polygons of 40 bytes fill a block of 1,000,000 bytes. The file ends before they do.
std::vector<NamedFile> largeTableFiles() {
    return plainWith("m.ply", "@PLY940102\n3 1 25000\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n0 0 1 2 0 0 0 0 0\n");
}

const std::vector<HungryScene> hungryScenes = {
    {"Project", projectFiles, "-v -info -o out.tmd two.prj", 0, {10, 11, 12, 13, 14, 16}},
    {"Words", wordFiles, "w.arg", 0, {10, 11, 12, 13, 14, 16}},
    {"OtherCase", otherCaseFiles, "-v k", 0, {10, 11, 12, 13, 14, 16}},
    {"Long", longFiles, "m", 0, {10, 11, 12, 13, 14, 16}},
    {"LargeTable", largeTableFiles, "m.rsd", 34, {10, 11, 12, 13, 14, 15, 16}},
};

struct TableSite {
    std::string_view name;
    long elementSize;
};

constexpr std::array<TableSite, 5> tables = {
    {{"TmdData.objtbl", 28}, {"vertex", 6}, {"normal", 6}, {"polygon", 40}, {"material", 8}}};

bool isTable(const AllocMessage& message, long elementSize) {
    return std::any_of(tables.begin(), tables.end(), [&](const TableSite& table) {
        return message.name == table.name && (elementSize == 0 || elementSize == table.elementSize);
    });
}

// The allocations without a site of their own: by their names, in the order of their factors.
bool isCommonSite(const AllocMessage& message) {
    struct CommonSite {
        std::string_view name;
        long otherFactor;
    };
    static constexpr std::array<CommonSite, 8> sites = {{{"char*", 4},
                                                         {"NAME", 4},
                                                         {"RSD*", 4},
                                                         {"RSD", 84},
                                                         {"TIM", 60},
                                                         {"UCHAR", 1},
                                                         {"void*", 4},
                                                         {"main", 0}}};
    return std::any_of(sites.begin(), sites.end(), [&](const CommonSite& site) {
        return message.name == site.name && message.otherFactor == site.otherFactor;
    });
}

// Whether the name and the factors are what the site of the status says.
bool fitsSite(const AllocMessage& message) {
    switch (message.status) {
    case 10:
        // A file that is looked for needs a stream.
        return isCommonSite(message) || (message.factor == 1 && message.otherFactor == sizeof(std::FILE));
    case 11:
        return message.name == "fileOpen" && message.factor == 1 && message.otherFactor == 20;
    case 12:
        return message.otherFactor == 1;
    case 13:
        return message.factor == static_cast<long>(message.name.size()) + 1 && message.otherFactor == 1;
    case 14:
        return isTable(message, 0) && message.factor == 1 && message.otherFactor == 28;
    case 15:
        return isTable(message, message.factor) && message.otherFactor == 1'000'000 / message.factor;
    case 16:
        return isTable(message, message.factor) && message.otherFactor < 1'000'000 / message.factor;
    default:
        return false;
    }
}

class Memory : public testing::TestWithParam<HungryScene> {
  protected:
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        files = GetParam().files();
        writeFiles(runs.directory(), files);
        const Ending ending = run({});
        ASSERT_EQ(describeEnding(ending), "exit status " + std::to_string(GetParam().status))
            << ending.errors;
        sound = takeOutputs();
    }

    Ending run(Surroundings around) {
        around.standardOutput = "printed";
        ++runCount;
        return runs.run(splitWords(GetParam().line), around);
    }

    // What is right in the directory, and the TMD in another one; they are removed.
    std::vector<NamedFile> takeOutputs() {
        std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        const std::vector<NamedFile> other = readFiles(runs.directory(), {{"out/x.tmd", ""}});
        outputs.insert(outputs.end(), other.begin(), other.end());
        std::filesystem::remove(runs.directory() + "/out/x.tmd");
        for (NamedFile& each : outputs)
            each.content = withoutDate(each.content);
        return outputs;
    }

    // What is wrong with a run whose allocations failed; empty when nothing is.
    std::string findFaultIn(const Ending& ending, const std::vector<NamedFile>& outputs) {
        const std::string fault = findFaultInEnding(ending);
        if (!fault.empty())
            return fault;
        if (ending.status == GetParam().status)
            return outputs == sound ? "" : "other outputs than with all the memory";
        const std::string unfinished = findFaultInOutputs(outputs);
        if (!unfinished.empty())
            return unfinished;
        const std::optional<AllocMessage> message = findAllocMessage(ending.errors, ending.status);
        if (message)
            return findFaultInMessage(*message);
        // Only an open that the C library lacked the memory for may look like a file that is not there.
        const bool isOpen = std::set<int>{1, 30, 100, 200}.count(ending.status) == 1;
        const bool mayBe = isOpen && (ending.failed & allocatedByCLibrary) != 0;
        return mayBe ? "" : "no message of an allocation that failed";
    }

    // Whatever a TMD has, it has from the beginning.
    std::string findFaultInOutputs(const std::vector<NamedFile>& outputs) {
        for (const NamedFile& each : outputs) {
            const auto whole = std::find_if(sound.begin(), sound.end(),
                                            [&](const NamedFile& one) { return one.name == each.name; });
            if (!each.name.ends_with(".tmd"))
                continue;
            if (whole == sound.end())
                return "a TMD that the run with all the memory does not leave";
            const std::string fault = findFaultInUnfinished(each.content, whole->content);
            if (!fault.empty())
                return each.name + ": " + fault;
        }
        return {};
    }

    std::string findFaultInMessage(const AllocMessage& message) {
        if (!fitsSite(message))
            return "no such allocation: " + describe(message);
        if (message.releases < 0 || message.allocations < message.releases || message.total < 0)
            return "figures that cannot be: " + describe(message);
        return {};
    }

    // Later allocations find more made and more released; on the way out to main things are released.
    std::string findFaultInOrder(const Ending& ending) {
        const std::optional<AllocMessage> message = findAllocMessage(ending.errors, ending.status);
        if (!message || message->name == "main")
            return {};
        const AllocMessage before = last;
        last = *message;
        const bool follows = last.allocations >= before.allocations && last.releases >= before.releases;
        return follows ? "" : "figures that cannot follow those of " + describe(before);
    }

    void failAll(bool onwards) {
        int faults = 0;
        for (int number = 1; number <= mostAllocations && faults < mostFaults; ++number) {
            const Ending ending = run({.failingAllocation = number, .failsOnwards = onwards});
            const std::vector<NamedFile> outputs = takeOutputs();
            std::string fault = findFaultIn(ending, outputs);
            if (fault.empty() && !onwards)
                fault = findFaultInOrder(ending);
            seen.insert(ending.status);
            if (!fault.empty()) {
                ++faults;
                ADD_FAILURE() << fault << "\nallocation " << number << (onwards ? " and all after it" : "")
                              << "\nended with: " << describeEnding(ending) << "\nstandard error:\n"
                              << ending.errors;
            }
            if (ending.failed == 0) {
                EXPECT_EQ(ending.status, GetParam().status);
                return;
            }
        }
        ADD_FAILURE() << "there was no end of the allocations";
    }

    ForkedRuns& runs = freshRuns();
    std::vector<NamedFile> files;
    std::vector<NamedFile> sound;
    AllocMessage last;
    std::set<int> seen;
    int runCount = 0;
};

TEST_P(Memory, EveryAllocationFails) {
    failAll(false);
    failAll(true);
    for (const int status : GetParam().endings)
        EXPECT_EQ(seen.count(status), 1U) << "no run ended with status " << status;
    RecordProperty("runs", runCount);
    std::cout << "[     RUNS ] " << runCount << " of " << GetParam().name << std::endl;
}

std::string nameOf(const testing::TestParamInfo<HungryScene>& info) {
    return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(, Memory, testing::ValuesIn(hungryScenes), nameOf);

} // namespace
