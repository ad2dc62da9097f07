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
#include <string_view>

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

/// Gives `id` to the first object of that name that has none.
static bool assign_id(const char* name, std::int32_t id) {
    for (std::uint32_t i = 0; i < ObjList.nObj; ++i) {
        if (ObjList.rsd[i]->id < 0 && equalsIgnoringCase(ObjList.name[i], name)) {
            ObjList.rsd[i]->id = static_cast<std::int16_t>(id);
            return true;
        }
    }
    return false;
}

std::uint32_t read_prj(const char* name) {
    FileRecord* file = fileOpen(name, "r");
    if (file == nullptr) {
        return 0;
    }
    skip_head(file);
    std::uint32_t matched = 0;
    for (ProjectEntry entry{}; next_entry(file, entry);) {
        const Text object = getName(entry.name);
        matched += assign_id(object.get(), entry.id) ? 1 : 0;
    }
    fileClose(file);
    return matched;
}

} // namespace vexbind
