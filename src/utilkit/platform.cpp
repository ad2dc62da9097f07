#include "utilkit/platform.hpp"

#include <cstdio>

#ifdef _WIN32
#include <cstdlib>
#include <direct.h>
#include <fcntl.h>
#include <io.h>
#endif

namespace vexbind {

#ifdef _WIN32

bool queryDirectory(std::span<char> buffer, const char* path) {
    const int room = static_cast<int>(buffer.size());
    // Drives count from 1; 0 is the present one.
    const int drive = driveLength(path) == 0 ? 0 : (path[0] & 0x1F);
    return ::_getdcwd(drive, buffer.data(), room) != nullptr;
}

double decimalLogarithm(double number) {
    // The logarithm of two in two parts, of which the first times any exponent is exact.
    static constexpr double highOfTwo = 0x1.34413509f6p-2;
    static constexpr double lowOfTwo = 0x1.9fef311f12b36p-42;
    static constexpr double ofE = 0x1.bcb7b1526e50ep-2;
    int exponent = 0;
    double fraction = std::frexp(number, &exponent);
    // From one half to one, but from one to two for numbers that are not below one.
    if (exponent > 0) {
        fraction *= 2;
        --exponent;
    }
    return exponent * lowOfTwo + ofE * std::log(fraction) + exponent * highOfTwo;
}

void prepareStreams() {
    // The library never gives the places of closed standard streams away.
    _fmode = _O_BINARY;
    for (std::FILE* stream : {stdin, stdout, stderr}) {
        static_cast<void>(::_setmode(::_fileno(stream), _O_BINARY));
    }
}

#else

void prepareStreams() {
    for (int i = 0; i <= STDERR_FILENO; ++i) {
        std::FILE* stream = std::fopen("/dev/null", "r");
        if (stream != nullptr && ::fileno(stream) > STDERR_FILENO) {
            static_cast<void>(std::fclose(stream)); // none is closed any more
            return;
        }
        // One in a standard place stays open to the end of the run.
    }
}

#endif

} // namespace vexbind
