// The figures of the deep run: README.md quotes those of docs/RELIABILITY.md between two marks.
#include "runner/run_case.hpp"

#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace {

const std::string begin = "<!-- figures: written by tests/deep/report -->\n";
const std::string end = "<!-- end of the figures -->\n";

/// What stands between the marks; nothing unless each of them stands there once, in this order.
std::optional<std::string> quotedFigures(const std::string& text) {
    const std::size_t from = text.find(begin);
    const std::size_t to = text.find(end);
    if (from == std::string::npos || to == std::string::npos || to < from || text.rfind(begin) != from ||
        text.rfind(end) != to) {
        return std::nullopt;
    }
    return text.substr(from + begin.size(), to - from - begin.size());
}

TEST(Reliability, ReadmeQuotesTheFigures) {
    const std::optional<std::string> readme = quotedFigures(readWholeFile(VEXBIND_README));
    const std::optional<std::string> page = quotedFigures(readWholeFile(VEXBIND_RELIABILITY));
    ASSERT_TRUE(readme.has_value()) << "README.md lacks the marks of the figures";
    ASSERT_TRUE(page.has_value()) << "docs/RELIABILITY.md lacks the marks of the figures";
    EXPECT_EQ(*readme, *page) << "tests/deep/report writes both";
    EXPECT_NE(page->find("\nLast deep run: "), std::string::npos);
    EXPECT_NE(page->find("\n| Stage | "), std::string::npos);
}

TEST(Reliability, FiguresStandBetweenTheMarks) {
    EXPECT_EQ(quotedFigures("a\n" + begin + "1\n2\n" + end + "b\n"), "1\n2\n");
    EXPECT_EQ(quotedFigures(begin + end), "");
    EXPECT_EQ(quotedFigures("1\n"), std::nullopt);
    EXPECT_EQ(quotedFigures(begin + "1\n"), std::nullopt);
    EXPECT_EQ(quotedFigures("1\n" + end), std::nullopt);
    EXPECT_EQ(quotedFigures(end + "1\n" + begin), std::nullopt);
    EXPECT_EQ(quotedFigures(begin + begin + "1\n" + end), std::nullopt);
    EXPECT_EQ(quotedFigures(begin + "1\n" + end + end), std::nullopt);
}

} // namespace
