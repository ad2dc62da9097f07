#include "tmd/line.hpp"

#include "model/attributes.hpp"
#include "settings/settings.hpp"
#include "tmd/dump.hpp"
#include "tmd/packets.hpp"
#include "utilkit/reporttext.hpp"

namespace vexbind {

static std::uint32_t build(PacketVariant variant, const char* title, const PolygonRecord& poly,
                           const MaterialRecord& mat, PacketArea& area) {
    const PacketRow& row = packetRows[variant];
    const ParamList colours = get_params(mat);
    const std::uint32_t size = emit_packet(row, {.colours = colours, .poly = poly}, area);
    if (Dump >= dumpDetails) {
        dump_number(dout);
        putReport(dout, title, " ", (poly.attr & translucentBit) != 0 ? "TRANS " : "", "LINE(0x",
                  Hexadecimal{area[0]}, ") =\n");
        dump_fields(dout, row, area);
    }
    return size;
}

std::uint32_t flat_line(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    return build(lineFlat, "FLAT", poly, mat, area);
}

std::uint32_t gouraud_line(const PolygonRecord& poly, const MaterialRecord& mat, PacketArea& area) {
    return build(lineGrad, "GRADATION", poly, mat, area);
}

} // namespace vexbind
