// The words are counted first and then stored, in two passes over the same arguments, each of which reads
// the ARG and PRJ files anew, with all their warnings.
#include "driver/words.hpp"

#include "driver/project.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/fname.hpp"
#include "utilkit/fopen.hpp"
#include "utilkit/getline.hpp"
#include "utilkit/status.hpp"
#include "utilkit/stralloc.hpp"
#include "utilkit/strcase.hpp"

#include <array>
#include <span>

namespace vexbind {

static std::array<const char*, 2> ARG_EXT = {"arg", "ARG"};

static bool hasExtension(const char* word, const char* extension) {
    const char* own = getExt0(word);
    return own != nullptr && equalsIgnoringCase(own, extension);
}

static void open_arg(const char* word, FileRecord& record) {
    if (fileMatchOpen0(word, ARG_EXT, "r", &record) == nullptr) {
        raiseError(openFailed, OPEN_ERR, word);
    }
}

/// Closes an ARG file that was read to its end, or as far as it could be.
static void close_arg(const char* word, FileRecord& record) {
    if (std::ferror(record.stream) != 0) {
        raiseError(lineReadFailed, RTXT_ERR, word, static_cast<long>(record.line));
    }
    fileClose0(&record);
}

static std::uint32_t count_arg_words(const char* word) {
    FileRecord record{};
    open_arg(word, record);
    std::uint32_t count = 0;
    while (getWord(&record).text != nullptr) {
        ++count;
    }
    close_arg(word, record);
    return count;
}

static std::uint32_t count_project_words(const char* word) {
    FileRecord* file = open_project(word);
    std::uint32_t count = 2; // "-id" and the project's own name
    for (ProjectEntry entry{}; next_entry(file, entry);) {
        ++count;
    }
    fileClose(file);
    return count;
}

/// An upper bound of the words: one behind "-id" counts once as such and once more for itself.
static std::uint32_t count_words(std::span<char*> arguments) {
    std::uint32_t count = 0;
    for (const char* word : arguments) {
        if (hasExtension(word, "arg")) {
            count += count_arg_words(word);
        } else if (hasExtension(word, "prj")) {
            count += count_project_words(word);
        } else if (equalsIgnoringCase(word, "-id")) {
            count += 2;
        } else {
            count += 1;
        }
    }
    return count;
}

/// Stores a copy of `word`; what a file has gained since it was counted is left out.
static void append(WordList& list, std::uint32_t capacity, const char* word) {
    if (list.count < capacity) {
        list.words[list.count] = strCopy(word).release();
        ++list.count;
    }
}

static void append_arg_words(WordList& list, std::uint32_t capacity, const char* word) {
    FileRecord record{};
    open_arg(word, record);
    for (Line each = getWord(&record); each.text != nullptr; each = getWord(&record)) {
        append(list, capacity, each.text);
    }
    close_arg(word, record);
}

static void append_project_words(WordList& list, std::uint32_t capacity, const char* word) {
    FileRecord* file = open_project(word);
    append(list, capacity, "-id");
    append(list, capacity, word);
    for (ProjectEntry entry{}; next_entry(file, entry);) {
        append(list, capacity, entry.name);
    }
    fileClose(file);
}

WordList collect_words(int argumentCount, char** arguments) {
    // The program's name is no word; a caller may even leave it out.
    const std::span<char*> all(arguments, static_cast<std::size_t>(argumentCount));
    const std::span<char*> words = all.empty() ? all : all.subspan(1);
    const std::uint32_t capacity = count_words(words);
    WordList list{.words = nullptr, .count = 0};
    if (capacity != 0) {
        list.words = trackedTable<char*>(capacity, countedPointer, "char*");
    }
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (hasExtension(words[i], "arg")) {
            append_arg_words(list, capacity, words[i]);
            continue;
        }
        if (hasExtension(words[i], "prj")) {
            append_project_words(list, capacity, words[i]);
            continue;
        }
        append(list, capacity, words[i]);
        if (equalsIgnoringCase(words[i], "-id") && i + 1 < words.size()) {
            // The word behind "-id" is its value, whatever its extension.
            ++i;
            append(list, capacity, words[i]);
        }
    }
    return list;
}

void free_words(WordList& list) {
    for (std::uint32_t i = 0; i < list.count; ++i) {
        trackedFree(list.words[i]);
    }
    trackedFree(list.words);
    list = WordList{.words = nullptr, .count = 0};
}

} // namespace vexbind
