// Reading text files line by line and word by word.
#include "utilkit/getline.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/support.hpp"

#include <array>
#include <cstdio>
#include <ostream>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::Eq;
using testing::ExitedWithCode;

namespace {

// Where the read-ahead ends while one line or word takes all of it: a small block grows to a large one, and
// that doubles.
constexpr std::array<std::size_t, 3> blockSizes = {4096, 131'072, 262'144};

// ... and while everything has been handed out before more is read.
constexpr std::array<std::size_t, 2> blockEnds = {4096, 4096 + 131'072};

// A line and the record's line count once it is read.
struct Counted {
    std::string text;
    std::int32_t line;

    bool operator==(const Counted&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Counted& counted) {
    constexpr std::size_t shown = 40;
    stream << '"' << testing::PrintToString(counted.text.substr(0, shown)) << "\" of " << counted.text.size();
    return stream << " characters, line " << counted.line;
}

// All lines of a file; the last entry, without text, has the line count at the end.
using Lines = std::vector<Counted>;

Lines linesOf(FileRecord* file) {
    Lines lines;
    pushIgnore(EOT_ERR);
    for (Line line = getLine(file); line.text != nullptr; line = getLine(file)) {
        lines.push_back({std::string(line.text, line.length), file->line});
        EXPECT_EQ(line.text[line.length], '\0');
    }
    popIgnore();
    lines.push_back({"", file->line});
    return lines;
}

Lines linesOfFile(const std::string& content) {
    const TestDirectory here({{"in", content}});
    FileRecord* file = fileOpen("in", "r");
    Lines lines = linesOf(file);
    fileClose(file);
    return lines;
}

// The same without a file in between, for many contents.
Lines linesOfMemory(std::string content) {
    FileRecord file{};
    file.stream = ::fmemopen(content.data(), content.size(), "r");
    Lines lines = linesOf(&file);
    fileClose0(&file);
    return lines;
}

// The rules for one character after the other, from the state in which `stored` characters of a line
// are there.
Lines linesByCharacter(std::string stored, std::string_view content) {
    Lines lines;
    std::int32_t line = 0;
    for (const char character : content) {
        line += character == '\n' ? 1 : 0;
        if (character == '\n' || character == '\r') {
            if (!stored.empty() && stored[0] != '#') {
                lines.push_back({stored, line});
            }
            stored.clear();
        } else if (character != 26) {
            stored += character;
        }
    }
    if (!stored.empty()) {
        lines.push_back({stored, line});
    }
    lines.push_back({"", line});
    return lines;
}

// Every text of `length` characters that mean something to getLine.
std::vector<std::string> tellingTexts(int length) {
    std::vector<std::string> texts = {""};
    for (int i = 0; i < length; ++i) {
        std::vector<std::string> longer;
        for (const std::string& text : texts) {
            for (const char character : {'a', '#', '\n', '\r', '\x1A'}) {
                longer.push_back(text + character);
            }
        }
        texts = longer;
    }
    return texts;
}

// Compares the lines when a block ends behind `inFirstBlock` characters of `text`.
void expectRulesAcrossBlocks(std::size_t blockSize, const std::string& text, std::size_t inFirstBlock) {
    SCOPED_TRACE(testing::Message() << testing::PrintToString(text) << ", " << inFirstBlock
                                    << " before the end of " << blockSize);
    const std::string beginning(blockSize - inFirstBlock, 'p');
    EXPECT_EQ(linesOfMemory(beginning + text), linesByCharacter(beginning, text));
    // The same behind a line of its own.
    const std::string line = beginning.substr(1);
    EXPECT_EQ(linesOfMemory(line + "\n" + text), linesByCharacter(line, "\n" + text));
}

struct Reading {
    std::string content;
    Lines lines;
};

using namespace std::string_literals;

const Reading readings[] = {
    // Line feeds.
    {"a\nb\n", {{"a", 1}, {"b", 2}, {"", 2}}},
    {"a\nb", {{"a", 1}, {"b", 1}, {"", 1}}},
    {"\n\na\n\n\nb\n\n", {{"a", 3}, {"b", 6}, {"", 7}}},
    {"\n", {{"", 1}}},
    {"", {{"", 0}}},
    // Carriage returns end lines, but are not counted.
    {"a\rb\r", {{"a", 0}, {"b", 0}, {"", 0}}},
    {"a\r\r\rb", {{"a", 0}, {"b", 0}, {"", 0}}},
    {"\r\r", {{"", 0}}},
    // Both: the line feed is counted when the next line is read.
    {"a\r\nb\r\n", {{"a", 0}, {"b", 1}, {"", 2}}},
    {"a\n\rb\n\r", {{"a", 1}, {"b", 2}, {"", 2}}},
    {"a\r\n\r\n#x\nb", {{"a", 0}, {"b", 3}, {"", 3}}},
    // Comments.
    {"#x\na\n", {{"a", 2}, {"", 2}}},
    {"#\n##\n# x\r\na\n", {{"a", 4}, {"", 4}}},
    {"#x\ra\r#y\r", {{"a", 0}, {"", 0}}},
    {"#x\r\na\n", {{"a", 2}, {"", 2}}},
    {"a\n#x\n", {{"a", 1}, {"", 2}}},
    {" #x\n\t#y\na#z\n", {{" #x", 1}, {"\t#y", 2}, {"a#z", 3}, {"", 3}}}, // the first column only
    {"#x", {{"#x", 0}, {"", 0}}}, // a last line without line end is returned
    {"#x\n#y", {{"#y", 1}, {"", 1}}},
    {"a\n#", {{"a", 1}, {"#", 1}, {"", 1}}},
    // White space is text.
    {" \n\t\na \n", {{" ", 1}, {"\t", 2}, {"a ", 3}, {"", 3}}},
    {"\v\f\n", {{"\v\f", 1}, {"", 1}}},
    // The end-of-file mark is dropped wherever it stands.
    {"a\x1A", {{"a", 0}, {"", 0}}},
    {"a\n\x1A", {{"a", 1}, {"", 1}}},
    {"\x1A", {{"", 0}}},
    {"\x1A\n\x1A\x1A\r\n", {{"", 2}}},
    {"a\x1A"
     "b\x1A\n\x1A"
     "c\n",
     {{"ab", 1}, {"c", 2}, {"", 2}}},
    {"a\x1A\r\n\x1A"
     "b",
     {{"a", 0}, {"b", 1}, {"", 1}}},
    {"\x1A#x\na\n", {{"a", 2}, {"", 2}}}, // the first column is the one behind it
    {"#\x1A\na\n", {{"a", 2}, {"", 2}}},
    {"#x\x1A", {{"#x", 0}, {"", 0}}},
    {"a\x1A#\n", {{"a#", 1}, {"", 1}}},
    // Any other byte is text.
    {"\xFF\n\x80z\n", {{"\xFF", 1}, {"\x80z", 2}, {"", 2}}},
    {"a\0b\nc\n"s, {{"a\0b"s, 1}, {"c", 2}, {"", 2}}},
    {"\0\n"s, {{"\0"s, 1}, {"", 1}}},
    {"\x04\x03\n", {{"\x04\x03", 1}, {"", 1}}},
};

struct Words {
    std::string content;
    std::vector<std::string> words;
};

const Words wordings[] = {
    {"", {}},
    {" \t\r\n\v\f ", {}},
    {"a", {"a"}},
    {"a\n", {"a"}},
    {"  a  b\tc\nd\r\ne\vf\fg  ", {"a", "b", "c", "d", "e", "f", "g"}},
    {"#a b # c\n", {"#a", "b", "#", "c"}}, // no comments here
    {"-t 1 -2 3 cube.rsd", {"-t", "1", "-2", "3", "cube.rsd"}},
    {"a\x1A"
     "b \x1A\n",
     {"a\x1A"
      "b",
      "\x1A"}}, // nor end-of-file marks
    {"\xE4\xFF \xA0", {"\xE4\xFF", "\xA0"}},
    {"\"a b\"", {"\"a", "b\""}},
};

std::vector<std::string> wordsOf(const std::string& content) {
    const TestDirectory here({{"in", content}});
    FileRecord* file = fileOpen("in", "r");
    std::vector<std::string> found;
    for (Line word = getWord(file); word.text != nullptr; word = getWord(file)) {
        found.emplace_back(word.text, word.length);
        EXPECT_EQ(word.text[word.length], '\0');
    }
    EXPECT_EQ(getWord(file).text, nullptr); // and so it stays
    EXPECT_EQ(file->line, 0);
    fileClose(file);
    return found;
}

} // namespace

TEST(GetLine, SplitsTextsIntoLines) {
    for (const Reading& reading : readings) {
        SCOPED_TRACE(testing::PrintToString(reading.content));
        EXPECT_EQ(linesOfFile(reading.content), reading.lines);
    }
}

TEST(GetLine, CountsTheLineFeedsConsumedSoFar) {
    const TestDirectory here({{"in", "a\r\n\r\n#x\nb"}});
    FileRecord* file = fileOpen("in", "r");
    EXPECT_STREQ(getLine(file).text, "a");
    EXPECT_EQ(file->line, 0);
    EXPECT_STREQ(getLine(file).text, "b");
    EXPECT_EQ(file->line, 3);
    EXPECT_EQ(file->position, 0);
    fileClose(file);
}

TEST(GetLine, CarriageReturnOnlyKeepsLineCountZero) {
    EXPECT_EQ(linesOfFile("first\rsecond\r\rthird\r"),
              (Lines{{"first", 0}, {"second", 0}, {"third", 0}, {"", 0}}));
}

TEST(GetLine, LastCommentWithoutLineEndIsReturned) {
    EXPECT_EQ(linesOfFile("a\n# end"), (Lines{{"a", 1}, {"# end", 1}, {"", 1}}));
    EXPECT_EQ(linesOfFile("a\n# end\n"), (Lines{{"a", 1}, {"", 2}}));
}

TEST(GetLine, FollowsTheRulesForEveryShortText) {
    const FreshGlobals globals;
    for (int length = 1; length <= 5; ++length) {
        for (const std::string& text : tellingTexts(length)) {
            ASSERT_EQ(linesOfMemory(text), linesByCharacter("", text)) << testing::PrintToString(text);
        }
    }
}

TEST(GetLine, FollowsTheRulesAcrossTheEndOfABlock) {
    const FreshGlobals globals;
    for (const std::size_t blockSize : blockSizes) {
        for (const std::string& text : tellingTexts(3)) {
            expectRulesAcrossBlocks(blockSize, text, 1);
            expectRulesAcrossBlocks(blockSize, text, 2);
        }
    }
    for (const std::string& text : tellingTexts(4)) {
        expectRulesAcrossBlocks(blockSizes[0], text, 2);
    }
}

TEST(GetLine, FindsEveryKindOfLineEndAtAnyDistance) {
    const FreshGlobals globals;
    for (std::size_t length = 1; length <= 1100; ++length) {
        const std::string text(length, 'x');
        for (const std::string end : {"\n", "\r", "\r\n", "\x1A\n", "\x1A\r"}) {
            // Followed by the other kind near and far.
            const std::string content = text + end + "b\r" + text + end + text + "\n";
            ASSERT_EQ(linesOfMemory(content), linesByCharacter("", content))
                << length << " characters before " << testing::PrintToString(end);
        }
    }
}

TEST(GetLine, HandlesLinesLongerThanABlock) {
    std::vector<std::size_t> lengths = {600'000, 1'100'000};
    for (const std::size_t blockSize : blockSizes) {
        lengths.insert(lengths.end(), {blockSize - 1, blockSize, blockSize + 1});
    }
    for (const std::size_t length : lengths) {
        SCOPED_TRACE(length);
        const std::string first(length, 'x');
        EXPECT_EQ(linesOfFile(first), (Lines{{first, 0}, {"", 0}}));
        EXPECT_EQ(linesOfFile(first + "\nb\n"), (Lines{{first, 1}, {"b", 2}, {"", 2}}));
        EXPECT_EQ(linesOfFile(first + "\r\nb"), (Lines{{first, 0}, {"b", 1}, {"", 1}}));
        EXPECT_EQ(linesOfFile("a\n" + first + "\n#\n" + first),
                  (Lines{{"a", 1}, {first, 2}, {first, 3}, {"", 3}}));
        EXPECT_EQ(linesOfFile("#" + first + "\nb\n"), (Lines{{"b", 2}, {"", 2}}));
        EXPECT_EQ(linesOfFile("#" + first), (Lines{{"#" + first, 0}, {"", 0}}));
        EXPECT_EQ(linesOfFile(first + "\x1A" + first + "\x1A\n\x1A"), (Lines{{first + first, 1}, {"", 1}}));
    }
}

TEST(GetLine, SkipsMoreEmptyLinesThanABlockHolds) {
    EXPECT_EQ(linesOfFile("a" + std::string(600'000, '\n') + "b"),
              (Lines{{"a", 1}, {"b", 600'000}, {"", 600'000}}));
    EXPECT_EQ(linesOfFile(std::string(600'000, '\r') + "\n"), (Lines{{"", 1}}));
    EXPECT_EQ(linesOfFile(std::string(600'000, '\x1A') + "b\n"), (Lines{{"b", 1}, {"", 1}}));
}

TEST(GetLine, ReadsManyLinesOverManyBlocks) {
    std::string content;
    Lines lines;
    for (std::int32_t i = 1; i <= 50'000; ++i) {
        const std::string line =
            "line " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 37), '.');
        content += line + "\n";
        lines.push_back({line, i});
    }
    lines.push_back({"", 50'000});
    EXPECT_TRUE(linesOfFile(content) == lines);
}

TEST(GetLine, EndOfFileEndsWithStatus34AndTheLineCount) {
    struct End {
        const char* content;
        const char* text;
    };
    const End ends[] = {
        {"", "\nUnexpected EOF: \"in\" line=0\n"},
        {"\n\n\r\n", "\nUnexpected EOF: \"in\" line=3\n"},
        {"#x\n", "\nUnexpected EOF: \"in\" line=1\n"},
        {"\r\x1A", "\nUnexpected EOF: \"in\" line=0\n"},
    };
    for (const End& end : ends) {
        SCOPED_TRACE(testing::PrintToString(end.content));
        const TestDirectory here({{"in", end.content}});
        EXPECT_EXIT(getLine(fileOpen("in", "r")), ExitedWithCode(34), Eq(end.text));
    }
    const TestDirectory here({{"in", "a\nb"}});
    EXPECT_EXIT(
        {
            FileRecord* file = fileOpen("./in", "r");
            for (;;) {
                getLine(file);
            }
        },
        ExitedWithCode(34), Eq("\nUnexpected EOF: \"./in\" line=1\n"));
}

TEST(GetLine, IgnoredEndOfFileGivesNoLineAgainAndAgain) {
    const TestDirectory here({{"in", "a\n"}});
    FileRecord* file = fileOpen("in", "r");
    pushIgnore(EOT_ERR);
    EXPECT_STREQ(getLine(file).text, "a");
    EXPECT_EQ(getLine(file).text, nullptr);
    EXPECT_EQ(getLine(file).text, nullptr);
    EXPECT_EQ(file->line, 1);
    fileClose(file);
}

TEST(GetLine, ReadFailureEndsWithStatus33) {
    const TestDirectory here({{"sub/", ""}});
    EXPECT_EXIT(getLine(fileOpen("sub", "r")), ExitedWithCode(33), Eq("\nFail to read: \"sub\" line=0\n"));
    // The end of the file may be ignored, a read failure is something else.
    EXPECT_EXIT(
        {
            pushIgnore(EOT_ERR);
            getLine(fileOpen("sub", "r"));
        },
        ExitedWithCode(33), Eq("\nFail to read: \"sub\" line=0\n"));
}

TEST(GetLine, IgnoredReadFailureGivesNoLine) {
    const TestDirectory here;
    FileRecord* file = fileOpen(".", "r");
    pushIgnore(RTXT_ERR);
    EXPECT_EQ(getLine(file).text, nullptr);
    fileClose(file);
}

TEST(GetLine, FailedAllocationEndsAsFailedText) {
    const TestDirectory here({{"in", std::string(600'000, 'x')}});
    for (const int number : {1, 2}) { // the first block, and the one it grows to
        SCOPED_TRACE(number);
        EXPECT_EXIT(
            {
                FileRecord* file = fileOpen("in", "r");
                failAllocation(number);
                getLine(file);
            },
            ExitedWithCode(12), "^\nAlloc Error: ");
    }
}

TEST(GetPiece, ReadsAsTheLibrary) {
    std::vector<std::string> texts = {
        "",
        "\n",
        "\n\n",
        "a",
        "a\n",
        "a\nb",
        "\ra\r\n\r",
        "# comment\n\x1A\nx\x1A",
        std::string("a\0b\nc\0\n\0\n\0", 10),
    };
    for (std::size_t length = 252; length < 260; ++length) {
        const std::string line(length, 'a');
        texts.push_back(line);
        texts.push_back(line + "\n");
        texts.push_back(line + "\nb");
        texts.push_back(line + "\n" + line + "\n");
        texts.push_back(line + line);
        texts.push_back(line + line + "\n\n");
        texts.push_back(line + std::string(1, '\0') + "b\n" + line);
        texts.push_back(std::string(length, '\0') + "\n" + line);
    }
    // Across the end of a block that is read ahead.
    for (const std::size_t blockEnd : blockEnds) {
        for (std::size_t before = 0; before < 4; ++before) {
            std::string text(blockEnd - before, 'p');
            for (std::size_t i = 99; i < text.size(); i += 100) {
                text[i] = '\n';
            }
            texts.push_back(text + "abc\ndef\n");
            texts.push_back(text + "\n\n");
            texts.push_back(text);
        }
    }
    for (const std::string& text : texts) {
        SCOPED_TRACE(testing::PrintToString(text.substr(0, 300)));
        const TestDirectory here({{"in", text}});
        for (const std::size_t size : {std::size_t{256}, std::size_t{2}, std::size_t{5}}) {
            FileRecord* file = fileOpen("in", "r");
            std::FILE* stream = std::fopen("in", "r");
            std::array<char, 256> piece{};
            std::array<char, 256> byLibrary{};
            for (;;) {
                piece.fill('~');
                byLibrary.fill('~');
                const bool more = std::fgets(byLibrary.data(), static_cast<int>(size), stream) != nullptr;
                ASSERT_EQ(getPiece(file, std::span(piece).first(size)), more);
                if (!more) {
                    break;
                }
                ASSERT_EQ(piece, byLibrary);
            }
            EXPECT_FALSE(getPiece(file, std::span(piece).first(size)));
            std::fclose(stream);
            fileClose(file);
        }
    }
}

TEST(GetPiece, GoesOnBehindALine) {
    const TestDirectory here({{"in", "first\r\nsecond\n\n#third"}});
    FileRecord* file = fileOpen("in", "r");
    std::array<char, 256> piece{};
    EXPECT_STREQ(getLine(file).text, "first");
    // The line ended at its carriage return.
    EXPECT_TRUE(getPiece(file, piece));
    EXPECT_STREQ(piece.data(), "\n");
    EXPECT_TRUE(getPiece(file, piece));
    EXPECT_STREQ(piece.data(), "second\n");
    EXPECT_TRUE(getPiece(file, piece));
    EXPECT_STREQ(piece.data(), "\n");
    EXPECT_TRUE(getPiece(file, piece));
    EXPECT_STREQ(piece.data(), "#third");
    EXPECT_FALSE(getPiece(file, piece));
    EXPECT_EQ(file->line, 0); // only getLine counts
    fileClose(file);
}

TEST(GetPiece, EndsAtAReadFailure) {
    const TestDirectory here;
    FileRecord* file = fileOpen(".", "r");
    std::array<char, 256> piece{};
    EXPECT_FALSE(getPiece(file, piece));
    fileClose(file);
}

TEST(GetWord, SplitsTextsAtWhiteSpace) {
    for (const Words& wording : wordings) {
        SCOPED_TRACE(testing::PrintToString(wording.content));
        EXPECT_EQ(wordsOf(wording.content), wording.words);
    }
}

TEST(GetWord, HandlesWordsAcrossAndBeyondBlocks) {
    std::vector<std::size_t> lengths = {600'000};
    for (const std::size_t end : blockSizes) {
        lengths.insert(lengths.end(), {end - 3, end - 2, end - 1, end, end + 1});
    }
    for (const std::size_t end : blockEnds) {
        lengths.insert(lengths.end(), {end - 3, end - 2, end - 1, end, end + 1});
    }
    for (const std::size_t length : lengths) {
        SCOPED_TRACE(length);
        const std::string longWord(length, 'x');
        const std::string blanks(length, ' ');
        EXPECT_EQ(wordsOf(longWord), (std::vector{longWord}));
        EXPECT_EQ(wordsOf(longWord + " second\nthird"), (std::vector{longWord, "second"s, "third"s}));
        EXPECT_EQ(wordsOf("a " + longWord + "\n"), (std::vector{"a"s, longWord}));
        EXPECT_EQ(wordsOf(blanks + "second third" + blanks), (std::vector{"second"s, "third"s}));
    }
}

TEST(GetWord, GoesOnBehindALine) {
    const TestDirectory here({{"in", "first line\nsecond third\n"}});
    FileRecord* file = fileOpen("in", "r");
    EXPECT_STREQ(getLine(file).text, "first line");
    EXPECT_STREQ(getWord(file).text, "second");
    EXPECT_STREQ(getWord(file).text, "third");
    EXPECT_EQ(getWord(file).text, nullptr);
    fileClose(file);
}
