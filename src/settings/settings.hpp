// The settings of a run, read by every storey. Unless said otherwise they are set by the options
// of the driver only.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace vexbind {

/// Room for any name that the system takes as a directory's, terminator included.
inline constexpr std::size_t pathBufferSize = 4096;
using PathBuffer = std::array<char, pathBufferSize>;

/// The values of `arcade`: how the target lays out its frame buffer.
enum ArcadeLayout : std::int32_t { homeLayout = 0, arcadeLayoutA = 1, arcadeLayoutB = 2 };

/// The values of `Dump`.
enum DumpLevel : std::uint8_t { dumpOff = 0, dumpDetails = 2 };

extern std::int32_t Verbose; // -v: progress, listing, and index checks in myIndex
extern std::uint8_t Dump;    // -info: nonzero lists the objects, above 1 dumps every packet
extern std::FILE* vout;      // the verbose listing goes here
extern std::FILE* dout;      // the detail report goes here

extern std::int32_t scaleFactor; // -s, -sc: power-of-two exponent; captured into each RSD record
extern double scale;             // -sa, else fixed by the first object read; 0.0: not yet known
extern std::int32_t offsetX;     // -t: translation in model units; captured into each RSD record
extern std::int32_t offsetY;
extern std::int32_t offsetZ;

extern char* Tmdfile;       // -o: the output's name, owned; null until the run settles it
extern char* Prjfile;       // -id: the project file of the ID list, owned; null without
extern std::int32_t arcade; // -a, -b: an ArcadeLayout; read by the packet builders and the report

extern PathBuffer cwd;  // the start directory, set by run; Exit returns to it
extern PathBuffer _cwd; // the last directory that chDir changed into

} // namespace vexbind
