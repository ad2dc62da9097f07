#include "driver/phases.hpp"

#include "model/mat.hpp"
#include "model/ply.hpp"
#include "model/rsd.hpp"
#include "model/rsdprint.hpp"
#include "model/tim.hpp"
#include "settings/settings.hpp"
#include "tmd/primitive.hpp"
#include "tmd/report.hpp"
#include "tmd/tmdux.hpp"
#include "utilkit/drawline.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/reporttext.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdio>

namespace vexbind {

static ObjectEntry& entry_of(std::uint32_t object) {
    return elementAt<ObjectEntry>(static_cast<std::int32_t>(object), TmdData.objtbl);
}

static void progress(const char* text) {
    if (Verbose != 0) {
        std::fputs(text, stderr);
    }
}

void write_placeholder_table(FileRecord* file) {
    for (std::uint32_t i = 0; i < TmdData.nObj; ++i) {
        set_objtbl(ObjList.rsd[i], entry_of(i));
    }
    putMyMem(TmdData.objtbl, file);
    writePendingWords();
}

/// Reads all files of one object, from its directory.
static void read_object(RSD* object) {
    if (Verbose != 0) {
        std::fprintf(stderr, "(Reading %s...)        \r", object->ply);
    }
    enter_directory(object);
    read_ply(object->ply, object, PlySections::all);
    if (Verbose != 0) {
        std::fprintf(stderr, "\r(Reading %s...)      \r", object->mat);
    }
    std::fflush(stdout);
    read_mat(object->mat, object);
    read_tim_files(object);
}

static void print_heading(const char* name) {
    static constexpr int ruleLength = 20;
    std::fprintf(dout, " ");
    drawLine(dout, '-', ruleLength);
    std::fprintf(dout, "< %s >", name);
    drawLine(dout, '-', ruleLength);
    std::fprintf(dout, "\n");
}

void write_primitives(FileRecord* file) {
    for (std::uint32_t i = 0; i < TmdData.nObj; ++i) {
        RSD* object = ObjList.rsd[i];
        read_object(object);
        progress("(Writing PRIMITIVES...)\r");
        if (Dump >= dumpDetails) {
            print_heading(ObjList.name[i]);
        }
        const std::uint32_t bytes = set_primitive(object, TmdData.packet, file);
        writePendingWords();
        sendReport();
        ObjectEntry& entry = entry_of(i);
        entry.primitive_top = TmdData.objtblBytes + TmdData.primitiveBytes;
        entry.vert_top = TmdData.objtblBytes;
        entry.normal_top = TmdData.objtblBytes;
        TmdData.primitiveBytes += bytes;
        free_materials(object);
        freeRSD(object);
    }
}

static void check_range(const RSD* object, const char* name) {
    const std::int32_t largest = std::max({object->maxX, object->maxY, object->maxZ});
    const std::int32_t smallest = std::min({object->minX, object->minY, object->minZ});
    if (largest > INT16_MAX || smallest < INT16_MIN) {
        warn(RANGE_MSG, name);
    }
}

void write_vertices(FileRecord* file) {
    for (std::uint32_t i = 0; i < TmdData.nObj; ++i) {
        RSD* object = ObjList.rsd[i];
        progress("(Writing VERTICES...)  \r");
        enter_directory(object);
        read_ply(object->ply, object, PlySections::vertices);
        const std::int32_t count = out_vertex(file, object);
        writePendingWords();
        if (Verbose != 0) {
            std::fprintf(vout, "[%u] ", i);
            printRSD(vout, object);
        }
        ObjectEntry& entry = entry_of(i);
        entry.vert_top += TmdData.primitiveBytes + TmdData.vertexBytes;
        entry.normal_top += TmdData.primitiveBytes;
        TmdData.vertexBytes += vectorBytes * static_cast<std::uint32_t>(count);
        check_range(object, ObjList.name[i]);
    }
}

void write_normals(FileRecord* file) {
    for (std::uint32_t i = 0; i < TmdData.nObj; ++i) {
        RSD* object = ObjList.rsd[i];
        progress("(Writing NORMALS...)   \r");
        enter_directory(object);
        read_ply(object->ply, object, PlySections::normals);
        const std::int32_t count = out_normal(file, object);
        writePendingWords();
        entry_of(i).normal_top += TmdData.vertexBytes + TmdData.normalBytes;
        TmdData.normalBytes += vectorBytes * static_cast<std::uint32_t>(count);
    }
    return_to_start();
}

void finish_table(FileRecord* file) {
    if (Verbose != 0) {
        printTMD(vout, TmdData);
    }
    fileSeek(file, tmdHeaderBytes);
    putMyMem(TmdData.objtbl, file);
    // The ID list may be written over the TMD, when both have one name: it comes later.
    writePendingWords();
}

} // namespace vexbind
