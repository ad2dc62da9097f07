// Ways to write the same thing as text.
#pragma once

#include "properties/random.hpp"
#include "properties/scene.hpp"

#include <string>
#include <vector>

namespace properties {

// What is varied; nothing without a choice.
struct Spelling {
    std::vector<std::string> lineEnds = {"\n"}; // one is drawn for each line
    bool openEnds = false;                      // the last line may have no end
    bool comments = false;                      // lines of comments, empty lines and end-of-file marks
    bool numbers = false;                       // numbers of the same value
    bool blanks = false;                        // more blanks and tabs, fewer where none are needed
    bool surplus = false;                       // words and lines that are not read
    Random random{0};
};

// Writes one text file, line by line.
class TextWriter {
  public:
    explicit TextWriter(Spelling& how) : spelling(how) {}

    // A line whose words stand as they are given.
    void line(const std::string& text);

    // A line that is read as words and numbers: blanks may stand in front of the words and between them, and
    // anything behind the last.
    void fields(const Words& words);

    // The same where the first word must come first.
    void fieldsAtOnce(const Words& words);

    [[nodiscard]] std::string real(const Decimal& value);
    [[nodiscard]] std::string integer(long value);
    [[nodiscard]] std::string hexadecimal(unsigned value);

    // The text of all lines.
    [[nodiscard]] std::string text();

  private:
    void end();
    void comment();
    [[nodiscard]] std::string blank();

    Spelling& spelling;
    std::string content;
    std::size_t lastEnd = 0; // where the end of the last line begins
};

// The plain text of a number: "-12.50".
[[nodiscard]] std::string plainReal(const Decimal& value);

} // namespace properties
