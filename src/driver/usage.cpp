#include "driver/options.hpp"

#include "settings/version.hpp"

#include <cstdio>

namespace vexbind {

void usage() {
    std::fprintf(stderr, "%s %s\n", versionText, buildDate);
    std::fputs("Usage : vexbind [options] rsd-names ...\n"
               "        vexbind [options] rsd-names [options] rsd-names ...\n"
               "        vexbind [options] arg-files ...\n"
               "        vexbind [options] prj-file\n"
               "   options:\n"
               "\t-o  file-name ... Set output file name             (default: a.tmd)\n"
               "\t-s  factor    ... Set scale factor (float)         (default: 1.0)\n"
               "\t-t  x y z     ... Set translation amounts          (default: 0 0 0)\n"
               "\t-id PRJ-file  ... Read PRJ file and create ID list (default: none)\n"
               "\t-info         ... Print details                    (default: OFF)\n"
               "\t-v            ... Set verbose mode ON              (default: OFF)\n",
               stderr);
}

} // namespace vexbind
