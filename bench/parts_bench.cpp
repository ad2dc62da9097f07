// The speed of the parts that a model passes through, each for itself. Where text is read, the bytes per
// second are those of the text; where packets and vectors are made, those of the file.
#include "model/mat.hpp"
#include "model/ply.hpp"
#include "model/rsd.hpp"
#include "model/tables.hpp"
#include "tmd/modes.hpp"
#include "tmd/packets.hpp"
#include "tmd/tmdux.hpp"
#include "utilkit/fopen.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/scan.hpp"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace vexbind {
namespace {

/// Lines of every text and elements of every table.
constexpr std::int32_t lineCount = 100'000;

// The texts.

/// The line of element `i`, without its end.
using LineMaker = std::string (*)(std::int32_t i);

std::string make_text(LineMaker make, const char* lineEnd = "\n", std::int32_t count = lineCount) {
    std::string text;
    for (std::int32_t i = 0; i < count; ++i) {
        text += make(i) + lineEnd;
    }
    return text;
}

template <class... Values> std::string print(const char* format, Values... values) {
    std::array<char, 200> buffer{};
    std::snprintf(buffer.data(), buffer.size(), format, values...);
    return buffer.data();
}

std::string vertex_line(std::int32_t i) {
    return print("%.6f %.6f %.6f", 20000.0 * std::sin(i), 15000.0 * std::cos(3.0 * i),
                 i * (20000.0 / lineCount));
}

/// Every number written in a way that few programs choose.
std::string exotic_vertex_line(std::int32_t i) {
    return print("+%.6f %a 1e-%d", 1.0 + i, 1.0 + i / 8.0, 50 + i % 50);
}

std::string normal_line(std::int32_t i) {
    return print("%.6f %.6f %.6f", std::sin(i), std::cos(i), std::sin(2.0 * i));
}

std::string polygon_line(std::int32_t i) {
    return print("0 %d %d %d 0 %d %d %d 0", i, i + 1, i + 400, i, i + 1, i + 400);
}

std::string exotic_polygon_line(std::int32_t i) {
    return print("0x0 +%d +%d %06d -0 99999999999 +%d %06d -0", i, i + 1, i + 400, i + 1, i + 400);
}

std::string material_line(std::int32_t i) {
    const char* format = i % 2 == 0 ? "%d 0 F C %d %d %d" : "%d 0 G G %d %d %d 0 255 0 0 0 255 128 128 128";
    return print(format, i, i % 256, i / 256 % 256, i % 200);
}

constexpr std::int32_t rangeCount = 4;

std::string material_range_line(std::int32_t i) {
    constexpr std::int32_t share = lineCount / rangeCount;
    return print("%d-%d 0 G C 200 100 %d", share * i, share * (i + 1) - 1, i);
}

// The frames: each times one kind of work until the measurement is good enough.

std::string scratchDirectory; // set by main, which removes it in the end

using Reader = void (*)(FileRecord* file);

/// Times `read` over a file of `text`, opened anew for every pass.
void time_reading(benchmark::State& state, const std::string& text, Reader read) {
    const std::string name = scratchDirectory + "/text";
    std::ofstream(name, std::ios::binary) << text;
    for (auto _ : state) {
        FileRecord* file = fileOpen(name.c_str(), "r");
        read(file);
        fileClose(file);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

using Scanner = bool (*)(Cursor line);

/// Times `scan` over the lines that `make` makes, in memory.
void time_scanning(benchmark::State& state, LineMaker make, Scanner scan) {
    std::vector<std::string> lines;
    std::int64_t bytes = 0;
    for (std::int32_t i = 0; i < lineCount; ++i) {
        lines.push_back(make(i));
        bytes += static_cast<std::int64_t>(lines.back().size()) + 1;
    }
    for (auto _ : state) {
        bool complete = true;
        for (const std::string& line : lines) {
            complete = scan({.next = line.data(), .last = line.data() + line.size()}) && complete;
        }
        if (!complete) {
            state.SkipWithError("a line does not scan");
            break;
        }
    }
    state.SetBytesProcessed(state.iterations() * bytes);
}

using Writer = std::int32_t (*)(FileRecord* file);

/// Times `write`, which returns the bytes that it wrote to a file without bottom.
void time_writing(benchmark::State& state, Writer write) {
    FileRecord* file = fileOpen("/dev/null", "w");
    std::int64_t bytes = 0;
    for (auto _ : state) {
        bytes += write(file);
    }
    fileClose(file);
    state.SetBytesProcessed(bytes);
}

/// Times the packets of one variant.
void time_packets(benchmark::State& state, PacketVariant variant) {
    const PolygonRecord poly{.attr = 0, .vert = {1, 2, 402, 401}, .norm = {1, 2, 402, 401}, .mat_no = 0};
    const ParamList colours{10, 20, 30, 40, 50, 60, 70, 80, 90, 100, 110, 120};
    PacketArea area{};
    put_byte(area, modeOffset, codePolygon);
    std::int64_t bytes = 0;
    for (auto _ : state) {
        bytes += emit_packet(packetRows[variant], {.colours = colours, .poly = poly}, area);
        benchmark::DoNotOptimize(area);
    }
    state.SetItemsProcessed(state.iterations());
    state.SetBytesProcessed(bytes);
}

// The work.

RSD object_of(std::int32_t elements, std::int32_t materials) {
    RSD object{};
    object.nvert = elements;
    object.nnorm = elements;
    object.npoly = elements;
    object.nmat = materials;
    object.version = currentVersion;
    return object;
}

void read_lines(FileRecord* file) {
    std::size_t bytes = 0;
    for (std::int32_t i = 0; i < lineCount; ++i) {
        bytes += getLine(file).length;
    }
    benchmark::DoNotOptimize(bytes);
}

void read_vertices(FileRecord* file) {
    RSD object = object_of(lineCount, 0);
    get_ply_vertex(file, &object);
}

void read_normals(FileRecord* file) {
    const RSD object = object_of(lineCount, 0);
    get_ply_normal(file, &object);
}

void read_polygons(FileRecord* file) {
    const RSD object = object_of(lineCount, 0);
    get_ply_polygon(file, &object);
}

/// With the release, as for every object of a run.
template <std::int32_t materials> void read_materials(FileRecord* file) {
    RSD object = object_of(lineCount, materials);
    get_material_desc(file, &object);
    free_materials(&object);
}

bool scan_vertex(Cursor line) {
    std::array<float, 3> values{};
    const bool complete = scanReals(line, values);
    benchmark::DoNotOptimize(values);
    return complete;
}

bool scan_polygon(Cursor line) {
    std::uint32_t type = 0;
    std::array<std::int32_t, 8> values{};
    const bool complete = scanHexadecimal(line, type) && scanDecimals(line, values);
    benchmark::DoNotOptimize(type);
    benchmark::DoNotOptimize(values);
    return complete;
}

template <std::size_t count> std::int32_t write_words(FileRecord* file) {
    static const std::array<std::uint32_t, count> words{};
    return put4ByteArray(words.data(), count, file);
}

std::int32_t write_vertices(FileRecord* file) {
    const RSD object = object_of(lineCount, 0);
    return out_vertex(file, &object) * static_cast<std::int32_t>(vectorBytes);
}

// The list.

void register_reading(const char* name, const std::string& text, Reader read) {
    benchmark::RegisterBenchmark(name, time_reading, text, read)->Unit(benchmark::kMillisecond);
}

void register_scanning(const char* name, LineMaker make, Scanner scan) {
    benchmark::RegisterBenchmark(name, time_scanning, make, scan)->Unit(benchmark::kMillisecond);
}

void register_all() {
    register_reading("getLine/LF", make_text(vertex_line), read_lines);
    register_reading("getLine/CR LF", make_text(vertex_line, "\r\n"), read_lines);

    register_scanning("scan vertex/plain", vertex_line, scan_vertex);
    register_scanning("scan vertex/exotic", exotic_vertex_line, scan_vertex);
    register_scanning("scan polygon/plain", polygon_line, scan_polygon);
    register_scanning("scan polygon/exotic", exotic_polygon_line, scan_polygon);

    register_reading("get_ply_vertex", make_text(vertex_line), read_vertices);
    register_reading("get_ply_normal", make_text(normal_line), read_normals);
    register_reading("get_ply_polygon", make_text(polygon_line), read_polygons);
    // The text of the ranges is a few bytes: here the time counts, which is that of as many polygons.
    register_reading("get_material_desc/each", make_text(material_line), read_materials<lineCount>);
    register_reading("get_material_desc/ranges", make_text(material_range_line, "\n", rangeCount),
                     read_materials<rangeCount>);

    benchmark::RegisterBenchmark("emit_packet/flatDark3", time_packets, flatDark3);
    benchmark::RegisterBenchmark("emit_packet/flatPlain3", time_packets, flatPlain3);
    benchmark::RegisterBenchmark("emit_packet/gouraudPlain3", time_packets, gouraudPlain3);
    benchmark::RegisterBenchmark("emit_packet/gouraudGrad4", time_packets, gouraudGrad4);

    benchmark::RegisterBenchmark("put4ByteArray/a packet", time_writing, write_words<5>);
    benchmark::RegisterBenchmark("put4ByteArray/4 KB", time_writing, write_words<1024>);
    benchmark::RegisterBenchmark("out_vertex", time_writing, write_vertices)->Unit(benchmark::kMillisecond);
}

void make_scratch_directory() {
    scratchDirectory = (std::filesystem::temp_directory_path() / "vexbind-bench-XXXXXX").string();
    if (mkdtemp(scratchDirectory.data()) == nullptr) {
        std::perror(scratchDirectory.c_str());
        std::exit(1);
    }
}

void make_tables() {
    maxVert = lineCount;
    maxNorm = lineCount;
    maxPoly = lineCount;
    maxMat = lineCount;
    create_tables();
}

} // namespace
} // namespace vexbind

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    vexbind::make_scratch_directory();
    vexbind::make_tables();
    vexbind::register_all();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    vexbind::free_tables();
    std::filesystem::remove_all(vexbind::scratchDirectory);
    return 0;
}
