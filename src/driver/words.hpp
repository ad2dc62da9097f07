// The word list: the words of the command line, with the words of ARG files in the place of their names.
#pragma once

#include <cstdint>

namespace vexbind {

struct WordList {
    char** words;        // owned texts; null when there are none
    std::uint32_t count; // of the words
};

/// Collects the words behind the program's name; released with free_words. An ARG file that does not open
/// is raised as OPEN_ERR at openFailed, missing memory as ALC_ERR, named "char*", at allocFailed.
WordList collect_words(int argumentCount, char** arguments);

/// Releases every word and the list.
void free_words(WordList& list);

} // namespace vexbind
