// Draws a TMD file as SVG, the pictures of docs/TUTORIAL.md.
//   draw_tmd FILE.tmd [TEXTURE.tim ...] >PICTURE.svg
// The textures go into a frame buffer, where the packets look for them by their page and CLUT codes. Polygons
// are shaded by one light and drawn from the farthest to the nearest, those seen from behind left out.
// Sprites are not drawn. All numbers are rounded alike everywhere: sines and cosines are fractions, and
// nothing is left to the mathematical library.
#include "support/tmd_reader.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <string>
#include <vector>

namespace {

struct Point {
    double x = 0;
    double y = 0;
    double z = 0;
};

struct Colour {
    double r = 0;
    double g = 0;
    double b = 0;
};

// A corner of a polygon as it is drawn: its place on the picture, z away from the viewer, and its colour,
// which is a factor where there is a texture.
struct Corner {
    Point place;
    Colour colour;
    double u = 0;
    double v = 0;
};

struct Shape {
    double depth = 0;
    std::string svg;
};

// The part of the picture that is in use.
struct Bounds {
    double left = std::numeric_limits<double>::max();
    double top = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    double bottom = std::numeric_limits<double>::lowest();
};

constexpr std::size_t bufferWidth = 1024;
constexpr std::size_t bufferHeight = 512;
using FrameBuffer = std::vector<std::uint16_t>;

// The viewer stands in front of the scene, somewhat to the right and above: x is to the right, y down.
Point view(const TmdVector& vertex) {
    const double x = vertex.x * 0.8 + vertex.z * 0.6;
    const double z = vertex.z * 0.8 - vertex.x * 0.6;
    return {.x = x, .y = (vertex.y * 12 - z * 5) / 13, .z = (z * 12 + vertex.y * 5) / 13};
}

// How bright the light makes a side with this normal: it comes from above, in front and from the right.
double brightness(const TmdVector& normal) {
    const double along = (normal.x * 2 - normal.y * 6 - normal.z * 3) / (7.0 * 4096);
    return 0.35 + 0.65 * std::clamp(along, 0.0, 1.0);
}

bool readFile(const char* name, std::vector<unsigned char>& bytes) {
    std::ifstream file(name, std::ios::binary);
    bytes.assign(std::istreambuf_iterator<char>(file), {});
    return !bytes.empty();
}

std::size_t half(const std::vector<unsigned char>& bytes, std::size_t at) {
    return at + 1 < bytes.size() ? bytes[at] | static_cast<std::size_t>(bytes[at + 1]) << 8 : 0;
}

// Puts the block of a TIM file that begins at `at` where it belongs; the offset behind it.
std::size_t load(const std::vector<unsigned char>& tim, std::size_t at, FrameBuffer& buffer) {
    const std::size_t x = half(tim, at + 4);
    const std::size_t y = half(tim, at + 6);
    const std::size_t width = half(tim, at + 8);
    for (std::size_t i = 0; i < width * half(tim, at + 10); ++i) {
        const std::size_t row = (y + i / width) % bufferHeight;
        buffer[row * bufferWidth + (x + i % width) % bufferWidth] =
            static_cast<std::uint16_t>(half(tim, at + 12 + 2 * i));
    }
    return at + half(tim, at) + (half(tim, at + 2) << 16);
}

std::size_t dot(const FrameBuffer& buffer, std::size_t x, std::size_t y) {
    return buffer[y % bufferHeight * bufferWidth + x % bufferWidth];
}

// The texel at u, v of a packet's page, through its CLUT.
Colour texel(const FrameBuffer& buffer, const TmdPacket& packet, std::size_t u, std::size_t v) {
    const std::size_t x = (packet.tsb & 0xFU) * 64;
    const std::size_t y = (packet.tsb >> 4 & 1U) * 256 + v;
    const std::size_t perDot = (packet.tsb >> 7 & 3U) == 0 ? 4 : (packet.tsb >> 7 & 3U) == 1 ? 2 : 1;
    std::size_t value = dot(buffer, x + u / perDot, y);
    if (perDot > 1) {
        const std::size_t bits = 16 / perDot;
        const std::size_t entry = value >> u % perDot * bits & ((1U << bits) - 1);
        value = dot(buffer, (packet.cba & 0x3FU) * 16 + entry, packet.cba >> 6);
    }
    constexpr double scale = 255.0 / 31;
    return {.r = static_cast<double>(value & 31) * scale,
            .g = static_cast<double>(value >> 5 & 31) * scale,
            .b = static_cast<double>(value >> 10 & 31) * scale};
}

bool isLit(const TmdPacket& packet) {
    return !packet.normals.empty();
}

bool isTextured(const TmdPacket& packet) {
    return !packet.uv.empty();
}

std::vector<Corner> cornersOf(const TmdObject& object, const TmdPacket& packet) {
    std::vector<Corner> corners;
    const auto atOrFirst = [](const auto& list, std::size_t i) { return list[i < list.size() ? i : 0]; };
    for (std::size_t i = 0; i < packet.vertices.size(); ++i) {
        Corner corner{.place = view(object.vertices.at(packet.vertices[i])), .colour = {255, 255, 255}};
        if (!packet.colours.empty()) {
            const TmdColour colour = atOrFirst(packet.colours, i);
            corner.colour = {static_cast<double>(colour[0]), static_cast<double>(colour[1]),
                             static_cast<double>(colour[2])};
        }
        // The colour of a texture counts from 128; without one and with light, the light alone counts.
        double factor = isTextured(packet) ? 1.0 / (packet.colours.empty() ? 255 : 128) : 1.0;
        factor *= isLit(packet) ? brightness(object.normals.at(atOrFirst(packet.normals, i))) : 1.0;
        corner.colour = {corner.colour.r * factor, corner.colour.g * factor, corner.colour.b * factor};
        if (isTextured(packet)) {
            corner.u = packet.uv[i].u;
            corner.v = packet.uv[i].v;
        }
        corners.push_back(corner);
    }
    return corners;
}

double mix(double a, double b, double part) {
    return a + (b - a) * part;
}

Corner mix(const Corner& a, const Corner& b, double part) {
    return {.place = {.x = mix(a.place.x, b.place.x, part),
                      .y = mix(a.place.y, b.place.y, part),
                      .z = mix(a.place.z, b.place.z, part)},
            .colour = {.r = mix(a.colour.r, b.colour.r, part),
                       .g = mix(a.colour.g, b.colour.g, part),
                       .b = mix(a.colour.b, b.colour.b, part)},
            .u = mix(a.u, b.u, part),
            .v = mix(a.v, b.v, part)};
}

// The nearest whole number, halves upwards; nothing drawn is below -100,000.
int rounded(double value) {
    return static_cast<int>(value + 100000.5) - 100000;
}

// A coordinate of the picture, in quarters of a dot.
std::string number(double value) {
    return std::to_string(rounded(value * 4));
}

std::string hexColour(const Colour& colour) {
    std::array<char, 8> text{};
    const auto byte = [](double value) {
        return static_cast<unsigned>(rounded(std::clamp(value, 0.0, 255.0)));
    };
    std::snprintf(text.data(), text.size(), "#%02x%02x%02x", byte(colour.r), byte(colour.g), byte(colour.b));
    return text.data();
}

// Draws a polygon as cells, as many to a side as `cells`, those of one colour as one path.
std::string drawCells(const TmdPacket& packet, const std::vector<Corner>& corners, int cells,
                      const FrameBuffer& buffer) {
    // A triangle is a quadrangle whose last two corners are one.
    const Corner& last = corners.size() == 4 ? corners[3] : corners[2];
    const auto at = [&](double across, double down) {
        return mix(mix(corners[0], corners[1], across), mix(corners[2], last, across), down);
    };
    const auto colourOf = [&](int column, int row) {
        const Corner centre = at((column + 0.5) / cells, (row + 0.5) / cells);
        if (!isTextured(packet)) {
            return hexColour(centre.colour);
        }
        const Colour own = texel(buffer, packet, static_cast<std::size_t>(rounded(centre.u)),
                                 static_cast<std::size_t>(rounded(centre.v)));
        return hexColour({own.r * centre.colour.r, own.g * centre.colour.g, own.b * centre.colour.b});
    };
    std::map<std::string, std::string> paths;
    for (int row = 0; row < cells; ++row) {
        for (int column = 0; column < cells;) {
            const int first = column;
            const std::string colour = colourOf(first, row);
            while (column < cells && colourOf(column, row) == colour) {
                ++column;
            }
            std::string& path = paths[colour];
            const double size = cells;
            char letter = 'M';
            for (const auto& [x, y] :
                 {std::array{first, row}, {column, row}, {column, row + 1}, {first, row + 1}}) {
                const Point place = at(x / size, y / size).place;
                path += letter + number(place.x) + " " + number(place.y);
                letter = 'L';
            }
            path += "z";
        }
    }
    std::string svg;
    if (paths.size() > 1) {
        // Between cells whose corners were rounded, what is behind would shine through.
        const std::array<Point, 4> whole = {corners[0].place, corners[1].place, last.place, corners[2].place};
        svg.append("<path fill=\"").append(colourOf(0, 0)).append("\" d=\"");
        for (const Point& place : whole) {
            svg += svg.back() == '"' ? 'M' : 'L';
            svg.append(number(place.x)).append(" ").append(number(place.y));
        }
        svg += "z\"/>\n";
    }
    for (const auto& [colour, path] : paths) {
        svg += "<path fill=\"" + colour + "\" d=\"" + path + "\"/>\n";
    }
    return svg;
}

std::string drawLine(const std::vector<Corner>& ends) {
    constexpr int pieces = 8;
    std::string svg;
    for (int i = 0; i < pieces; ++i) {
        const Point from = mix(ends[0], ends[1], i / 8.0).place;
        const Point to = mix(ends[0], ends[1], (i + 1) / 8.0).place;
        svg += "<path stroke=\"" + hexColour(mix(ends[0], ends[1], (i + 0.5) / pieces).colour) +
               "\" stroke-width=\"12\" d=\"M" + number(from.x) + " " + number(from.y) + "L" + number(to.x) +
               " " + number(to.y) + "\"/>\n";
    }
    return svg;
}

bool seenFromBehind(const std::vector<Corner>& corners) {
    const Point& a = corners[0].place;
    const Point& b = corners[1].place;
    const Point& c = corners[2].place;
    return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) <= 0;
}

std::string drawPacket(const TmdPacket& packet, const std::vector<Corner>& corners,
                       const FrameBuffer& buffer) {
    constexpr unsigned char twoSided = 2;
    constexpr unsigned char translucent = 2;
    std::string svg;
    if (corners.size() == 2) {
        svg = drawLine(corners);
    } else if ((packet.flag & twoSided) != 0 || !seenFromBehind(corners)) {
        const bool even = !isTextured(packet) && packet.colours.size() <= 1 && packet.normals.size() <= 1;
        svg = drawCells(packet, corners, even ? 1 : 16, buffer);
    }
    if (!svg.empty() && (packet.mode & translucent) != 0) {
        svg = "<g opacity=\".5\">\n" + svg + "</g>\n";
    }
    return svg;
}

void draw(const TmdFile& tmd, const FrameBuffer& buffer) {
    std::vector<Shape> shapes;
    Bounds bounds;
    for (const TmdObject& object : tmd.objects) {
        for (const TmdPacket& packet : object.packets) {
            if (packet.kind == TmdKind::sprite) {
                continue;
            }
            const std::vector<Corner> corners = cornersOf(object, packet);
            Shape shape{.depth = 0, .svg = drawPacket(packet, corners, buffer)};
            for (const Corner& corner : corners) {
                shape.depth += corner.place.z / static_cast<double>(corners.size());
                bounds.left = std::min(bounds.left, corner.place.x);
                bounds.right = std::max(bounds.right, corner.place.x);
                bounds.top = std::min(bounds.top, corner.place.y);
                bounds.bottom = std::max(bounds.bottom, corner.place.y);
            }
            shapes.push_back(shape);
        }
    }
    std::stable_sort(shapes.begin(), shapes.end(),
                     [](const Shape& one, const Shape& other) { return one.depth > other.depth; });
    constexpr double margin = 20;
    const double width = bounds.right - bounds.left + 2 * margin;
    const double height = bounds.bottom - bounds.top + 2 * margin;
    const std::string left = number(bounds.left - margin);
    const std::string top = number(bounds.top - margin);
    const std::string size = number(width) + " " + number(height);
    std::printf("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"%d\" height=\"%d\" viewBox=\"%s %s %s\" "
                "shape-rendering=\"crispEdges\">\n",
                rounded(width), rounded(height), left.c_str(), top.c_str(), size.c_str());
    std::printf("<rect x=\"%s\" y=\"%s\" width=\"100%%\" height=\"100%%\" fill=\"#e8ecf2\"/>\n", left.c_str(),
                top.c_str());
    for (const Shape& shape : shapes) {
        std::fputs(shape.svg.c_str(), stdout);
    }
    std::puts("</svg>");
}

} // namespace

int main(int argc, char** argv) {
    std::vector<unsigned char> bytes;
    if (argc < 2 || !readFile(argv[1], bytes)) {
        std::fputs("usage: draw_tmd FILE.tmd [TEXTURE.tim ...]\n", stderr);
        return 2;
    }
    const TmdFile tmd = readTmd(bytes);
    if (!tmd.complaints.empty()) {
        std::fprintf(stderr, "draw_tmd: %s: %s\n", argv[1], tmd.complaints.front().c_str());
        return 1;
    }
    FrameBuffer buffer(bufferWidth * bufferHeight);
    for (int i = 2; i < argc; ++i) {
        if (!readFile(argv[i], bytes)) {
            std::fprintf(stderr, "draw_tmd: cannot read %s\n", argv[i]);
            return 1;
        }
        constexpr std::size_t clutFlag = 8;
        const bool hasClut = (half(bytes, 4) & clutFlag) != 0;
        load(bytes, hasClut ? load(bytes, 8, buffer) : 8, buffer);
    }
    draw(tmd, buffer);
    return 0;
}
