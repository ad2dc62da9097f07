// Files whose names have any byte that a name can have: all but the null byte and "/".
#include "faults/forked_run.hpp"
#include "faults/judge.hpp"
#include "faults/scenes.hpp"

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

namespace {

// What ends a word of a text, what ends its line, and what is dropped from it.
constexpr std::string_view blanks = " \t\v\f\r\n";
constexpr std::string_view lineEnds = "\r\n";
constexpr char endOfFileMark = '\x1A';

bool has(std::string_view text, char byte) {
    return text.find(byte) != std::string_view::npos;
}

bool isInWords(char byte) {
    return !has(blanks, byte) && byte != endOfFileMark;
}

// Every byte that a name can have.
std::string nameBytes() {
    std::string bytes;
    for (int value = 1; value < 256; ++value) {
        if (value != '/')
            bytes += static_cast<char>(value);
    }
    return bytes;
}

// A name that has each of `bytes` once and ends with the extension; one byte short of the longest name.
std::string nameOfAll(std::string bytes, const std::string& extension) {
    std::erase_if(bytes, [&](char byte) { return has(extension, byte); });
    return bytes + extension;
}

std::string rsdNaming(const std::string& ply, const std::string& texture) {
    return "@RSD940102\nPLY=" + ply + "\nMAT=m.mat\nNTEX=1\nTEX[0]=" + texture + "\n";
}

class OddNames : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_NE(runs.directory(), "");
        for (const NamedFile& file : plainFiles())
            sound[file.name] = file.content;
    }

    // A run of `word` with one more file, which is there for this run only.
    void expect(const std::string& word, const NamedFile& added, const std::string& rsd, int status) {
        std::vector<NamedFile> files = plainWith("m.rsd", rsd);
        files.push_back(added);
        writeFiles(runs.directory(), files);
        const Ending ending = runs.runInTurn({word});
        const std::vector<NamedFile> outputs = takeNewFiles(runs.directory(), files);
        files.pop_back();
        static_cast<void>(takeNewFiles(runs.directory(), files));
        const std::string name = testing::PrintToString(added.name);
        EXPECT_EQ(describeEnding(ending), "exit status " + std::to_string(status)) << name;
        EXPECT_EQ(findFault(ending, outputs, {}), "") << name << "\n" << ending.errors;
    }

    void expectRsd(const std::string& name) { expect(name, {name, sound["m.rsd"]}, sound["m.rsd"], 0); }

    void expectPly(const std::string& name, int status) {
        expect("m.rsd", {name, sound["m.ply"]}, rsdNaming(name, "a.tim"), status);
    }

    void expectTexture(const std::string& name, int status) {
        expect("m.rsd", {name, sound["a.tim"]}, rsdNaming("m.ply", name), status);
    }

    ForkedRuns& runs = freshRuns();
    std::map<std::string, std::string> sound;
};

TEST_F(OddNames, Rsd) {
    for (const char byte : nameBytes())
        expectRsd(std::string("x") + byte + "y.rsd");
    expectRsd(nameOfAll(nameBytes(), ".rsd"));
}

// Only the part before a blank is the name.
TEST_F(OddNames, Ply) {
    for (const char byte : nameBytes()) {
        const int status = has(lineEnds, byte) ? 91 : 100;
        expectPly(std::string("x") + byte + "y.ply", isInWords(byte) ? 0 : status);
    }
    std::string bytes = nameBytes();
    expectPly(nameOfAll(bytes, ".ply"), 91);
    std::erase_if(bytes, [](char byte) { return !isInWords(byte); });
    expectPly(nameOfAll(bytes, ".ply"), 0);
}

TEST_F(OddNames, Texture) {
    for (const char byte : nameBytes())
        expectTexture(std::string("x") + byte + "y.tim", isInWords(byte) ? 0 : 1);
    std::string bytes = nameBytes();
    expectTexture(nameOfAll(bytes, ".tim"), 1);
    std::erase_if(bytes, [](char byte) { return !isInWords(byte); });
    expectTexture(nameOfAll(bytes, ".tim"), 0);
}

} // namespace
