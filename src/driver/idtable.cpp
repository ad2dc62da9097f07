#include "driver/idtable.hpp"

#include "model/rsd.hpp"
#include "settings/settings.hpp"
#include "settings/version.hpp"
#include "utilkit/fname.hpp"
#include "utilkit/fopen.hpp"
#include "utilkit/mkfname.hpp"

#include <cstdio>
#include <ctime>

namespace vexbind {

/// The local time, "hour:minute month/day/year".
static void print_date(std::FILE* stream) {
    const std::time_t now = std::time(nullptr);
    const std::tm* local = std::localtime(&now);
    const std::tm date = local == nullptr ? std::tm{} : *local;
    // Kept: the year counts from 1900, three digits since 2000.
    std::fprintf(stream, "%02d:%02d %02d/%02d/%02d", date.tm_hour, date.tm_min, date.tm_mon + 1, date.tm_mday,
                 date.tm_year);
}

static void print_ids(std::FILE* stream) {
    for (std::uint32_t i = 0; i < ObjList.nObj; ++i) {
        const std::int16_t id = ObjList.rsd[i]->id;
        if (id < 0) {
            std::fprintf(stream, "\t-1,\t/* %s has no ID */\n", ObjList.name[i]);
        } else {
            std::fprintf(stream, "\t%d,\t/* %s */\n", id, ObjList.name[i]);
        }
    }
}

void write_idtable(const char* name) {
    const Text base = getName(name);
    Text header = mkFileName(base.get(), ".h", {});
    FileRecord* file = fileOpen(header.get(), "w");
    if (Verbose != 0) {
        std::fprintf(vout, "\n   ID file     : \"%s\" is created.\n", header.get());
    }
    header.reset();
    std::FILE* stream = file->stream;
    std::fprintf(stream, "/*\n *\tTMD ID List for \"%s\"\n *\n", name);
    std::fprintf(stream, " *\t\t Created by vexbind(%s) at ", ver);
    print_date(stream);
    std::fprintf(stream, "\n *\n *\t%s */\n\n", startNotice);
    std::fprintf(stream, "int %s_list[] = {\n", base.get());
    print_ids(stream);
    std::fprintf(stream, "};\n");
    fileClose(file);
}

} // namespace vexbind
