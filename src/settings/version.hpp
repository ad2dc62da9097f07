// The program's names for itself: the one place where the version stands.
#pragma once

namespace vexbind {

inline constexpr char ver[] = "v3.72";                // in the ID list
inline constexpr char versionText[] = "Version 3.72"; // in the help text and the verbose banner
inline constexpr char buildDate[] = "Oct  1 1996";    // beside versionText
inline constexpr char startNotice[] = "vexbind: RSD to TMD model converter\n";

} // namespace vexbind
