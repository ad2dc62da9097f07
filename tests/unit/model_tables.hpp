// What the tests of the model and the TMD share: model tables of a size of their own, an object for them,
// and packet bytes in file order.
#pragma once

#include "model/rsd.hpp"
#include "model/tables.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

// How many records a test wants; `materials` without the default one.
struct TableSizes {
    std::int32_t vertices = 0;
    std::int32_t normals = 0;
    std::int32_t polygons = 0;
    std::int32_t materials = 0;
};

// The model tables, all records zero but the default material; released at the end.
struct ModelTables {
    explicit ModelTables(TableSizes sizes) {
        vexbind::maxVert = sizes.vertices;
        vexbind::maxNorm = sizes.normals;
        vexbind::maxPoly = sizes.polygons;
        vexbind::maxMat = sizes.materials;
        vexbind::create_tables();
    }
    ~ModelTables() {
        vexbind::free_tables();
        vexbind::vertex = vexbind::normal = vexbind::polygon = vexbind::material = nullptr;
        vexbind::maxVert = vexbind::maxNorm = vexbind::maxPoly = vexbind::maxMat = 0;
    }
    ModelTables(const ModelTables&) = delete;
    ModelTables& operator=(const ModelTables&) = delete;
};

inline vexbind::Coordinates& vertexAt(std::int32_t index) {
    return vexbind::elementAt<vexbind::Coordinates>(index, vexbind::vertex);
}

inline vexbind::Coordinates& normalAt(std::int32_t index) {
    return vexbind::elementAt<vexbind::Coordinates>(index, vexbind::normal);
}

inline vexbind::PolygonRecord& polygonAt(std::int32_t index) {
    return vexbind::elementAt<vexbind::PolygonRecord>(index, vexbind::polygon);
}

inline vexbind::MaterialRecord& materialAt(std::int32_t index) {
    return vexbind::elementAt<vexbind::MaterialRecord>(index, vexbind::material);
}

// A vertex or a normal as a list that compares and prints.
inline std::array<int, 3> xyz(const vexbind::Coordinates& record) {
    return {record.x, record.y, record.z};
}

// An object as newRSD makes it, without names.
inline vexbind::RSD plainObject() {
    vexbind::RSD object{};
    object.version = vexbind::currentVersion;
    object.id = vexbind::noId;
    object.maxX = object.maxY = object.maxZ = -65536;
    object.minX = object.minY = object.minZ = 65535;
    return object;
}
