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

// Every status of a run that converts, or gives up. A status with two messages has two rows.
constexpr std::array<Documented, 40> documented = {{
    {0, ""},
    {1, " : Illegal option.\n"},
    {1, "\nBad scale factor: "},
    {1, "\nPolygon "},
    {2, "\nBad argument: "},
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
    {51, "\nCannot getcwd: \""},
    {52, "\nBad path name: \""},
    {70, "\" is not a "},
    {71, "\" has a bad version: "},
    {72, "\n\nERROR:\tBad MAT Format : "},
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

// Whether the status is documented and its message is there.
bool isExplained(const Ending& ending) {
    return std::any_of(documented.begin(), documented.end(), [&](const Documented& each) {
        return each.status == ending.status && contains(ending.errors, each.message);
    });
}

bool hasNegativeCount(const TmdFile& file) {
    constexpr std::uint32_t sign = 0x80000000U;
    return std::any_of(file.objects.begin(), file.objects.end(), [](const TmdObject& object) {
        return ((object.nVert | object.nNormal | object.nPrimitive) & sign) != 0;
    });
}

bool isAllowed(const std::string& complaint, const Allowed& allowed) {
    return contains(complaint, " index ") ||
           (allowed.oddTypes && (contains(complaint, "olen ") || contains(complaint, "ilen ")));
}

std::string findFaultInTmd(const std::string& bytes, const Allowed& allowed) {
    const TmdFile file = readTmd({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
    if (allowed.negativeCounts && hasNegativeCount(file))
        return {};
    for (const std::string& complaint : file.complaints) {
        if (!isAllowed(complaint, allowed))
            return "an unsound TMD: " + complaint;
    }
    return {};
}

// Whether the run says itself that there was nothing to convert.
bool foundNothing(const Ending& ending) {
    return contains(ending.errors, "Usage : ") || contains(ending.errors, "Cannot open: \"");
}

} // namespace

void writeFiles(const std::string& directory, const std::vector<NamedFile>& files) {
    for (const NamedFile& file : files) {
        std::ofstream out(directory + "/" + file.name, std::ios::binary | std::ios::trunc);
        out << file.content;
    }
}

std::vector<NamedFile> takeNewFiles(const std::string& directory, const std::vector<NamedFile>& files) {
    std::vector<NamedFile> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(directory)) {
        const std::string name = entry.path().filename().string();
        const bool isInput =
            std::any_of(files.begin(), files.end(), [&](const NamedFile& each) { return each.name == name; });
        if (isInput || !entry.is_regular_file())
            continue;
        std::ostringstream content;
        content << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        found.push_back({name, content.str()});
    }
    for (const NamedFile& each : found)
        fs::remove(directory + "/" + each.name);
    return found;
}

std::string findFault(const Ending& ending, const std::vector<NamedFile>& outputs, const Allowed& allowed) {
    if (ending.signal != 0)
        return "ended by a signal";
    if (contains(ending.errors, "Sanitizer") || contains(ending.errors, "runtime error: "))
        return "a sanitizer complains";
    if (!isExplained(ending))
        return "a status that is not documented, or without its message";
    if (ending.status != 0)
        return {};
    if (outputs.size() == 1)
        return findFaultInTmd(outputs.front().content, allowed);
    if (outputs.empty() && allowed.noTmd && foundNothing(ending))
        return {};
    return "a success with " + std::to_string(outputs.size()) + " new files";
}
