#include "faults/judge.hpp"

#include "support/tmd_reader.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace fs = std::filesystem;

namespace {

struct Documented {
    int status;
    std::string_view message; // a piece of what stands on the standard error then
};

// Every status of a run that converts, or gives up. A status with several messages has a row for each.
constexpr std::array<Documented, 50> documented = {{
    {0, ""},
    {1, " : Illegal option.\n"},
    {1, "\nBad scale factor: "},
    {1, "\nCannot Open: \""},
    {1, "\" is not a TIM file\n"},
    {2, "\nBad argument: "},
    {3, "\" is not a PRJ file\n"},
    {10, "\nAlloc Error: "},
    {11, "\nAlloc Error: \"fileOpen\""},
    {12, "\nAlloc Error: "},
    {13, "\nAlloc Error: "},
    {14, "\nAlloc Error: "},
    {15, "\nAlloc Error: "},
    {16, "\nAlloc Error: "},
    {17, "\nBad index: "},
    {30, "\nCannot open: \""},
    {31, "\nFail to Close File : "},
    {32, "\nSeek error \""},
    {33, "\nFail to read: \""},
    {34, "\nUnexpected EOF: \""},
    {36, "\nFail to write: \""},
    {38, "\nFail to read: \""},
    {39, "\nUnexpected EOF: \""},
    {40, "\nFail to read: \""},
    {41, "\nUnexpected EOF: \""},
    {51, "\nCannot getcwd: \""},
    {52, "\nBad path name: \""},
    {70, "\" is not a "},
    {71, "\" has a bad version: "},
    {72, "\n\nERROR:\tBad MAT Format : "},
    {73, "\nUnexpected EOF: \""},
    {74, "\nFail to read: \""},
    {75, "\nUnexpected EOF: \""},
    {76, "\nFail to read: \""},
    {90, "\nSyntax Error: "},
    {91, "\nSyntax Error: "},
    {92, "\nSyntax Error: "},
    {94, "\nSyntax Error: "},
    {95, "\nSyntax Error: "},
    {96, "\nSyntax Error: "},
    {97, "\nSyntax Error: "},
    {98, "\nSyntax Error: "},
    {99, "\nSyntax Error: "},
    {100, "\nSyntax Error: "},
    {100, "\nCannot open: \""},
    {101, "\nSyntax Error: "},
    {102, "\nSyntax Error: "},
    {103, "\nSyntax Error: "},
    {104, "\nSyntax Error: "},
    {200, "\nCannot open: \""},
}};

bool contains(std::string_view text, std::string_view piece) {
    return text.find(piece) != std::string_view::npos;
}

bool hasNegativeCount(const TmdFile& file) {
    constexpr std::uint32_t sign = 0x80000000U;
    return std::any_of(file.objects.begin(), file.objects.end(), [](const TmdObject& object) {
        return ((object.nVert | object.nNormal | object.nPrimitive) & sign) != 0;
    });
}

bool isAllowed(const std::string& complaint, const Allowed& allowed) {
    return contains(complaint, " index ") ||
           (allowed.oddTypes && (contains(complaint, "olen ") || contains(complaint, "ilen "))) ||
           (allowed.largeSprites && contains(complaint, " is written as one of free size"));
}

std::string findFaultInTmd(const TmdFile& file, const Allowed& allowed) {
    if (allowed.negativeCounts && hasNegativeCount(file))
        return {};
    for (const std::string& complaint : file.complaints) {
        if (!isAllowed(complaint, allowed))
            return "an unsound TMD: " + complaint;
    }
    return {};
}

// By its beginning: its name can be any, as that of the TMD can.
bool isIdList(const NamedFile& file) {
    return file.content.starts_with("/*\n *\tTMD ID List for \"");
}

// A list has one line for each object, whatever the names in it.
std::string findFaultInIdList(const std::string& list, std::size_t objects) {
    if (!contains(list, " */\n\nint ") || !list.ends_with("};\n"))
        return "an unsound ID list";
    std::size_t lines = 0;
    for (std::size_t at = list.find("\n\t"); at != std::string::npos; at = list.find("\n\t", at + 1))
        ++lines;
    if (lines == objects)
        return {};
    return "an ID list of " + std::to_string(lines) + " lines for " + std::to_string(objects) + " objects";
}

// What a success may leave: a TMD, and perhaps its ID list.
std::string findFaultInOutputs(std::vector<NamedFile> outputs, const Allowed& allowed) {
    const auto lists = std::stable_partition(outputs.begin(), outputs.end(),
                                             [](const NamedFile& each) { return !isIdList(each); });
    if (lists - outputs.begin() != 1 || outputs.end() - lists > 1)
        return "a success with " + std::to_string(outputs.size()) + " new files";
    const std::string& bytes = outputs.front().content;
    const TmdFile tmd = readTmd({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
    const std::string fault = findFaultInTmd(tmd, allowed);
    if (!fault.empty() || lists == outputs.end())
        return fault;
    return findFaultInIdList(lists->content, tmd.objects.size());
}

// Whether the run says itself that there was nothing to convert.
bool foundNothing(const Ending& ending) {
    return contains(ending.errors, "Usage : ") || contains(ending.errors, "Cannot open: \"");
}

} // namespace

void writeFiles(const std::string& directory, const std::vector<NamedFile>& files) {
    for (const NamedFile& file : files) {
        const std::size_t slash = file.name.rfind('/');
        if (slash != std::string::npos)
            fs::create_directories(directory + "/" + file.name.substr(0, slash));
        std::ofstream out(directory + "/" + file.name, std::ios::binary | std::ios::trunc);
        out << file.content;
    }
}

static std::string readFile(const fs::path& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

std::vector<NamedFile> readFiles(const std::string& directory, const std::vector<NamedFile>& files) {
    std::vector<NamedFile> found;
    for (const NamedFile& file : files)
        found.push_back({file.name, readFile(directory + "/" + file.name)});
    return found;
}

std::vector<NamedFile> takeNewFiles(const std::string& directory, const std::vector<NamedFile>& files) {
    std::vector<NamedFile> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        const bool isInput =
            std::any_of(files.begin(), files.end(), [&](const NamedFile& each) { return each.name == name; });
        if (isInput || !entry.is_regular_file())
            continue;
        found.push_back({name, readFile(entry.path())});
    }
    for (const NamedFile& each : found)
        fs::remove(directory + "/" + each.name);
    std::sort(found.begin(), found.end(),
              [](const NamedFile& one, const NamedFile& other) { return one.name < other.name; });
    return found;
}

std::string withoutDate(const std::string& list) {
    constexpr std::string_view before = " *\t\t Created by vexbind(v3.72) at ";
    const std::size_t at = list.find(before);
    if (at == std::string::npos)
        return list;
    const std::size_t date = at + before.size();
    return list.substr(0, date) + list.substr(std::min(list.find('\n', date), list.size()));
}

bool isExplained(const Ending& ending) {
    return std::any_of(documented.begin(), documented.end(), [&](const Documented& each) {
        return each.status == ending.status && contains(ending.errors, each.message);
    });
}

std::string findFaultInSuccess(const Ending& ending, const std::vector<NamedFile>& outputs,
                               const Allowed& allowed) {
    if (outputs.empty() && allowed.noTmd && foundNothing(ending))
        return {};
    return findFaultInOutputs(outputs, allowed);
}

std::string findFaultInEnding(const Ending& ending) {
    if (ending.signal != 0)
        return "ended by a signal";
    if (contains(ending.errors, "Sanitizer") || contains(ending.errors, "runtime error: "))
        return "a sanitizer complains";
    if (!isExplained(ending))
        return "a status that is not documented, or without its message";
    return {};
}

std::string findFault(const Ending& ending, const std::vector<NamedFile>& outputs, const Allowed& allowed) {
    const std::string fault = findFaultInEnding(ending);
    if (!fault.empty() || ending.status != 0)
        return fault;
    return findFaultInSuccess(ending, outputs, allowed);
}
