#include "driver/options.hpp"

#include "unit/support.hpp"

#include "settings/settings.hpp"
#include "utilkit/tracked.hpp"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

constexpr std::int32_t smallest = std::numeric_limits<std::int32_t>::min();

// A word list of these words.
struct Words {
    explicit Words(std::vector<std::string> words) : texts(std::move(words)) {
        for (std::string& text : texts) {
            pointers.push_back(text.data());
        }
        list = {.words = pointers.empty() ? nullptr : pointers.data(),
                .count = static_cast<std::uint32_t>(pointers.size())};
    }
    Words(const Words&) = delete;
    Words& operator=(const Words&) = delete;

    std::vector<std::string> texts;
    std::vector<char*> pointers;
    WordList list{};
};

std::uint32_t parse(std::vector<std::string> words) {
    const Words list(std::move(words));
    return option(list.list);
}

struct Between {
    std::uint32_t taken;
    std::string messages;
};

Between parseBetween(std::vector<std::string> words, std::uint32_t index = 0) {
    const Words list(std::move(words));
    testing::internal::CaptureStderr();
    const std::uint32_t taken = option_between(list.list, index);
    return {taken, testing::internal::GetCapturedStderr()};
}

// The settings at the program's start, with the owned names released at the end.
struct FreshOptions {
    FreshOptions() = default;
    ~FreshOptions() {
        trackedFree(Tmdfile);
        trackedFree(Prjfile);
    }
    FreshOptions(const FreshOptions&) = delete;
    FreshOptions& operator=(const FreshOptions&) = delete;

    FreshGlobals globals;
};

std::string badArgumentText(const std::string& word, const std::string& value) {
    return "\nBad argument: " + word + " " + value + "\n";
}

constexpr char helpText[] = "Version 3.72 Oct  1 1996\n"
                            "Usage : vexbind [options] rsd-names ...\n"
                            "        vexbind [options] rsd-names [options] rsd-names ...\n"
                            "        vexbind [options] arg-files ...\n"
                            "        vexbind [options] prj-file\n"
                            "   options:\n"
                            "\t-o  file-name ... Set output file name             (default: a.tmd)\n"
                            "\t-s  factor    ... Set scale factor (float)         (default: 1.0)\n"
                            "\t-t  x y z     ... Set translation amounts          (default: 0 0 0)\n"
                            "\t-id PRJ-file  ... Read PRJ file and create ID list (default: none)\n"
                            "\t-info         ... Print details                    (default: OFF)\n"
                            "\t-v            ... Set verbose mode ON              (default: OFF)\n";

// Factors and the exponents that log10(factor) / log10(2), rounded up, gives.
struct ScaleRow {
    double factor;
    std::int32_t exponent;
};

constexpr std::array<ScaleRow, 45> scaleRows = {{
    {1.0, 0},
    {1.0000000000000002, 1}, // the next number
    {1.01, 1},
    {1.5, 1},
    {2.0, 1},
    {2.0000001, 2},
    {3.0, 2},
    {4.0, 2},
    {5.0, 3},
    {7.0, 3},
    {8.0, 3},
    {9.0, 4},
    {10.0, 4},
    {16.0, 4},
    {100.0, 7},
    {128.0, 7},
    {129.0, 8},
    {1000.0, 10},
    {1024.0, 10},
    {1025.0, 11},
    {65536.0, 16},
    {65537.0, 17},
    {536870912.0, 29},
    {1e6, 20},
    {1e10, 34},
    {1e300, 997},
    {0.9999999999999999, 0},
    {0.99, 0},
    {0.75, 0},
    {0.51, 0},
    {0.5, -1},
    {0.3, -1},
    {0.26, -1},
    {0.25, -2},
    {0.2, -2},
    {0.125, -3},
    {0.1, -3},
    {0.01, -6},
    {0.001, -9},
    {1e-300, -996},
    // The quotient of the logarithms is a little more than the exponent here.
    {0x1p955, 956},
    // No exponent at all.
    {0.0, smallest},
    {-0.0, smallest},
    {std::numeric_limits<double>::infinity(), smallest},
    {std::numeric_limits<double>::quiet_NaN(), smallest},
}};

} // namespace

TEST(SetScale, TakesThePowerOfTwoThatIsNotBelow) {
    const FreshGlobals globals;
    for (const ScaleRow& row : scaleRows) {
        scaleFactor = 12345;
        scale = 7.5;
        set_scale(row.factor);
        EXPECT_EQ(scaleFactor, row.exponent) << row.factor;
        EXPECT_EQ(scale, 0.0) << row.factor; // replaces an absolute factor
    }
}

TEST(SetScale, IsExactForPowersOfTwo) {
    const FreshGlobals globals;
    double factor = 1.0;
    for (std::int32_t exponent = 0; exponent <= 64; ++exponent, factor *= 2) {
        set_scale(factor);
        EXPECT_EQ(scaleFactor, exponent);
    }
    factor = 1.0;
    for (std::int32_t exponent = 0; exponent >= -10; --exponent, factor /= 2) {
        set_scale(factor);
        EXPECT_EQ(scaleFactor, exponent);
    }
}

TEST(SetScale, RejectsNegativeFactors) {
    const FreshGlobals globals;
    struct Row {
        double factor;
        const char* shown;
    };
    static constexpr std::array<Row, 6> rows = {{
        {-1.0, "-1"},
        {-0.5, "-0.5"},
        {-1e10, "-1E+10"},
        {-1234567.0, "-1.23457E+06"},
        {-1e-5, "-1E-05"},
        {-std::numeric_limits<double>::infinity(), "-INF"},
    }};
    for (const Row& row : rows) {
        EXPECT_EXIT(set_scale(row.factor), ExitedWithCode(1),
                    testing::Eq("\nBad scale factor: " + std::string(row.shown) + " (must be > 0)\n"));
    }
}

TEST(SetScale, GoesOnWhenANegativeFactorIsIgnored) {
    const FreshGlobals globals;
    pushIgnore(SCALE_ERR);
    scaleFactor = 3;
    scale = 7.5;
    testing::internal::CaptureStderr();
    set_scale(-2.0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(scaleFactor, smallest);
    EXPECT_EQ(scale, 0.0);
}

TEST(Option, StopsAtTheFirstWordWithoutADash) {
    const FreshOptions options;
    EXPECT_EQ(parse({}), 0U);
    EXPECT_EQ(parse({"a.rsd"}), 0U);
    EXPECT_EQ(parse({"a.rsd", "-v"}), 0U);
    EXPECT_EQ(Verbose, 0);
    EXPECT_EQ(parse({"", "-v"}), 0U);
    EXPECT_EQ(parse({"-v", "a.rsd", "-info"}), 1U);
    EXPECT_EQ(Verbose, 1);
    EXPECT_EQ(Dump, 0);
    EXPECT_EQ(parse({"-v", "-info"}), 2U);
    EXPECT_EQ(parse({"-t", "1", "2", "3", "x"}), 4U);
    EXPECT_EQ(parse({"-o", "y", "-s", "2", "-sa", "3", "-t", "1", "2", "3", "-id", "z", "-a", "x"}), 13U);
}

TEST(Option, SetsTheSwitches) {
    const FreshOptions options;
    parse({"-a"});
    EXPECT_EQ(arcade, 1);
    parse({"-b"});
    EXPECT_EQ(arcade, 2);
    parse({"-b", "-a"});
    EXPECT_EQ(arcade, 1);
    EXPECT_EQ(Verbose, 0);
    parse({"-v"});
    EXPECT_EQ(Verbose, 1);
    EXPECT_EQ(Dump, 0);
    parse({"-info"});
    EXPECT_EQ(Dump, 2);
}

TEST(Option, ReadsNamesInAnyCase) {
    const FreshOptions options;
    EXPECT_EQ(parse({"-V", "-INFO", "-B", "-O", "Out", "-ID", "Prj", "-SA", "0.5", "-T", "1", "2", "3"}),
              13U);
    EXPECT_EQ(Verbose, 1);
    EXPECT_EQ(Dump, 2);
    EXPECT_EQ(arcade, 2);
    EXPECT_STREQ(Tmdfile, "Out");
    EXPECT_STREQ(Prjfile, "Prj");
    EXPECT_EQ(scale, 0.5);
    EXPECT_EQ(offsetZ, 3);
    EXPECT_EQ(parse({"-Sc", "8", "-iNfO"}), 3U);
    EXPECT_EQ(scaleFactor, 3);
    EXPECT_EQ(parse({"-S", "16"}), 2U);
    EXPECT_EQ(scaleFactor, 4);
}

TEST(Option, KeepsTheLastOutputAndTheFirstProject) {
    const FreshOptions options;
    parse({"-o", "x.tmd", "-o", "why.tmd", "-id", "a.prj", "-id", "b.prj"});
    EXPECT_STREQ(Tmdfile, "why.tmd");
    EXPECT_STREQ(Prjfile, "a.prj");
    EXPECT_EQ(allocCount, 3);
    EXPECT_EQ(allocTotal, 6 + 8 + 6);
    EXPECT_EQ(freeCount, 1);
    parse({"-id", "c.prj"});
    EXPECT_STREQ(Prjfile, "a.prj");
}

TEST(Option, TakesValuesThatLookLikeOptions) {
    const FreshOptions options;
    EXPECT_EQ(parse({"-o", "-v", "-id", "-x", "-t", "-1", "-o", "-3"}), 8U);
    EXPECT_STREQ(Tmdfile, "-v");
    EXPECT_STREQ(Prjfile, "-x");
    EXPECT_EQ(Verbose, 0);
    EXPECT_EQ(offsetX, -1);
    EXPECT_EQ(offsetY, 0);
    EXPECT_EQ(offsetZ, -3);
}

TEST(Option, ReadsTranslationsUpToTheirFirstOddCharacter) {
    const FreshOptions options;
    parse({"-t", "12x", "abc", " +7"});
    EXPECT_EQ(offsetX, 12);
    EXPECT_EQ(offsetY, 0);
    EXPECT_EQ(offsetZ, 7);
    parse({"-t", "-2147483648", "2147483647", "1.9"});
    EXPECT_EQ(offsetX, smallest);
    EXPECT_EQ(offsetY, 2'147'483'647);
    EXPECT_EQ(offsetZ, 1);
    parse({"-t", "0x10", "", "-"});
    EXPECT_EQ(offsetX, 0);
    EXPECT_EQ(offsetY, 0);
    EXPECT_EQ(offsetZ, 0);
}

TEST(Option, ReadsRelativeFactors) {
    const FreshOptions options;
    struct Row {
        const char* value;
        std::int32_t exponent;
    };
    static constexpr std::array<Row, 12> rows = {{
        {"1", 0},
        {"2", 1},
        {"3", 2},
        {"0.5", -1},
        {"0.3", -1},
        {"0.25", -2},
        {"1e3", 10},
        {"2x", 1},
        {" +2", 1},
        {"0x10", 4},
        {"inf", smallest},
        {"nan", smallest},
    }};
    for (const char* name : {"-s", "-sc"}) {
        for (const Row& row : rows) {
            scaleFactor = 99;
            scale = 7.5;
            EXPECT_EQ(parse({name, row.value}), 2U);
            EXPECT_EQ(scaleFactor, row.exponent) << name << " " << row.value;
            EXPECT_EQ(scale, 0.0) << name << " " << row.value;
        }
    }
}

TEST(Option, ReadsAbsoluteFactorsWithoutACheck) {
    const FreshOptions options;
    struct Row {
        const char* value;
        double factor;
    };
    static constexpr std::array<Row, 6> rows = {{
        {"0.01", 0.01},
        {"-2", -2.0},
        {"0", 0.0},
        {"abc", 0.0},
        {"1e3x", 1000.0},
        {"inf", std::numeric_limits<double>::infinity()},
    }};
    for (const Row& row : rows) {
        scaleFactor = 5;
        EXPECT_EQ(parse({"-sa", row.value}), 2U);
        EXPECT_EQ(scale, row.factor) << row.value;
        EXPECT_EQ(scaleFactor, 0) << row.value;
    }
    parse({"-sa", "0.5", "-s", "4"});
    EXPECT_EQ(scale, 0.0);
    EXPECT_EQ(scaleFactor, 2);
    parse({"-s", "4", "-sa", "0.5"});
    EXPECT_EQ(scale, 0.5);
    EXPECT_EQ(scaleFactor, 0);
}

TEST(Option, RejectsFactorsOfZero) {
    const FreshOptions options;
    for (const char* name : {"-s", "-sc", "-S"}) {
        for (const char* value : {"0", "0.0", "-0", "abc", "", "-", "0x0", "1e-999", "x1", "-v"}) {
            EXPECT_EXIT(parse({name, value}), ExitedWithCode(2), testing::Eq(badArgumentText(name, value)))
                << name << " " << value;
        }
    }
}

TEST(Option, RejectsNegativeFactors) {
    const FreshOptions options;
    EXPECT_EXIT(parse({"-s", "-1"}), ExitedWithCode(1),
                testing::Eq("\nBad scale factor: -1 (must be > 0)\n"));
    EXPECT_EXIT(parse({"-sc", "-0.5x"}), ExitedWithCode(1),
                testing::Eq("\nBad scale factor: -0.5 (must be > 0)\n"));
}

TEST(Option, RejectsMissingValues) {
    const FreshOptions options;
    const std::vector<std::vector<std::string>> rows = {
        {"-o"}, {"-s"}, {"-sc"}, {"-sa"}, {"-t"}, {"-t", "1"}, {"-t", "1", "2"}, {"-id"}, {"-Id"},
    };
    for (const std::vector<std::string>& row : rows) {
        EXPECT_EXIT(parse(row), ExitedWithCode(2), testing::Eq(badArgumentText(row[0], ""))) << row[0];
    }
    EXPECT_EXIT(parse({"-v", "-o", "x", "-o"}), ExitedWithCode(2), testing::Eq(badArgumentText("-o", "")));
}

TEST(Option, RejectsUnknownWordsWithTheHelpText) {
    const FreshOptions options;
    for (const std::string word : {"-x", "-", "--", "--v", "-vv", "-inf", "-infos", "-h", "-s2", "-o=x"}) {
        // No empty line in front of this message.
        EXPECT_EXIT(parse({word, "2"}), ExitedWithCode(1),
                    testing::Eq(word + " : Illegal option.\n" + helpText))
            << word;
    }
}

TEST(Option, GoesOnAfterTheHelpText) {
    const FreshOptions options;
    testing::internal::CaptureStderr();
    EXPECT_EQ(parse({"-help", "-v", "-HELP"}), 3U);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), std::string(helpText) + helpText);
    EXPECT_EQ(Verbose, 1);
}

TEST(OptionBetween, KnowsScalesAndTranslation) {
    const FreshOptions options;
    Between result = parseBetween({"-s", "8", "x"});
    EXPECT_EQ(result.taken, 2U);
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(scaleFactor, 3);
    EXPECT_EQ(scale, 0.0);

    result = parseBetween({"-sa", "0.01", "x"});
    EXPECT_EQ(result.taken, 2U);
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(scaleFactor, 0);
    EXPECT_EQ(scale, 0.01);

    result = parseBetween({"-t", "1", "-2", "3x", "x"});
    EXPECT_EQ(result.taken, 4U);
    EXPECT_EQ(result.messages, "");
    EXPECT_EQ(offsetX, 1);
    EXPECT_EQ(offsetY, -2);
    EXPECT_EQ(offsetZ, 3);
}

TEST(OptionBetween, ReadsNamesInAnyCase) {
    const FreshOptions options;
    EXPECT_EQ(parseBetween({"-S", "8"}).taken, 2U);
    EXPECT_EQ(scaleFactor, 3);
    EXPECT_EQ(parseBetween({"-Sa", "0.5"}).taken, 2U);
    EXPECT_EQ(scale, 0.5);
    EXPECT_EQ(parseBetween({"-T", "1", "2", "3"}).taken, 4U);
    EXPECT_EQ(offsetY, 2);
}

TEST(OptionBetween, ReadsTheWordAtItsIndex) {
    const FreshOptions options;
    EXPECT_EQ(parseBetween({"a", "-s", "2", "b", "-s", "8"}, 4).taken, 2U);
    EXPECT_EQ(scaleFactor, 3);
    EXPECT_EQ(parseBetween({"a", "-s", "2", "b", "-s", "8"}, 1).taken, 2U);
    EXPECT_EQ(scaleFactor, 1);
}

TEST(OptionBetween, TakesFactorsOfZero) {
    const FreshOptions options;
    for (const char* value : {"0", "abc", "-0"}) {
        scaleFactor = 3;
        scale = 7.5;
        const Between result = parseBetween({"-s", value});
        EXPECT_EQ(result.taken, 2U);
        EXPECT_EQ(result.messages, "");
        EXPECT_EQ(scaleFactor, smallest);
        EXPECT_EQ(scale, 0.0);
    }
}

TEST(OptionBetween, RejectsNegativeFactors) {
    const FreshOptions options;
    const Words words({"-s", "-1"});
    EXPECT_EXIT(option_between(words.list, 0), ExitedWithCode(1),
                testing::Eq("\nBad scale factor: -1 (must be > 0)\n"));
}

TEST(OptionBetween, WarnsOfAnyOtherAndSkipsOneWord) {
    const FreshOptions options;
    struct Row {
        std::vector<std::string> words;
        const char* message;
    };
    const std::vector<Row> rows = {
        {{"-sc", "2"}, "WARNING: Bad argument: -sc 2\n"},
        {{"-o", "x.tmd"}, "WARNING: Bad argument: -o x.tmd\n"},
        {{"-id", "a.prj"}, "WARNING: Bad argument: -id a.prj\n"},
        {{"-v", "a"}, "WARNING: Bad argument: -v a\n"},
        {{"-info", "a"}, "WARNING: Bad argument: -info a\n"},
        {{"-a", "-b"}, "WARNING: Bad argument: -a -b\n"},
        {{"-b", "a"}, "WARNING: Bad argument: -b a\n"},
        {{"-help", "a"}, "WARNING: Bad argument: -help a\n"},
        {{"-", "a"}, "WARNING: Bad argument: - a\n"},
        {{"-s2", "a"}, "WARNING: Bad argument: -s2 a\n"},
        // At the end of the words the next one is empty.
        {{"-v"}, "WARNING: Bad argument: -v \n"},
        {{"-x"}, "WARNING: Bad argument: -x \n"},
        // Values that are missing
        {{"-s"}, "WARNING: Bad argument: -s \n"},
        {{"-sa"}, "WARNING: Bad argument: -sa \n"},
        {{"-t"}, "WARNING: Bad argument: -t \n"},
        {{"-t", "1"}, "WARNING: Bad argument: -t 1\n"},
        {{"-t", "1", "2"}, "WARNING: Bad argument: -t 1\n"},
    };
    for (const Row& row : rows) {
        const Between result = parseBetween(row.words);
        EXPECT_EQ(result.taken, 1U) << row.message;
        EXPECT_EQ(result.messages, row.message);
    }
    EXPECT_EQ(Verbose, 0);
    EXPECT_EQ(Dump, 0);
    EXPECT_EQ(arcade, 0);
    EXPECT_EQ(Tmdfile, nullptr);
    EXPECT_EQ(Prjfile, nullptr);
    EXPECT_EQ(scaleFactor, 0);
    EXPECT_EQ(offsetX, 0);
}

TEST(OptionBetween, WarnsEvenWhenTheCodeIsIgnored) {
    const FreshOptions options;
    pushIgnore(ARG_ERR);
    EXPECT_EQ(parseBetween({"-v", "a"}).messages, "WARNING: Bad argument: -v a\n");
}
