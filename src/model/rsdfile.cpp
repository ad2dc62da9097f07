#include "model/rsdfile.hpp"

#include "model/search.hpp"
#include "model/stamp.hpp"
#include "model/syntax.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/fname.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/scan.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vexbind {

/// The one word behind `key` at the beginning of `text`, terminated in place; null, with the text as it
/// was, when there is no such key or no word behind it.
static char* word_after(std::string_view key, char* text) {
    if (!std::string_view(text).starts_with(key)) {
        return nullptr;
    }
    return takeWord(text + key.size());
}

/// The number behind `key` at the beginning of `text`; the position behind it, or null when there is no
/// such key or number.
static char* number_after(std::string_view key, char* text, std::int32_t& number) {
    const std::string_view all(text);
    if (!all.starts_with(key)) {
        return nullptr;
    }
    Cursor cursor{.next = text + key.size(), .last = text + all.size()};
    return scanDecimal(cursor, number) ? text + (cursor.next - text) : nullptr;
}

/// A copy of the word behind `key` on the next line, which must have one.
static char* read_name(FileRecord* file, std::string_view key, Status status) {
    const Line line = getLine(file);
    const char* word = word_after(key, line.text);
    if (word == nullptr) {
        raise_syntax(status, file, line);
        return nullptr;
    }
    return strCopy(word).release();
}

/// The texture name on a line "TEX[number]=name", terminated in place; null on any other line.
static const char* texture_name(Line line) {
    std::int32_t number = 0; // textures are numbered by their order, whatever the file says
    char* rest = number_after("TEX[", line.text, number);
    return rest == nullptr ? nullptr : word_after("]=", rest);
}

/// Stores up to `count` texture names, in file order; how many there were.
static std::int32_t read_textures(FileRecord* file, std::int32_t count, char** names) {
    std::int32_t stored = 0;
    pushIgnore(EOT_ERR);
    while (stored < count) {
        const Line line = getLine(file);
        if (line.text == nullptr) {
            break;
        }
        const char* name = texture_name(line);
        if (name != nullptr) {
            names[stored] = strCopy(name).release();
            ++stored;
        }
    }
    popIgnore();
    return stored;
}

static char** new_texture_table(std::int32_t count) {
    return trackedTable<char*>(static_cast<std::uint32_t>(count), countedPointer, "NAME");
}

/// Reads the texture names: up to 20 by way of a fixed table, more straight into the object's own.
static void read_texture_list(FileRecord* file, std::int32_t count, RSD* object) {
    static constexpr std::int32_t fixedNames = 20;
    std::array<char*, fixedNames> fixed{};
    const bool isFixed = count <= fixedNames;
    if (!isFixed) {
        object->tex = new_texture_table(count);
    }
    object->ntex = read_textures(file, count, isFixed ? fixed.data() : object->tex);
    if (object->ntex != count) {
        warn(NTEX_MSG, count, getFileName0(file->name), static_cast<long>(file->line));
    }
    if (isFixed && object->ntex > 0) {
        object->tex = new_texture_table(object->ntex);
        std::copy_n(fixed.begin(), object->ntex, object->tex);
    }
}

void read_rsd_files(const char* fullPath, RSD* object) {
    FileRecord* file = fileMatchOpenOrFail(fullPath, RSD_EXT, openFailed);
    get_id(file, "RSD");
    object->ply = read_name(file, "PLY=", rsdPlySyntax);
    object->mat = read_name(file, "MAT=", rsdMatSyntax);

    Line line = getLine(file);
    const char* group = word_after("GRP=", line.text);
    if (group != nullptr) {
        object->grp = strCopy(group).release();
        line = getLine(file);
    }
    std::int32_t count = 0;
    if (number_after("NTEX=", line.text, count) == nullptr) {
        raise_syntax(rsdNtexSyntax, file, line);
    }
    read_texture_list(file, count, object);
    fileClose(file);
}

} // namespace vexbind
