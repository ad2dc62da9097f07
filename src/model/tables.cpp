#include "model/tables.hpp"

#include "model/params.hpp"

namespace vexbind {

ChunkedArray* vertex = nullptr;
ChunkedArray* normal = nullptr;
ChunkedArray* polygon = nullptr;
ChunkedArray* material = nullptr;

std::int32_t maxVert = 0;
std::int32_t maxNorm = 0;
std::int32_t maxPoly = 0;
std::int32_t maxMat = 0;

/// A table of `count` records; null when there are none.
template <class Record> static ChunkedArray* newTable(std::uint32_t count, const char* name) {
    return count == 0 ? nullptr : myCalloc(count, sizeof(Record), name);
}

void create_tables() {
    vertex = newTable<Coordinates>(static_cast<std::uint32_t>(maxVert), "vertex");
    normal = newTable<Coordinates>(static_cast<std::uint32_t>(maxNorm), "normal");
    polygon = newTable<PolygonRecord>(static_cast<std::uint32_t>(maxPoly), "polygon");
    material = newTable<MaterialRecord>(static_cast<std::uint32_t>(maxMat) + 1, "material");

    auto& white = elementAt<MaterialRecord>(0, material);
    white.attr = 0;
    white.shading = 'F';
    white.kind = 'C';
    static constexpr std::array<std::uint8_t, 3> whiteColour = {255, 255, 255};
    static_assert(whiteColour.size() <= sizeof(MaterialRecord::param), "reuse_pool takes longer lists away");
    set_params(white, whiteColour);
}

void free_tables() {
    myFree(vertex);
    myFree(normal);
    myFree(polygon);
    if (material != nullptr) {
        free_params(elementAt<MaterialRecord>(0, material));
    }
    myFree(material);
}

} // namespace vexbind
