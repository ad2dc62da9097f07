// What a run must come to, whatever its input.
#pragma once

#include <string>
#include <vector>

#include "faults/forked_run.hpp"

struct NamedFile {
    std::string name; // may lead into a directory
    std::string content;
};

// What input files can say that a sound TMD cannot hold, though it is written as told.
struct Allowed {
    bool noTmd = false;          // no input word, or none that names a file
    bool negativeCounts = false; // in the object table
    bool oddTypes = false;       // polygons of types 4 to 7, which are no kind of primitive
};

// Writes the files into the directory, afresh, and makes the directories that they name.
void writeFiles(const std::string& directory, const std::vector<NamedFile>& files);

// Every file right in the directory that is none of `files`; they are read and removed.
[[nodiscard]] std::vector<NamedFile> takeNewFiles(const std::string& directory,
                                                  const std::vector<NamedFile>& files);

// What is wrong with the way a run ended and with the files it left; empty when nothing is. Wrong are
// a signal, a word of a sanitizer, a status that is not documented or comes without its message, and
// a success without a sound TMD or with an ID list that does not fit it. Indices in a TMD may be any.
[[nodiscard]] std::string findFault(const Ending& ending, const std::vector<NamedFile>& outputs,
                                    const Allowed& allowed);
