// Prints, with printf alone, the lines that -info prints for one model of make_model. The numbers stand ready
// in the model's TMD.
//
//   print_info TMD NAME
//
// NAME is that of the object.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using Bytes = std::vector<unsigned char>;

/// The packets that the materials of make_model give: the header, the colours with four bytes each, the
/// indices with two each.
struct Kind {
    std::uint32_t header;
    std::size_t colours;
    std::size_t normals; // one, in front of the three vertices, or one in front of each
    const char* heading; // of the number of the packet
    const char* colourLine;
};

constexpr std::array<Kind, 4> kinds = {{
    {.header = 0x20000304,
     .colours = 1,
     .normals = 1,
     .heading = "= [%3u] FLAT NO TEX 3-POLY(0x20000304) LIGHT: ON =\n",
     .colourLine = "\tColor : (%3u %3u %3u) \n"},
    {.header = 0x30000406,
     .colours = 1,
     .normals = 3,
     .heading = "= [%3u] GOURAUD NO TEX 3-POLY(0x30000406) LIGHT: ON =\n",
     .colourLine = "\tColor : (%3u %3u %3u)\n"},
    {.header = 0x20040506,
     .colours = 3,
     .normals = 1,
     .heading = "= [%3u] FLAT NO TEX GRADATION 3-POLY(0x20040506) LIGHT: ON =\n",
     .colourLine = "\tColors: (%3u %3u %3u) (%3u %3u %3u) (%3u %3u %3u) \n"},
    {.header = 0x32060606,
     .colours = 3,
     .normals = 3,
     .heading = "= [%3u] GOURAUD NO TEX TRANS TWO-SIDED GRADATION 3-POLY(0x32060606) LIGHT: ON =\n",
     .colourLine = "\tColors: (%3u %3u %3u) (%3u %3u %3u) (%3u %3u %3u) \n"},
}};

constexpr std::size_t headerBytes = 12; // of the file
constexpr std::size_t entryBytes = 28;  // of an object in the table
constexpr std::size_t vectorBytes = 8;

[[noreturn]] void give_up(const char* what, const char* name) {
    std::fprintf(stderr, "print_info: %s %s\n", what, name);
    std::exit(1);
}

Bytes read_whole(const char* name) {
    std::FILE* file = std::fopen(name, "rb");
    if (file == nullptr) {
        give_up("cannot open", name);
    }
    std::fseek(file, 0, SEEK_END);
    Bytes bytes(static_cast<std::size_t>(std::max(std::ftell(file), 0L)));
    std::rewind(file);
    if (bytes.size() < headerBytes + entryBytes ||
        std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) {
        give_up("cannot read", name);
    }
    std::fclose(file);
    return bytes;
}

std::uint32_t half_at(const unsigned char* at) {
    return at[0] | static_cast<std::uint32_t>(at[1]) << 8;
}

std::uint32_t word_at(const unsigned char* at) {
    return half_at(at) | half_at(at + 2) << 16;
}

int coordinate_at(const unsigned char* at) {
    return static_cast<std::int16_t>(half_at(at));
}

void print_vector(const char* format, std::size_t position, const unsigned char* table, std::uint32_t index) {
    const unsigned char* at = table + vectorBytes * index;
    std::printf(format, position, coordinate_at(at), coordinate_at(at + 2), coordinate_at(at + 4), index);
}

/// Prints one packet; the bytes that it takes in the file.
std::size_t print_packet(std::uint32_t number, const Kind& kind, const unsigned char* packet,
                         const unsigned char* vertices, const unsigned char* normals) {
    const unsigned char* indices = packet + 4 + 4 * kind.colours;
    const std::size_t step = kind.normals == 1 ? 2 : 4;
    std::printf(kind.heading, number);
    for (std::size_t i = 0; i < 3; ++i) {
        print_vector("\tVert-%zu: (%6d, %6d, %6d) (#%u)\n", i, vertices, half_at(indices + 2 + step * i));
    }
    for (std::size_t i = 0; i < kind.normals; ++i) {
        print_vector("\tNorm-%zu: (%6d, %6d, %6d) (#%u)\n", i, normals, half_at(indices + step * i));
    }
    const unsigned char* colour = packet + 4;
    if (kind.colours == 1) {
        std::printf(kind.colourLine, colour[0], colour[1], colour[2]);
    } else {
        std::printf(kind.colourLine, colour[0], colour[1], colour[2], colour[4], colour[5], colour[6],
                    colour[8], colour[9], colour[10]);
    }
    return 4 + 4 * kind.colours + 2 * (3 + kind.normals);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: print_info TMD NAME\n");
        return 2;
    }
    const Bytes tmd = read_whole(argv[1]);
    const unsigned char* table = tmd.data() + headerBytes;
    const unsigned char* vertices = table + word_at(table);
    const unsigned char* normals = table + word_at(table + 8);
    const unsigned char* packet = table + word_at(table + 16);
    const std::uint32_t count = word_at(table + 20);
    std::printf("\tInput RSDs      : %u object(s)\n", word_at(tmd.data() + 8));
    std::printf("\t\tRSD[%2d] = \"%s\"\n", 0, argv[2]);
    std::printf("\tTotal primitives: %5u\n", count);
    std::printf("\tTotal vertices  : %5u\n", word_at(table + 4));
    std::printf("\tTotal normals   : %5u\n", word_at(table + 12));
    std::printf(" --------------------< %s >--------------------\n", argv[2]);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t header = word_at(packet);
        const auto* kind = std::find_if(kinds.begin(), kinds.end(),
                                        [header](const Kind& each) { return each.header == header; });
        if (kind == kinds.end()) {
            give_up("unknown packet in", argv[1]);
        }
        packet += print_packet(i, *kind, packet, vertices, normals);
    }
    return std::fflush(stdout) == 0 ? 0 : 1;
}
