// How failures are reported: the message texts, the list of codes that a caller copes with itself,
// and the one routine that raises.
//
// A message code is its text, and two codes are the same when they are the same object. The list
// `_ignoreErr_` is a stack around single calls: while a code is on it, raising that code prints
// nothing and returns.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vexbind {

using MessageCode = const char*;

inline constexpr char OPEN_ERR[] = "Cannot open: \"%s\"\n"; // file name
// What was wanted, two factors of its size, allocCount, freeCount, allocTotal.
inline constexpr char ALC_ERR[] = "Alloc Error: \"%s\" %d x %ld(+%ld-%ld:sum=%ld)\n";
inline constexpr char EOF_ERR[] = "Unexpected EOF: \"%s\" at %ld bytes\n"; // file name, position
inline constexpr char READ_ERR[] = "Fail to read: \"%s\" at %ld bytes\n";  // file name, position
inline constexpr char WRIT_ERR[] = "Fail to write: \"%s\" at %ld bytes\n"; // file name, position
inline constexpr char EOT_ERR[] = "Unexpected EOF: \"%s\" line=%ld\n";     // text file name, line
inline constexpr char RTXT_ERR[] = "Fail to read: \"%s\" line=%ld\n";      // text file name, line
inline constexpr char ARG_ERR[] = "Bad argument: %s %s\n";                 // option, its value
inline constexpr char FORM_ERR[] = "\"%s\" is not a %s file\n";            // file name, format
inline constexpr char VER_ERR[] = "\"%s\" has a bad version: %s\n";        // file name, first line
inline constexpr char SYN_ERR[] = "Syntax Error: %s line=%ld \"%s\"\n";    // full path, line, text
inline constexpr char WARN_MSG[] = "WARNING: ";
// Part of the table, but never raised.
inline constexpr char LEAK_ERR[] = "Memory leak!: %ld times @ %s\n"; // blocks, place

// The messages of single sites. Nobody ignores these.
inline constexpr char INDEX_ERR[] = "Bad index: %u [0-%u]\n";    // index, element count
inline constexpr char CLOSE_ERR[] = "Fail to Close File : %s\n"; // file name
// Kept: no line end of its own.
inline constexpr char SEEK_ERR[] = "Seek error \"%s\" at %ld bytes";        // file name, offset
inline constexpr char GETCWD_ERR[] = "Cannot getcwd: \"%s\"\n";             // path
inline constexpr char PATH_ERR[] = "Bad path name: \"%s\"\n";               // path
inline constexpr char MATLIST_ERR[] = "\nERROR:\tBad MAT Format : %s\n";    // rest of the list
inline constexpr char SCALE_ERR[] = "Bad scale factor: %G (must be > 0)\n"; // factor
inline constexpr char OPTION_ERR[] = "%s : Illegal option.\n";              // word
inline constexpr char TEXTURE_MSG[] = "\nCannot Open: \"%s\" for %s\n";     // texture, MAT file
inline constexpr char CLUT_MSG[] = "Bad CLUT address! : (%d %d)";           // x, y
inline constexpr char CLUT_X_MSG[] = " (x should be 16*n)";
inline constexpr char PIXEL_MSG[] = "Bad Texture address! : (%d %d)\n";             // x, y
inline constexpr char OLD_VERSION_MSG[] = "\"%s\" has old version: @%s940101\n";    // name, format
inline constexpr char NTEX_MSG[] = "\"NTEX=%d\" may be wrong in \"%s\" line=%ld\n"; // count, name, line
inline constexpr char RANGE_MSG[] = "\"%s\" is out of the Tavix coordinate!\n";     // object
inline constexpr char NO_MATERIAL_MSG[] = "Some primitives have no material (WHITE is assigned.)\n";

inline constexpr std::size_t ignoreCapacity = 30;
extern std::array<MessageCode, ignoreCapacity> _ignoreErr_; // entries 0 to _igno_ - 1 are live
extern std::int32_t _igno_;

/// Puts `code` on the ignore list; the capacity is not tested, the stack is never deep.
void pushIgnore(MessageCode code);

/// Takes the newest code off the ignore list; on an empty list nothing happens.
void popIgnore();

/// Whether `code` is on the ignore list.
bool isIgnored(MessageCode code);

/// Ends the run through Exit (`status`) after writing an empty line and the message to the standard
/// error. Returns only when `code` is on the ignore list; nothing is printed then.
[[gnu::format(printf, 2, 3)]] void raiseError(std::int32_t status, MessageCode code, ...);

/// Writes "WARNING: " and the message to the standard error. Never consults the ignore list.
[[gnu::format(printf, 1, 2)]] void warn(MessageCode code, ...);

} // namespace vexbind
