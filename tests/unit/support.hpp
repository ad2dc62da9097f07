// What the unit tests share: a directory of their own, the bytes of files, and guards that put back
// what a test changes in the process.
#pragma once

#include "settings/settings.hpp"
#include "utilkit/errors.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iosfwd>
#include <span>
#include <string>
#include <string_view>

// A file that can be opened and takes no byte.
inline constexpr char fullDevice[] = "/dev/full";

// A name that ends in "/" is a directory; the directories above a file are made with it.
struct InputFile {
    std::string name;
    std::string bytes;
};

// Saves the settings, the counters of the accounting and the ignore list, sets them as they are when
// the program starts (`cwd` and `_cwd` to the working directory), and restores them at its end.
struct FreshGlobals {
    FreshGlobals();
    ~FreshGlobals();
    FreshGlobals(const FreshGlobals&) = delete;
    FreshGlobals& operator=(const FreshGlobals&) = delete;

    std::int32_t savedVerbose;
    std::uint8_t savedDump;
    std::int32_t savedScaleFactor;
    double savedScale;
    std::array<std::int32_t, 3> savedOffset;
    std::array<char*, 2> savedNames;
    std::int32_t savedArcade;
    vexbind::PathBuffer savedCwd;
    vexbind::PathBuffer savedLastDirectory;
    std::array<std::int32_t, 3> savedCounters;
    std::array<vexbind::MessageCode, vexbind::ignoreCapacity> savedIgnoreList;
    std::int32_t savedIgnoreCount;
};

// Enters a new directory that holds `files`; at its end the working directory is what it was and the
// new one is removed.
struct NewDirectory {
    explicit NewDirectory(std::initializer_list<InputFile> files = {});
    ~NewDirectory();
    NewDirectory(const NewDirectory&) = delete;
    NewDirectory& operator=(const NewDirectory&) = delete;

    std::string before;
    std::string path; // absolute, as the system names it
};

// A new directory to work in, with everything global as at the program's start.
struct TestDirectory {
    explicit TestDirectory(std::initializer_list<InputFile> files = {}) : directory(files) {}

    NewDirectory directory; // entered first: it becomes the start directory
    FreshGlobals globals;

    const std::string& path() const { return directory.path; }
};

// allocTotal, allocCount and freeCount.
struct Counters {
    std::int32_t total;
    std::int32_t allocations;
    std::int32_t releases;

    bool operator==(const Counters&) const = default;
};

// As they stand.
Counters counters();

std::ostream& operator<<(std::ostream& stream, const Counters& counters);

// The working directory of the process.
std::string workingDirectory();

// Enters `directory`, outside the program's own routines.
void enter(const std::string& directory);

// Makes and enters a directory below the working directory whose absolute name has `length` characters.
void enterDirectoryOfLength(std::size_t length);

// Makes the file `name` of these bytes.
void writeFile(const std::string& name, std::string_view bytes);

// Makes files, and directories where a name asks for them.
void makeFiles(std::span<const InputFile> files);

// What the file holds; a test failure and no bytes when it cannot be read.
std::string bytesOf(const std::string& name);

// The bytes that hexadecimal digits stand for: "78 56 34 12".
std::string fromHex(std::string_view digits);

// When this process ends, its working directory goes to the standard error, behind all messages.
void showDirectoryAtEnd();

// From now on the standard output of this process goes to the file `name`.
void sendStandardOutputTo(const std::string& name);
