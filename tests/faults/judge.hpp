// What a run must come to, whatever its input.
#pragma once

#include <string>
#include <vector>

#include "faults/forked_run.hpp"

struct NamedFile {
    std::string name; // may lead into a directory
    std::string content;

    bool operator==(const NamedFile&) const = default;
};

// What input files can say that a sound TMD cannot hold, though it is written as told.
struct Allowed {
    bool noTmd = false;          // no input word, or none that names a file
    bool negativeCounts = false; // in the object table
    bool oddTypes = false;       // polygons of types 4 to 7, which are no kind of primitive
    bool largeSprites = false;   // sizes that the file's 16 bits cut down to a fixed form's
};

// Writes the files into the directory, afresh, and makes the directories that they name.
void writeFiles(const std::string& directory, const std::vector<NamedFile>& files);

// The files of these names as they are there now.
[[nodiscard]] std::vector<NamedFile> readFiles(const std::string& directory,
                                               const std::vector<NamedFile>& files);

// Every file right in the directory that is none of `files`, by name; they are read and removed.
[[nodiscard]] std::vector<NamedFile> takeNewFiles(const std::string& directory,
                                                  const std::vector<NamedFile>& files);

// An ID list without the time at which it was made; any other text as it is.
[[nodiscard]] std::string withoutDate(const std::string& list);

// What is wrong with the way a run ended, of what is said below.
[[nodiscard]] std::string findFaultInEnding(const Ending& ending);
// Whether the status is documented and its message is there.
[[nodiscard]] bool isExplained(const Ending& ending);

// What is wrong with the files that a run of status 0 left; empty when nothing is.
[[nodiscard]] std::string findFaultInSuccess(const Ending& ending, const std::vector<NamedFile>& outputs,
                                             const Allowed& allowed);

// What is wrong with the way a run ended and with the files it left; empty when nothing is. Wrong are
// a signal, a word of a sanitizer, a status that is not documented or comes without its message, and
// a success without a sound TMD or with an ID list that does not fit it. Indices in a TMD may be any.
[[nodiscard]] std::string findFault(const Ending& ending, const std::vector<NamedFile>& outputs,
                                    const Allowed& allowed);
