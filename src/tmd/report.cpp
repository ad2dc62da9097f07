#include "tmd/report.hpp"

#include "model/rsd.hpp"
#include "settings/settings.hpp"
#include "tmd/counters.hpp"
#include "tmd/current.hpp"
#include "utilkit/drawline.hpp"

namespace vexbind {

/// One section of the file: its name, padded, its count and its bytes.
static void print_section(std::FILE* stream, const char* name, std::uint32_t count, std::uint32_t bytes) {
    std::fprintf(stream, "   %s: %5u (%6ld bytes)\n", name, count, static_cast<long>(bytes));
}

void printTMD(std::FILE* stream, const TmdBuild& tmd) {
    std::fprintf(stream, "================= TMD ==================\n");
    std::fprintf(stream, "   Output TMD  : %s\n", Tmdfile);
    std::fprintf(stream, "   TMD header  :       (    12 bytes)\n");
    print_section(stream, "Objects     ", tmd.nObj, tmd.objtblBytes);
    print_section(stream, "Primitives  ", ObjList.nPrim, tmd.primitiveBytes);
    for (const CounterLine& line : counterLines) {
        if (*line.count != 0) {
            std::fprintf(stream, "%22u\t... %s%s%s%s%s\n", *line.count, line.labels[0], line.labels[1],
                         line.labels[2], line.labels[3], line.labels[4]);
        }
    }
    print_section(stream, "Vertices    ", ObjList.nVert, tmd.vertexBytes);
    print_section(stream, "Normals     ", ObjList.nNorm, tmd.normalBytes);
    drawLine(stream, '-', 40);
    const std::uint32_t total =
        tmd.objtblBytes + tmd.primitiveBytes + tmd.vertexBytes + tmd.normalBytes + tmdHeaderBytes;
    std::fprintf(stream, "\nTotal file size:        %6ld bytes\n", static_cast<long>(total));
}

std::int32_t printVert(std::FILE* stream, std::int32_t index, std::int32_t position) {
    if (index >= currentObject->nvert) {
        std::fprintf(stream, "\tVert-%d: Bad vertex: %u\n", position, static_cast<std::uint32_t>(index));
        return 0;
    }
    const auto& record = elementAt<Coordinates>(index, vertex);
    std::fprintf(stream, "\tVert-%d: (%6d, %6d, %6d) (#%u)", position, record.x, record.y, record.z,
                 static_cast<std::uint32_t>(index));
    std::fprintf(stream, "\n");
    return 1;
}

std::int32_t printNorm(std::FILE* stream, std::int32_t index, std::int32_t position) {
    if (index >= currentObject->nnorm) {
        std::fprintf(stream, "\tNorm-%d: Bad normal: %u\n", position, static_cast<std::uint32_t>(index));
        return 0;
    }
    const auto& record = elementAt<Coordinates>(index, normal);
    std::fprintf(stream, "\tNorm-%d: (%6d, %6d, %6d) (#%u)\n", position, record.x, record.y, record.z,
                 static_cast<std::uint32_t>(index));
    return 1;
}

void printColors(std::FILE* stream, const PacketArea& area, std::size_t offset, std::uint32_t count) {
    std::fprintf(stream, "\tColor%c: ", count < 2 ? ' ' : 's');
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t colour = offset + std::size_t{4} * i;
        std::fprintf(stream, "(%3u %3u %3u) ", get_byte(area, colour), get_byte(area, colour + 1),
                     get_byte(area, colour + 2));
    }
    std::fprintf(stream, "\n");
}

} // namespace vexbind
