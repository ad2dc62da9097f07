#include "unit/model/general_road.hpp"

#include "unit/model_tables.hpp"

#include "model/mat.hpp"
#include "model/params.hpp"
#include "model/syntax.hpp"
#include "settings/settings.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/scan.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

using namespace vexbind;

namespace {

// The next line; none, and the failure, at the end of the file.
Line next_line(FileRecord* file, Failure& failure) {
    pushIgnore(EOT_ERR);
    const Line line = getLine(file);
    popIgnore();
    if (line.text == nullptr) {
        failure = {34, "\nUnexpected EOF: \"" + std::string(file->name) +
                           "\" line=" + std::to_string(file->line) + "\n"};
    }
    return line;
}

Failure syntax_failure(int status, const FileRecord* file, Line line) {
    return {status, "\nSyntax Error: " + std::string(file->fullPath) + " line=" + std::to_string(file->line) +
                        " \"" + line.text + "\"\n"};
}

Failure read_reals(FileRecord* file, int status, std::array<float, 3>& values) {
    Failure failure;
    const Line line = next_line(file, failure);
    if (line.text != nullptr && !scanReals(begin_of(line), values)) {
        failure = syntax_failure(status, file, line);
    }
    return failure;
}

// trunc((half + c * factor) + translation); the half takes the sign of c.
std::int32_t whole(float c, double factor, std::int32_t translation) {
    const double half = c > 0 ? 0.5 : -0.5;
    return truncateToInt((half + static_cast<double>(c) * factor) + translation);
}

Coordinates cut(std::int32_t x, std::int32_t y, std::int32_t z) {
    return {.x = static_cast<std::int16_t>(x),
            .y = static_cast<std::int16_t>(y),
            .z = static_cast<std::int16_t>(z)};
}

void widen(std::int32_t value, std::int32_t& largest, std::int32_t& smallest) {
    if (value > largest) {
        largest = value;
    } else if (value < smallest) {
        smallest = value;
    }
}

Failure read_vertices(FileRecord* file, RSD& object) {
    std::array<float, 3> c{};
    for (std::int32_t i = 0; i < object.nvert; ++i) {
        const Failure failure = read_reals(file, 95, c);
        if (failure.status != 0) {
            return failure;
        }
        const std::int32_t x = whole(c[0], scale, object.offsetX);
        const std::int32_t y = whole(c[1], scale, object.offsetY);
        const std::int32_t z = whole(c[2], scale, object.offsetZ);
        vertexAt(i) = cut(x, y, z);
        widen(x, object.maxX, object.minX);
        widen(y, object.maxY, object.minY);
        widen(z, object.maxZ, object.minZ);
    }
    return {};
}

Failure read_normals(FileRecord* file, RSD& object) {
    std::array<float, 3> c{};
    for (std::int32_t i = 0; i < object.nnorm; ++i) {
        const Failure failure = read_reals(file, 96, c);
        if (failure.status != 0) {
            return failure;
        }
        normalAt(i) = cut(whole(c[0], 4096, 0), whole(c[1], 4096, 0), whole(c[2], 4096, 0));
    }
    return {};
}

Failure read_polygons(FileRecord* file, RSD& object) {
    const std::size_t second = object.version == oldVersion ? 2 : 1;
    const std::size_t third = 3 - second;
    std::uint32_t type = 0;
    std::array<std::int32_t, 8> n{};
    for (std::int32_t i = 0; i < object.npoly; ++i) {
        Failure failure;
        const Line line = next_line(file, failure);
        if (line.text == nullptr) {
            return failure;
        }
        Cursor cursor = begin_of(line);
        if (!scanHexadecimal(cursor, type) || !scanDecimals(cursor, n)) {
            return syntax_failure(97, file, line);
        }
        polygonAt(i) = {.attr = (type & 7) << 24 | (polygonAt(i).attr & 0x00010000),
                        .vert = {n[0], n[second], n[third], n[3]},
                        .norm = {n[4], n[4 + second], n[4 + third], n[7]},
                        .mat_no = -1};
    }
    return {};
}

// Exchanges what vertex 1 has, `count` numbers from `first` on, with what vertex 2 has behind it.
void exchange(std::vector<std::int32_t>& numbers, std::ptrdiff_t first, std::ptrdiff_t count) {
    const auto begin = numbers.begin() + first;
    std::swap_ranges(begin, begin + count, begin + count);
}

// From the old order to the current one.
void exchange_corners(std::vector<std::int32_t>& numbers, char kind) {
    switch (kind) {
    case 'G':
        exchange(numbers, 3, 3);
        break;
    case 'H':
        exchange(numbers, 12, 3);
        [[fallthrough]];
    case 'T':
    case 'D':
        exchange(numbers, 3, 2);
        break;
    default:
        break;
    }
}

struct Kind {
    char letter;
    int tooFew; // the status
    std::size_t count;
};

constexpr std::array<Kind, 5> kinds = {
    {{'G', 100, 12}, {'C', 101, 3}, {'T', 102, 9}, {'D', 103, 12}, {'H', 104, 21}}};

// As "%s %x %c %c %c", with the cursor before the last of them.
bool scan_leading_fields(Line line, std::string& list, MaterialRecord& record, Cursor& cursor) {
    const std::string_view text = line.text;
    const std::size_t first = std::min(text.find_first_not_of(" \t\v\f"), text.size());
    const std::size_t last = std::min(text.find_first_of(" \t\v\f", first), text.size());
    list = text.substr(first, last - first);
    cursor = {.next = line.text + last, .last = line.text + line.length};
    std::uint32_t attr = 0;
    if (!scanHexadecimal(cursor, attr) || !scanLetter(cursor, record.shading) ||
        !scanLetter(cursor, record.kind)) {
        return false;
    }
    record.attr = static_cast<std::uint8_t>(attr);
    Cursor ahead = cursor;
    char check = 0;
    return !list.empty() && scanLetter(ahead, check);
}

Failure read_materials(FileRecord* file, RSD& object) {
    std::vector<std::uint8_t> carried;
    for (std::int32_t i = 0; i < object.nmat; ++i) {
        Failure failure;
        const Line line = next_line(file, failure);
        if (line.text == nullptr) {
            return failure;
        }
        MaterialRecord& record = materialAt(i + 1);
        std::string list;
        Cursor cursor{};
        if (!scan_leading_fields(line, list, record, cursor)) {
            return syntax_failure(99, file, line);
        }
        get_material_item(list.c_str(), i);
        const auto* kind = std::find_if(kinds.begin(), kinds.end(),
                                        [&](const Kind& each) { return each.letter == record.kind; });
        if (kind != kinds.end()) {
            std::vector<std::int32_t> numbers(kind->count);
            if (!scanDecimals(cursor, numbers)) {
                return syntax_failure(kind->tooFew, file, line);
            }
            if (object.version == oldVersion) {
                exchange_corners(numbers, kind->letter);
            }
            if (kind->letter == 'T') {
                numbers.insert(numbers.end(), 3, 128);
            }
            carried.clear();
            for (const std::int32_t number : numbers) {
                carried.push_back(static_cast<std::uint8_t>(number));
            }
        }
        set_params(record, carried);
    }
    return {};
}

} // namespace

Failure read_by_general_road(FileRecord* file, RSD& object) {
    Failure failure;
    for (const auto& read : {read_vertices, read_normals, read_polygons, read_materials}) {
        if (failure.status == 0) {
            failure = read(file, object);
        }
    }
    return failure;
}
