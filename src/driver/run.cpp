#include "driver/run.hpp"

#include "driver/idtable.hpp"
#include "driver/options.hpp"
#include "driver/phases.hpp"
#include "driver/project.hpp"
#include "driver/words.hpp"
#include "model/rsd.hpp"
#include "model/rsdprint.hpp"
#include "model/tables.hpp"
#include "settings/settings.hpp"
#include "settings/version.hpp"
#include "tmd/tmdux.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/platform.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"

#include <cstdio>

namespace vexbind {

/// False when the start directory has no name that could be returned to.
static bool remember_start_directory() {
    const bool known = getCwd0(cwd);
    if (!known) {
        cwd[0] = '\0';
    }
    _cwd = cwd;
    return known;
}

/// Lists the objects that the words from `first` on name; their number.
static std::uint32_t list_objects(const WordList& list, std::uint32_t first) {
    std::uint32_t count = 0;
    for (std::uint32_t i = first; i < list.count;) {
        const char* word = list.words[i];
        if (word[0] == '-') {
            i += option_between(list, i);
            continue;
        }
        if (Verbose != 0) {
            std::fprintf(stderr, "(Reading %s...)             \r", word);
        }
        count += get_rsd_info(word) != nullptr ? 1 : 0;
        ++i;
    }
    return count;
}

/// Converts the listed objects into the TMD.
static void convert(std::uint32_t count) {
    return_to_start();
    FileRecord* file = newTMD(Tmdfile, count);
    create_tables();
    write_placeholder_table(file);
    write_primitives(file);
    write_vertices(file);
    write_normals(file);
    finish_table(file);
    if (Prjfile != nullptr) {
        read_prj(Prjfile);
        write_idtable(Tmdfile);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        deleteRSD(ObjList.rsd[i]);
    }
    free_tables();
    freeObjList();
    deleteTMD(file);
}

[[noreturn]] static void end_run() {
    trackedFree(Tmdfile);
    trackedFree(Prjfile);
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        raiseError(closeFailed, CLOSE_ERR, "standard output");
    }
    Exit(normalEnd);
}

void run(int argumentCount, char** arguments) {
    prepareStreams();
    std::fputs(startNotice, stderr);
    const bool canReturn = remember_start_directory();
    WordList list = collect_words(argumentCount, arguments);
    const std::uint32_t first = option(list);
    if (first >= list.count) {
        usage();
        free_words(list);
        end_run();
    }
    if (!canReturn) {
        raiseError(noWorkingDirectory, GETCWD_ERR, ".");
    }
    if (Verbose != 0) {
        std::fprintf(stderr, "vexbind %s %s\n", versionText, buildDate);
    }
    initObjList(list.count);
    if (Tmdfile == nullptr) {
        Tmdfile = strCopy("a.tmd").release();
    }
    const std::uint32_t count = list_objects(list, first);
    free_words(list);
    if (Dump != dumpOff) {
        printObjList(dout);
    }
    if (count != 0) {
        convert(count);
    } else {
        freeObjList();
    }
    end_run();
}

} // namespace vexbind
