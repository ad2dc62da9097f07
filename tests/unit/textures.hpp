// What the tests of textures share: the bytes of TIM files, objects that name textures, and texture tables
// of given records.
#pragma once

#include "unit/model_tables.hpp"
#include "unit/support.hpp"

#include "model/tim.hpp"
#include "utilkit/stralloc.hpp"

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// A 32-bit and a 16-bit value as they stand in a file.
inline std::string wordBytes(std::uint32_t value) {
    std::string bytes;
    for (const unsigned shift : {0U, 8U, 16U, 24U}) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

inline std::string halfBytes(std::uint32_t value) {
    return wordBytes(value).substr(0, 2);
}

// The header of a CLUT or pixel block, with a length of its own, and the data that follow.
struct TimBlock {
    std::uint32_t length = 12;
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t w = 0;
    std::uint32_t h = 0;
    std::string data = {};
};

inline std::string blockBytes(const TimBlock& block) {
    return wordBytes(block.length) + halfBytes(block.x) + halfBytes(block.y) + halfBytes(block.w) +
           halfBytes(block.h) + block.data;
}

// A TIM file without data and without CLUT.
inline std::string plainTim() {
    return wordBytes(0x10) + wordBytes(2) + blockBytes({});
}

// An object that names textures; "m.mat" is its MAT file.
struct TexturedObject {
    explicit TexturedObject(std::initializer_list<std::string_view> names) : object(plainObject()) {
        for (const std::string_view name : names) {
            list.push_back(vexbind::strCopy(std::string(name).c_str()).release());
        }
        object.ntex = static_cast<std::int32_t>(list.size());
        object.tex = list.empty() ? nullptr : list.data();
        object.mat = mat.data();
    }
    ~TexturedObject() {
        for (char* name : list) {
            vexbind::trackedFree(name);
        }
    }
    TexturedObject(const TexturedObject&) = delete;
    TexturedObject& operator=(const TexturedObject&) = delete;

    vexbind::RSD object;
    std::vector<char*> list;
    std::string mat = "m.mat";
};

// A texture table of these records, until the end of a scope.
struct TextureTable {
    TextureTable(std::initializer_list<vexbind::TextureRecord> records) {
        const NewDirectory directory({{"t.tim", plainTim()}});
        std::vector<std::string> names(records.size(), "t.tim");
        std::vector<char*> list;
        for (std::string& name : names) {
            list.push_back(name.data());
        }
        vexbind::RSD object = plainObject();
        object.ntex = static_cast<std::int32_t>(list.size());
        object.tex = list.data();
        vexbind::read_tim_files(&object);
        std::size_t i = 0;
        for (const vexbind::TextureRecord& record : records) {
            vexbind::Texinfo[i] = record;
            ++i;
        }
    }
    ~TextureTable() { vexbind::free_textures(); }
    TextureTable(const TextureTable&) = delete;
    TextureTable& operator=(const TextureTable&) = delete;
};
