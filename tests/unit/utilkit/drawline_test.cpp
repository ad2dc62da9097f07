// Rules in the reports.
#include "utilkit/drawline.hpp"

#include "unit/support.hpp"

#include <string>

#include <gtest/gtest.h>

using namespace vexbind;

TEST(DrawLine, WritesTheCharacterCountTimes) {
    const TestDirectory here;
    std::FILE* stream = std::fopen("out", "w");
    ASSERT_NE(stream, nullptr);
    drawLine(stream, '-', 3);
    drawLine(stream, '=', 0);
    drawLine(stream, '*', 1);
    drawLine(stream, '\n', 1);
    drawLine(stream, '-', 5000);
    std::fclose(stream);
    EXPECT_EQ(bytesOf("out"), "---*\n" + std::string(5000, '-'));
}
