#include "model/rsdprint.hpp"

#include <cmath>

namespace vexbind {

static const char* orEmpty(const char* text) {
    return text == nullptr ? "" : text;
}

void printRSD(std::FILE* stream, const RSD* object) {
    std::fprintf(stream, "=============== RSD ==============\n");
    std::fprintf(stream, "   RSD files   : ");
    if (object->dir != nullptr) {
        std::fprintf(stream, "%s%c", object->dir, '/');
    }
    std::fprintf(stream, "%s, %s, %s\n", object->ply, object->mat, orEmpty(object->grp));
    for (std::int32_t i = 0; i < object->ntex; ++i) {
        std::fprintf(stream, "\tTEX[%d] = %s\n", i, object->tex[i]);
    }
    std::fprintf(stream, "   POLYGON     : %5u\n", static_cast<std::uint32_t>(object->npoly));
    std::fprintf(stream, "   VERTEX      : %5u\n", static_cast<std::uint32_t>(object->nvert));
    std::fprintf(stream, "   NORMAL      : %5u\n", static_cast<std::uint32_t>(object->nnorm));
    std::fprintf(stream, "   MATERIAL    : %5u\n", static_cast<std::uint32_t>(object->nmat));
    if (object->scaleFactor != 0) {
        std::fprintf(stream, "   Scale       : %5g\n", std::pow(2.0, object->scaleFactor));
    }
    if (object->offsetX != 0 || object->offsetY != 0 || object->offsetZ != 0) {
        std::fprintf(stream, "   Translation : (%d, %d, %d)\n", object->offsetX, object->offsetY,
                     object->offsetZ);
    }
    std::fprintf(stream, "   Range       : (%ld, %ld, %ld)-(%ld, %ld, %ld)\n",
                 static_cast<long>(object->minX), static_cast<long>(object->minY),
                 static_cast<long>(object->minZ), static_cast<long>(object->maxX),
                 static_cast<long>(object->maxY), static_cast<long>(object->maxZ));
}

void printObjList(std::FILE* stream) {
    std::fprintf(stream, "\tInput RSDs      : %u object(s)\n", ObjList.nObj);
    for (std::uint32_t i = 0; i < ObjList.nObj; ++i) {
        std::fprintf(stream, "\t\tRSD[%2d] = \"%s\"\n", static_cast<std::int32_t>(i), ObjList.name[i]);
    }
    std::fprintf(stream, "\tTotal primitives: %5u\n", ObjList.nPrim);
    std::fprintf(stream, "\tTotal vertices  : %5u\n", ObjList.nVert);
    std::fprintf(stream, "\tTotal normals   : %5u\n", ObjList.nNorm);
}

} // namespace vexbind
