#include "model/recall.hpp"

#include "model/tables.hpp"
#include "settings/settings.hpp"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace vexbind {

/// Bytes of copies that may be held at a time. They stand for text of five times their size, and are not
/// counted: without them the run would go on just the same.
static constexpr std::size_t mostCopied = std::size_t{32} * 1024 * 1024;

std::size_t copiedGeometry = 0;
static const RSD* vertexHolder = nullptr; // the object in the table `vertex`; null: not known
static const RSD* normalHolder = nullptr;

static std::size_t table_bytes(std::int32_t count) {
    return static_cast<std::size_t>(std::max(count, 0)) * sizeof(Coordinates);
}

static std::size_t copy_bytes(const RSD* object) {
    return table_bytes(object->read.nvert) + table_bytes(object->read.nnorm);
}

/// Calls `move` with each stretch of the first `count` records of a table that lies in one piece: its
/// first byte, its offset among all bytes and its size.
template <class Move>
static void for_each_stretch(const ChunkedArray* table, std::int32_t count, const Move& move) {
    const std::size_t bytes = table_bytes(count);
    for (std::size_t offset = 0; offset < bytes;) {
        const auto first = static_cast<std::int32_t>(offset / sizeof(Coordinates));
        const std::size_t block = std::size_t{table->elementsPerBlock} * sizeof(Coordinates);
        const std::size_t size = std::min(block, bytes - offset);
        move(&elementAt<Coordinates>(first, table), offset, size);
        offset += size;
    }
}

static void copy_table(const ChunkedArray* table, std::int32_t count, std::byte* copy) {
    for_each_stretch(table, count, [copy](const Coordinates* records, std::size_t offset, std::size_t size) {
        std::memcpy(copy + offset, records, size);
    });
}

static void fill_table(const ChunkedArray* table, std::int32_t count, const std::byte* copy) {
    for_each_stretch(table, count, [copy](Coordinates* records, std::size_t offset, std::size_t size) {
        std::memcpy(records, copy + offset, size);
    });
}

void remember_geometry(RSD* object) {
    release_geometry(object);
    object->read.complete = object->nvert <= maxVert && object->nnorm <= maxNorm;
    object->read.nvert = object->nvert;
    object->read.nnorm = object->nnorm;
    object->read.scale = scale;
    vertexHolder = object;
    normalHolder = object;
    const std::size_t size = copy_bytes(object);
    if (!object->read.complete || ObjList.nObj < 2 || size > mostCopied - copiedGeometry) {
        return;
    }
    // Without memory for it the object is simply read again.
    object->read.copy = static_cast<std::byte*>(std::malloc(size));
    if (object->read.copy != nullptr) {
        copiedGeometry += size;
        copy_table(vertex, object->nvert, object->read.copy);
        copy_table(normal, object->nnorm, object->read.copy + table_bytes(object->nvert));
    }
}

void forget_vertex_table() {
    vertexHolder = nullptr;
}

void forget_normal_table() {
    normalHolder = nullptr;
}

static bool has_same_counts(const RSD* object) {
    const ReadGeometry& read = object->read;
    return read.complete && read.nvert == object->nvert && read.nnorm == object->nnorm;
}

bool recall_vertices(RSD* object) {
    const ReadGeometry& read = object->read;
    if (!has_same_counts(object) || read.scale != scale || (vertexHolder != object && read.copy == nullptr)) {
        return false;
    }
    if (vertexHolder != object) {
        fill_table(vertex, read.nvert, read.copy);
        vertexHolder = object;
    }
    // The largest are known, so that this time every coordinate is compared with the smallest.
    object->minX = std::min(object->minX, read.lowestX);
    object->minY = std::min(object->minY, read.lowestY);
    object->minZ = std::min(object->minZ, read.lowestZ);
    return true;
}

bool recall_normals(const RSD* object) {
    const ReadGeometry& read = object->read;
    if (!has_same_counts(object) || (normalHolder != object && read.copy == nullptr)) {
        return false;
    }
    if (normalHolder != object) {
        fill_table(normal, read.nnorm, read.copy + table_bytes(read.nvert));
        normalHolder = object;
    }
    return true;
}

void release_geometry(RSD* object) {
    if (object->read.copy != nullptr) {
        copiedGeometry -= copy_bytes(object);
        std::free(object->read.copy);
        object->read.copy = nullptr;
    }
}

} // namespace vexbind
