// PRJ files: the RSD files of a project, with an ID number for each.
#pragma once

#include "utilkit/fopen.hpp"

#include <cstdint>

namespace vexbind {

/// One line of a project: an ID and an RSD name, the latter inside the reader's buffer until the next line.
struct ProjectEntry {
    std::int32_t id;
    const char* name;
};

/// Opens the project file `name`, trying its extensions, checks it and steps over its second line. A file
/// that does not open is raised as OPEN_ERR at openFailed. The caller closes the file.
FileRecord* open_project(const char* name);

/// Checks the first line: 1, or 0 after a warning for an old version. A line without the magic is raised as
/// FORM_ERR at notAProject.
std::int32_t get_mpj_id(FileRecord* file);

/// The next entry; lines that are none are skipped. False at the end of the file; a failure to read is raised
/// as RTXT_ERR at lineReadFailed.
[[nodiscard]] bool next_entry(FileRecord* file, ProjectEntry& entry);

/// Gives the objects of the list the IDs of the project `name`; how many got one.
std::uint32_t read_prj(const char* name);

} // namespace vexbind
