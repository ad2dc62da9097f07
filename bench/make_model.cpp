// Writes a model of any size for the benchmarks: a bumpy ring with a vertex and a normal at every
// crossing of its grid and two triangles in every cell.
//
//   make_model [-e] [-f FORM] COUNT BASE
//
// writes BASE.rsd, BASE.ply and BASE.mat: COUNT vertices, COUNT normals and twice as many triangles,
// which take their materials from a few lines with ranges or, with -e, each from a line of its own. The
// materials themselves are the same both ways, and every FORM of the text denotes the same numbers: plain,
// columns, crlf, exponent.
#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <numbers>
#include <string>
#include <string_view>
#include <vector>

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

/// How lines are written: formats of printf, and what ends each line.
struct Form {
    std::string_view name;
    const char* vector;   // x y z
    const char* triangle; // three vertices, three normals
    const char* range;    // first and last polygon, description
    const char* each;     // polygon, description
    const char* lineEnd;
};

constexpr Form plain = {.name = "plain",
                        .vector = "%.6f %.6f %.6f",
                        .triangle = "0 %d %d %d 0 %d %d %d 0",
                        .range = "%d-%d %s",
                        .each = "%d %s",
                        .lineEnd = "\n"};

constexpr Form aligned = {.name = "columns",
                          .vector = "%14.6f %14.6f %14.6f",
                          .triangle = "0 %9d %9d %9d         0 %9d %9d %9d         0",
                          .range = "%9d-%-9d %s",
                          .each = "%9d %s",
                          .lineEnd = "\n"};

constexpr Form plain_with(std::string_view name, const char* vector, const char* lineEnd) {
    Form form = plain;
    form.name = name;
    form.vector = vector;
    form.lineEnd = lineEnd;
    return form;
}

constexpr std::array<Form, 4> forms = {
    plain,
    aligned,
    plain_with("crlf", plain.vector, "\r\n"),
    plain_with("exponent", "%.10e %.10e %.10e", plain.lineEnd),
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

void put_line(std::FILE* file, const Form& form, const char* text) {
    std::fputs(text, file);
    std::fputs(form.lineEnd, file);
}

template <class First, class... Others>
void put_line(std::FILE* file, const Form& form, const char* format, First first, Others... others) {
    std::fprintf(file, format, first, others...);
    std::fputs(form.lineEnd, file);
}

/// The nearest number of six decimals, which no form has to round.
double six_decimals(double value) {
    return std::round(value * 1e6) / 1e6;
}

/// Writes what `value` gives at every crossing, one line each.
void write_vectors(std::FILE* file, const Form& form, const Grid& grid, Vector (*value)(double u, double v)) {
    constexpr double turn = 2.0 * std::numbers::pi;
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            const Vector at = value(turn * column / grid.columns, turn * row / grid.rows);
            put_line(file, form, form.vector, six_decimals(at[0]), six_decimals(at[1]), six_decimals(at[2]));
        }
    }
}

void write_triangle(std::FILE* file, const Form& form, std::int32_t a, std::int32_t b, std::int32_t c) {
    put_line(file, form, form.triangle, a, b, c, a, b, c);
}

void write_ply(const std::string& name, const Form& form, const Grid& grid) {
    std::FILE* file = create(name);
    const std::int32_t count = grid.rows * grid.columns;
    put_line(file, form, "@PLY940102");
    put_line(file, form, "# vertices normals polygons");
    put_line(file, form, "%d %d %d", count, count, 2 * count);
    put_line(file, form, "# vertices");
    write_vectors(file, form, grid, surface);
    put_line(file, form, "# normals");
    write_vectors(file, form, grid, surface_normal);
    put_line(file, form, "# polygons");
    for (std::int32_t row = 0; row < grid.rows; ++row) {
        const std::int32_t here = row * grid.columns;
        const std::int32_t above = (row + 1) % grid.rows * grid.columns;
        for (std::int32_t column = 0; column < grid.columns; ++column) {
            const std::int32_t next = (column + 1) % grid.columns;
            write_triangle(file, form, here + column, here + next, above + column);
            write_triangle(file, form, here + next, above + next, above + column);
        }
    }
    finish(file, name);
}

void write_mat(const std::string& name, const Form& form, std::int32_t polygons, bool each) {
    constexpr auto shares = static_cast<std::int32_t>(materials.size());
    std::FILE* file = create(name);
    put_line(file, form, "@MAT940102");
    put_line(file, form, "# descriptions");
    put_line(file, form, "%d", each ? polygons : shares);
    for (std::int32_t share = 0; share < shares; ++share) {
        const auto first = static_cast<std::int32_t>(std::int64_t{polygons} * share / shares);
        const auto behind = static_cast<std::int32_t>(std::int64_t{polygons} * (share + 1) / shares);
        const char* description = materials[static_cast<std::size_t>(share)];
        if (!each) {
            put_line(file, form, form.range, first, behind - 1, description);
            continue;
        }
        for (std::int32_t i = first; i < behind; ++i) {
            put_line(file, form, form.each, i, description);
        }
    }
    finish(file, name);
}

void write_rsd(const std::string& name, const Form& form, const std::string& base) {
    const std::string tail = base.substr(base.rfind('/') + 1);
    std::FILE* file = create(name);
    put_line(file, form, "@RSD940102");
    put_line(file, form, "PLY=%s.ply", tail.c_str());
    put_line(file, form, "MAT=%s.mat", tail.c_str());
    put_line(file, form, "NTEX=0");
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

struct Order {
    bool each = false;
    const Form* form = forms.data();
    std::int32_t count = 0;
    std::string base;
};

/// What the words ask for; its count is 0 when they make no sense.
Order order_of(std::vector<std::string_view> words) {
    Order order;
    auto word = words.begin();
    if (word != words.end() && *word == "-e") {
        order.each = true;
        ++word;
    }
    if (words.end() - word > 2 && *word == "-f") {
        order.form = std::find_if(forms.begin(), forms.end(),
                                  [word](const Form& form) { return form.name == word[1]; });
        word += 2;
    }
    if (words.end() - word == 2 && order.form != forms.end()) {
        order.count = count_of(word[0]);
        order.base = word[1];
    }
    return order;
}

} // namespace

int main(int argc, char** argv) {
    const Order order = order_of({argv + 1, argv + argc});
    if (order.count == 0) {
        std::fprintf(stderr, "usage: make_model [-e] [-f plain|columns|crlf|exponent] COUNT BASE"
                             " (COUNT from 9 to 100000000)\n");
        return 2;
    }
    write_rsd(order.base + ".rsd", *order.form, order.base);
    write_ply(order.base + ".ply", *order.form, grid_of(order.count));
    write_mat(order.base + ".mat", *order.form, 2 * order.count, order.each);
    return 0;
}
