#include "utilkit/drawline.hpp"

namespace vexbind {

void drawLine(std::FILE* stream, char character, int count) {
    for (int i = 0; i < count; ++i) {
        std::fputc(character, stream);
    }
}

} // namespace vexbind
