#include "unit/support.hpp"

#include "utilkit/tracked.hpp"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

#include <unistd.h>

#include <gtest/gtest.h>

using namespace vexbind;

FreshGlobals::FreshGlobals()
    : savedVerbose(Verbose), savedDump(Dump), savedScaleFactor(scaleFactor),
      savedScale(scale), savedOffset{offsetX, offsetY, offsetZ}, savedNames{Tmdfile, Prjfile},
      savedArcade(arcade), savedCwd(cwd),
      savedLastDirectory(_cwd), savedCounters{allocTotal, allocCount, freeCount},
      savedIgnoreList(_ignoreErr_), savedIgnoreCount(_igno_) {
    Verbose = 0;
    Dump = dumpOff;
    scaleFactor = 0;
    scale = 0.0;
    offsetX = offsetY = offsetZ = 0;
    Tmdfile = Prjfile = nullptr;
    arcade = homeLayout;
    cwd = {};
    workingDirectory().copy(cwd.data(), cwd.size() - 1);
    _cwd = cwd;
    allocTotal = allocCount = freeCount = 0;
    _ignoreErr_ = {};
    _igno_ = 0;
}

FreshGlobals::~FreshGlobals() {
    Verbose = savedVerbose;
    Dump = savedDump;
    scaleFactor = savedScaleFactor;
    scale = savedScale;
    offsetX = savedOffset[0];
    offsetY = savedOffset[1];
    offsetZ = savedOffset[2];
    Tmdfile = savedNames[0];
    Prjfile = savedNames[1];
    arcade = savedArcade;
    cwd = savedCwd;
    _cwd = savedLastDirectory;
    allocTotal = savedCounters[0];
    allocCount = savedCounters[1];
    freeCount = savedCounters[2];
    _ignoreErr_ = savedIgnoreList;
    _igno_ = savedIgnoreCount;
}

NewDirectory::NewDirectory(std::initializer_list<InputFile> files) : before(workingDirectory()) {
    std::string name = std::filesystem::temp_directory_path() / "unit-XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        std::perror(name.c_str());
        std::abort();
    }
    enter(name);
    path = workingDirectory();
    makeFiles(files);
}

NewDirectory::~NewDirectory() {
    enter(before);
    std::error_code error;
    std::filesystem::remove_all(path, error);
    EXPECT_FALSE(error) << path << ": " << error.message();
}

Counters counters() {
    return {.total = allocTotal, .allocations = allocCount, .releases = freeCount};
}

std::ostream& operator<<(std::ostream& stream, const Counters& counters) {
    return stream << "total " << counters.total << ", allocations " << counters.allocations << ", releases "
                  << counters.releases;
}

std::string workingDirectory() {
    return std::filesystem::current_path();
}

void enter(const std::string& directory) {
    std::filesystem::current_path(directory);
}

void enterDirectoryOfLength(std::size_t length) {
    ASSERT_GT(length, workingDirectory().size() + 1);
    const std::string name(length - workingDirectory().size() - 1, 'd');
    std::filesystem::create_directory(name);
    enter(name);
    ASSERT_EQ(workingDirectory().size(), length);
}

void writeFile(const std::string& name, std::string_view bytes) {
    std::ofstream stream(name, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    ASSERT_TRUE(stream.good()) << name;
}

void makeFiles(std::span<const InputFile> files) {
    for (const InputFile& file : files) {
        const std::filesystem::path inside = file.name;
        if (inside.has_parent_path()) {
            std::filesystem::create_directories(inside.parent_path());
        }
        if (inside.has_filename()) {
            writeFile(file.name, file.bytes);
        }
    }
}

std::string bytesOf(const std::string& name) {
    std::ifstream stream(name, std::ios::binary);
    EXPECT_TRUE(stream.is_open()) << name;
    return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

std::string fromHex(std::string_view digits) {
    std::string bytes;
    std::string pair;
    for (const char digit : digits) {
        if (std::isxdigit(static_cast<unsigned char>(digit)) != 0) {
            pair += digit;
        }
        if (pair.size() == 2) {
            bytes += static_cast<char>(std::stoi(pair, nullptr, 16));
            pair.clear();
        }
    }
    EXPECT_TRUE(pair.empty()) << digits;
    return bytes;
}

void showDirectoryAtEnd() {
    std::atexit([] { std::fputs(workingDirectory().c_str(), stderr); });
}

void sendStandardOutputTo(const std::string& name) {
    if (std::freopen(name.c_str(), "w", stdout) == nullptr) {
        std::perror(name.c_str());
        std::abort();
    }
}
