#include "driver/project.hpp"

#include "model/rsd.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/fname.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/status.hpp"
#include "utilkit/strcase.hpp"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vexbind {

static constexpr std::string_view magic = "@PRJ";
static constexpr long lowestVersion = 940401;

static std::array<const char*, 2> PRJ_EXT = {"prj", "PRJ"};

std::int32_t get_mpj_id(FileRecord* file) {
    const char* text = getLine(file).text;
    if (!std::string_view(text).starts_with(magic)) {
        raiseError(notAProject, FORM_ERR, file->name, "PRJ");
        return 1;
    }
    long version = 0;
    // A line without a number has no version that could be good.
    const bool hasVersion = std::sscanf(text + magic.size(), "%ld", &version) == 1;
    if (hasVersion && version >= lowestVersion) {
        return 1;
    }
    if (!isIgnored(VER_ERR)) {
        warn(VER_ERR, file->name, text);
    }
    return 0;
}

static void skip_head(FileRecord* file) {
    get_mpj_id(file);
    getLine(file);
}

FileRecord* open_project(const char* name) {
    FileRecord* file = fileMatchOpenOrFail(name, PRJ_EXT, openFailed);
    skip_head(file);
    return file;
}

bool next_entry(FileRecord* file, ProjectEntry& entry) {
    // Kept: longer lines are read in pieces, each of which counts as a line.
    static std::array<char, 256> buffer;
    while (getPiece(file, buffer)) {
        Cursor cursor{.next = buffer.data(), .last = buffer.data() + std::strlen(buffer.data())};
        if (scanDecimal(cursor, entry.id)) {
            entry.name = takeWord(buffer.data() + (cursor.next - buffer.data()));
            if (entry.name != nullptr) {
                return true;
            }
        }
    }
    if (std::ferror(file->stream) != 0) {
        raiseError(lineReadFailed, RTXT_ERR, file->name, static_cast<long>(file->line));
    }
    return false;
}

namespace {

/// The objects of one name, in their order. Those before `next` have an ID.
struct Namesakes {
    std::vector<RSD*> objects;
    std::size_t next = 0;
};

/// By names in lower case.
using ObjectsByName = std::unordered_map<std::string, Namesakes>;

} // namespace

static std::string lower_case(const char* name) {
    std::string lower = name;
    makeLower(lower.data());
    return lower;
}

static ObjectsByName list_names() {
    ObjectsByName byName;
    for (std::uint32_t i = 0; i < ObjList.nObj; ++i) {
        byName[lower_case(ObjList.name[i])].objects.push_back(ObjList.rsd[i]);
    }
    return byName;
}

/// Gives `id` to the first object of that name that has none.
static bool assign_id(ObjectsByName& byName, const char* name, std::int32_t id) {
    const auto found = byName.find(lower_case(name));
    if (found == byName.end()) {
        return false;
    }
    Namesakes& same = found->second;
    // An ID that came out negative leaves its object without one.
    while (same.next < same.objects.size() && same.objects[same.next]->id >= 0) {
        ++same.next;
    }
    if (same.next == same.objects.size()) {
        return false;
    }
    same.objects[same.next]->id = static_cast<std::int16_t>(id);
    return true;
}

std::uint32_t read_prj(const char* name) {
    FileRecord* file = fileOpen(name, "r");
    if (file == nullptr) {
        return 0;
    }
    skip_head(file);
    ObjectsByName byName = list_names();
    std::uint32_t matched = 0;
    for (ProjectEntry entry{}; next_entry(file, entry);) {
        const Text object = getName(entry.name);
        matched += assign_id(byName, object.get(), entry.id) ? 1 : 0;
    }
    fileClose(file);
    return matched;
}

} // namespace vexbind
