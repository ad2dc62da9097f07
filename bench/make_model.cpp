// Writes a model of any size for the benchmarks: a bumpy ring with a vertex and a normal at every
// crossing of its grid and two triangles in every cell.
//
//   make_model [-e] COUNT BASE
//
// writes BASE.rsd, BASE.ply and BASE.mat: COUNT vertices, COUNT normals and twice as many triangles,
// which take their materials from a few lines with ranges or, with -e, each from a line of its own. The
// materials themselves are the same both ways.
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string>
#include <string_view>

namespace {

using Vector = std::array<double, 3>;

struct Grid {
    std::int32_t rows;    // around the tube
    std::int32_t columns; // around the ring
};

/// Each serves an equal share of the triangles, in this order.
constexpr std::array<const char*, 4> materials = {
    "0 F C 220 120 60",
    "0 G C 60 120 220",
    "0 F G 255 0 0 0 255 0 0 0 255 128 128 128",
    "6 G G 250 250 210 160 160 140 90 90 80 40 40 30",
};

[[noreturn]] void give_up(const char* what, const char* name) {
    std::fprintf(stderr, "make_model: %s %s\n", what, name);
    std::exit(1);
}

std::FILE* create(const std::string& name) {
    std::FILE* file = std::fopen(name.c_str(), "w");
    if (file == nullptr) {
        give_up("cannot create", name.c_str());
    }
    return file;
}

void finish(std::FILE* file, const std::string& name) {
    const bool failed = std::ferror(file) != 0;
    if (std::fclose(file) != 0 || failed) {
        give_up("cannot write", name.c_str());
    }
}

/// The grid with `count` crossings that comes nearest to a square.
Grid grid_of(std::int32_t count) {
    auto rows = static_cast<std::int32_t>(std::sqrt(static_cast<double>(count)));
    while (count % rows != 0) {
        --rows;
    }
    return {.rows = rows, .columns = count / rows};
}

/// The surface, within the 16-bit coordinates; `u` runs around the ring, `v` around the tube.
Vector surface(double u, double v) {
    const double tube = 5000.0 * (1.0 + 0.15 * std::sin(9.0 * u) * std::cos(7.0 * v));
    const double ring = 12000.0 + tube * std::cos(v);
    return {ring * std::cos(u), tube * std::sin(v), ring * std::sin(u)};
}

Vector difference(const Vector& one, const Vector& other) {
    return {one[0] - other[0], one[1] - other[1], one[2] - other[2]};
}

/// The unit normal of the surface, outwards.
Vector surface_normal(double u, double v) {
    constexpr double step = 1e-4;
    const Vector along = difference(surface(u + step, v), surface(u - step, v));
    const Vector across = difference(surface(u, v + step), surface(u, v - step));
    const Vector n = {across[1] * along[2] - across[2] * along[1],
                      across[2] * along[0] - across[0] * along[2],
                      across[0] * along[1] - across[1] * along[0]};
    const double length = std::hypot(n[0], n[1], n[2]);
    return {n[0] / length, n[1] / length, n[2] / length};
}

/// Writes what `value` gives at every crossing, one line each.
void write_vectors(std::FILE* file, const Grid& grid, Vector (*value)(double u, double v)) {
    constexpr double turn = 2.0 * std::numbers::pi;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            const Vector at = value(turn * column / grid.columns, turn * row / grid.rows);
            std::fprintf(file, "%.6f %.6f %.6f\n", at[0], at[1], at[2]);
        }
    }
}

void write_triangle(std::FILE* file, std::int32_t a, std::int32_t b, std::int32_t c) {
    std::fprintf(file, "0 %d %d %d 0 %d %d %d 0\n", a, b, c, a, b, c);
}

void write_ply(const std::string& name, const Grid& grid) {
    std::FILE* file = create(name);
    const std::int32_t count = grid.rows * grid.columns;
    std::fprintf(file, "@PLY940102\n# vertices normals polygons\n%d %d %d\n", count, count, 2 * count);
    std::fprintf(file, "# vertices\n");
    write_vectors(file, grid, surface);
    std::fprintf(file, "# normals\n");
    write_vectors(file, grid, surface_normal);
    std::fprintf(file, "# polygons\n");
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        const std::int32_t here = row * grid.columns;
        const std::int32_t above = (row + 1) % grid.rows * grid.columns;
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            const std::int32_t next = (column + 1) % grid.columns;
            write_triangle(file, here + column, here + next, above + column);
            write_triangle(file, here + next, above + next, above + column);
        }
    }
    finish(file, name);
}

void write_mat(const std::string& name, std::int32_t polygons, bool each) {
    constexpr auto shares = static_cast<std::int32_t>(materials.size());
    std::FILE* file = create(name);
    std::fprintf(file, "@MAT940102\n# descriptions\n%d\n", each ? polygons : shares);
    for (std::int32_t share = 0; share < shares; ++share) {
        const auto first = static_cast<std::int32_t>(std::int64_t{polygons} * share / shares);
        const auto behind = static_cast<std::int32_t>(std::int64_t{polygons} * (share + 1) / shares);
        const char* description = materials[static_cast<std::size_t>(share)];
        if (!each) {
            std::fprintf(file, "%d-%d %s\n", first, behind - 1, description);
            continue;
        }
        for (std::int32_t i = first; i < behind; ++i) {
            std::fprintf(file, "%d %s\n", i, description);
        }
    }
    finish(file, name);
}

void write_rsd(const std::string& name, const std::string& base) {
    const std::string tail = base.substr(base.rfind('/') + 1);
    std::FILE* file = create(name);
    std::fprintf(file, "@RSD940102\nPLY=%s.ply\nMAT=%s.mat\nNTEX=0\n", tail.c_str(), tail.c_str());
    finish(file, name);
}

/// A whole number in a sensible range; 0 for anything else.
std::int32_t count_of(std::string_view text) {
    std::int32_t count = 0;
    const char* end = text.data() + text.size();
    const auto [behind, error] = std::from_chars(text.data(), end, count);
    const bool good = error == std::errc() && behind == end && count >= 9 && count <= 100'000'000;
    return good ? count : 0;
}

} // namespace

int main(int argc, char** argv) {
    const bool each = argc > 1 && std::strcmp(argv[1], "-e") == 0;
    const int first = each ? 2 : 1;
    const std::int32_t count = argc == first + 2 ? count_of(argv[first]) : 0;
    if (count == 0) {
        std::fprintf(stderr, "usage: make_model [-e] COUNT BASE (COUNT from 9 to 100000000)\n");
        return 2;
    }
    const std::string base = argv[first + 1];
    write_rsd(base + ".rsd", base);
    write_ply(base + ".ply", grid_of(count));
    write_mat(base + ".mat", 2 * count, each);
    return 0;
}
