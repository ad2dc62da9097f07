// Owns TmdData.
#include "tmd/tmdux.hpp"

#include "model/tables.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/status.hpp"

#include <algorithm>
#include <array>

namespace vexbind {

TmdBuild TmdData{};

FileRecord* newTMD(const char* name, std::uint32_t count) {
    TmdData.nObj = count;
    TmdData.objtblBytes = 0;
    TmdData.objtbl = count == 0 ? nullptr : myCalloc(count, objectEntryBytes, "TmdData.objtbl");
    TmdData.primitiveBytes = 0;
    TmdData.vertexBytes = 0;
    TmdData.normalBytes = 0;

    FileRecord* file = fileOpen(name, "w");
    if (file == nullptr) {
        Exit(noOutput);
    }
    put4Bytes(tmdId, file);
    put4Bytes(0, file);
    put4Bytes(count, file);
    return file;
}

void set_objtbl(const RSD* object, ObjectEntry& entry) {
    entry = {.vert_top = 0,
             .n_vert = static_cast<std::uint32_t>(object->nvert),
             .normal_top = 0,
             .n_normal = static_cast<std::uint32_t>(object->nnorm),
             .primitive_top = 0,
             .n_primitive = static_cast<std::uint32_t>(object->npoly),
             .scale = object->scaleFactor};
    TmdData.objtblBytes += objectEntryBytes;
}

/// Two 16-bit numbers as one word of the file, the first in its low half.
static std::uint32_t wordOf(std::int16_t low, std::int16_t high) {
    return static_cast<std::uint16_t>(low) | static_cast<std::uint32_t>(static_cast<std::uint16_t>(high))
                                                 << 16;
}

/// Writes the first `count` entries of a table, some hundred at a time.
static void out_table(FileRecord* file, const ChunkedArray* table, std::int32_t count) {
    static constexpr std::size_t wordsPerVector = vectorBytes / 4;
    std::array<std::uint32_t, 512 * wordsPerVector> words{};
    std::size_t filled = 0;
    TableWalk<Coordinates> walk{.array = table};
    for (std::int32_t i = 0; i < count; ++i) {
        const auto& record = nextElement(walk);
        words[filled] = wordOf(record.x, record.y);
        words[filled + 1] = wordOf(record.z, 0);
        filled += wordsPerVector;
        if (filled == words.size() || i + 1 == count) {
            put4ByteArray(words.data(), static_cast<std::int32_t>(filled), file);
            filled = 0;
        }
    }
}

std::int32_t out_vertex(FileRecord* file, const RSD* object) {
    out_table(file, vertex, object->nvert);
    return object->nvert;
}

std::int32_t out_normal(FileRecord* file, const RSD* object) {
    out_table(file, normal, object->nnorm);
    return object->nnorm;
}

void deleteTMD(FileRecord* file) {
    myFree(TmdData.objtbl);
    TmdData.objtbl = nullptr;
    fileClose(file);
}

} // namespace vexbind
