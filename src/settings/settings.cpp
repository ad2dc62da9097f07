#include "settings/settings.hpp"

namespace vexbind {

std::int32_t Verbose = 0;
std::uint8_t Dump = dumpOff;
std::FILE* vout = stdout;
std::FILE* dout = stdout;

std::int32_t scaleFactor = 0;
double scale = 0.0;
std::int32_t offsetX = 0;
std::int32_t offsetY = 0;
std::int32_t offsetZ = 0;

char* Tmdfile = nullptr;
char* Prjfile = nullptr;
std::int32_t arcade = homeLayout;

PathBuffer cwd{};
PathBuffer _cwd{};

} // namespace vexbind
