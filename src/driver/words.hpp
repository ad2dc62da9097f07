// The word list: the words of the command line, with the words of ARG files in the place of their names, and
// with "-id", the name itself and the RSD names in the place of a PRJ file.
#pragma once

#include <cstdint>

namespace vexbind {

struct WordList {
    char** words;        // owned texts; null when there are none
    std::uint32_t count; // of the words
};

/// Collects the words behind the program's name; released with free_words. An ARG or PRJ file
/// that does not open is raised as OPEN_ERR at openFailed, a PRJ file without its magic as FORM_ERR at
/// notAProject, missing memory as ALC_ERR, named "char*", at allocFailed.
WordList collect_words(int argumentCount, char** arguments);

/// Releases every word and the list.
void free_words(WordList& list);

} // namespace vexbind
