// The listing of one object.
#include "model/rsdprint.hpp"

#include "unit/model_tables.hpp"
#include "unit/printed.hpp"

#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

TEST(PrintRsd, OfAnObjectWithoutADirectory) {
    std::string ply = "m.ply";
    std::string mat = "m.mat";
    RSD object = plainObject();
    object.ply = ply.data();
    object.mat = mat.data();
    object.npoly = 12;
    EXPECT_EQ(printed([&](std::FILE* stream) { printRSD(stream, &object); }),
              "=============== RSD ==============\n"
              "   RSD files   : m.ply, m.mat, \n"
              "   POLYGON     :    12\n"
              "   VERTEX      :     0\n"
              "   NORMAL      :     0\n"
              "   MATERIAL    :     0\n"
              "   Range       : (65535, 65535, 65535)-(-65536, -65536, -65536)\n");
}
