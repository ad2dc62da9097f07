// The manuals: their examples print what is shown, their options and messages are those of the sources, and
// mandoc has nothing to say against them. packet_tables_test compares the packets, status_test the exit
// statuses.
#include "docs/examples.hpp"
#include "docs/mdoc.hpp"
#include "runner/run_case.hpp"
#include "utilkit/errors.hpp"

#include <algorithm>
#include <cstddef>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace {

const std::string programPage = VEXBIND_MAN "/vexbind.1";
const std::string formatsPage = VEXBIND_MAN "/vexbind.5";

std::vector<Example> examplesOf(const std::string& page) {
    std::vector<Example> examples;
    for (const Display& display : readDisplays(readWholeFile(page))) {
        const auto isCommand = [](const std::string& line) { return line.starts_with("$ "); };
        if (std::any_of(display.lines.begin(), display.lines.end(), isCommand)) {
            takeExamples(display.lines, examples);
        }
    }
    return examples;
}

TEST(Manual, ExamplesOfTheProgramPrintWhatIsShown) {
    const std::vector<Example> examples = examplesOf(programPage);
    ASSERT_GE(examples.size(), 20U);
    expectExamples(examples);
}

TEST(Manual, ExamplesOfTheFormatsPrintWhatIsShown) {
    const std::vector<Example> examples = examplesOf(formatsPage);
    ASSERT_GE(examples.size(), 8U);
    expectExamples(examples);
}

// The files that the page shows convert without a warning when they stand in the places of the crate's.
TEST(Manual, FilesThatAreShownConvert) {
    const std::map<std::string, std::string> places = {
        {"RSD", "crate.rsd"}, {"PLY", "crate.ply"}, {"MAT", "crate.mat"}, {"PRJ", "scene.prj"}};
    std::vector<Example> examples = {{.command = "cd samples", .printed = ""}};
    for (const Display& display : readDisplays(readWholeFile(formatsPage))) {
        if (places.contains(display.section)) {
            std::string command = "cat > " + places.at(display.section) + " <<'end'\n";
            for (const std::string& line : display.lines) {
                command += line + "\n";
            }
            examples.push_back({.command = command + "end", .printed = ""});
        }
    }
    ASSERT_EQ(examples.size(), 1 + places.size());
    examples.push_back({.command = "vexbind scene.prj; echo status $?",
                        .printed = "vexbind: RSD to TMD model converter\nstatus 0\n"});
    examples.push_back({.command = "tail -n 4 a.h",
                        .printed = "\t10,\t/* cube */\n\t20,\t/* crate */\n\t30,\t/* lamp */\n};\n"});
    expectExamples(examples);
}

// An option's values, by their names, and whether it may stand between names.
struct Option {
    std::vector<std::string> values;
    bool betweenNames = false;
};

using Options = std::map<std::string, Option>;

// The options that the page describes.
Options describedOptions() {
    Options options;
    for (const Item& item : itemsOf(readWholeFile(programPage), "OPTIONS")) {
        const std::vector<std::string> words = wordsOf(item.head);
        if (words.size() < 2 || words[0] != "Fl" || (words.size() > 2 && words[2] != "Ar")) {
            ADD_FAILURE() << "no head of an option: " << item.head;
            continue;
        }
        Option option;
        option.values.assign(words.begin() + std::min<std::ptrdiff_t>(3, std::ssize(words)), words.end());
        option.betweenNames = std::count(item.lines.begin(), item.lines.end(), "Also between names.") == 1;
        EXPECT_TRUE(options.emplace("-" + words[1], option).second) << words[1] << " is described twice";
    }
    return options;
}

// The rows of the table in src/driver/options.cpp, by name: the number of the values, and whether the option
// may stand between names.
std::map<std::string, std::pair<std::size_t, bool>> optionsOfTheCode() {
    std::map<std::string, std::pair<std::size_t, bool>> options;
    const std::string source = readWholeFile(VEXBIND_SOURCES "/driver/options.cpp");
    const std::regex row(R"re(\.name = "(-\w+)", \.values = (\d+), \.betweenNames = (true|false))re");
    for (std::sregex_iterator found(source.begin(), source.end(), row), end; found != end; ++found) {
        options[(*found)[1]] = {std::stoul((*found)[2]), (*found)[3] == "true"};
    }
    return options;
}

TEST(Manual, OptionsAreThoseOfTheCode) {
    std::map<std::string, std::pair<std::size_t, bool>> described;
    for (const auto& [name, option] : describedOptions()) {
        described[name] = {option.values.size(), option.betweenNames};
    }
    ASSERT_GE(described.size(), 11U);
    EXPECT_EQ(described, optionsOfTheCode());
}

// The lines "\t-o  file-name ... Set output file name" of the help text.
TEST(Manual, OptionsOfTheHelpTextAreDescribedByTheSameWords) {
    const Options described = describedOptions();
    const std::string source = readWholeFile(VEXBIND_SOURCES "/driver/usage.cpp");
    const std::regex line(R"re("\\t(-\w+) +(.*?) *\.\.\. )re");
    std::size_t lines = 0;
    for (std::sregex_iterator found(source.begin(), source.end(), line), end; found != end;
         ++found, ++lines) {
        const auto option = described.find((*found)[1]);
        ASSERT_NE(option, described.end()) << (*found)[1];
        EXPECT_EQ(option->second.values, wordsOf((*found)[2])) << (*found)[1];
    }
    EXPECT_EQ(lines, 6U);
}

TEST(Manual, SynopsisHasEveryOption) {
    std::set<std::string> named;
    std::istringstream lines(readWholeFile(programPage));
    bool inside = false;
    for (std::string line; std::getline(lines, line);) {
        inside = line.starts_with(".Sh ") ? line == ".Sh SYNOPSIS" : inside;
        std::string before;
        for (const std::string& word : inside ? wordsOf(line) : std::vector<std::string>{}) {
            if (before == "Fl" || (before == "|" && word != "Fl")) {
                named.insert("-" + word);
            }
            before = word;
        }
    }
    std::set<std::string> all;
    for (const auto& [name, option] : optionsOfTheCode()) {
        all.insert(name);
    }
    EXPECT_EQ(named, all);
}

TEST(Manual, EveryOptionHasAnExample) {
    std::set<std::string> used;
    for (const Example& example : examplesOf(programPage)) {
        const std::vector<std::string> words = wordsOf(example.command);
        const auto end = std::find(words.begin(), words.end(), "|");
        if (words.front() == "vexbind") {
            used.insert(words.begin(), end);
        }
    }
    for (const auto& [name, option] : optionsOfTheCode()) {
        EXPECT_TRUE(used.contains(name)) << name;
    }
}

// A pattern for what a message prints: its literal text, with anything in the place of each value.
std::regex patternOf(std::string text) {
    text.erase(0, text.find_first_not_of('\n'));
    text.erase(text.find_last_not_of('\n') + 1);
    text = std::regex_replace(text, std::regex("\t"), " ");
    std::string pattern;
    std::smatch found;
    const std::regex value("%l?[sduG]");
    while (std::regex_search(text, found, value)) {
        pattern += std::regex_replace(found.prefix().str(), std::regex(R"([[\](){}.*+?^$|\\])"), R"(\$&)");
        pattern += "[^ ]+";
        text = found.suffix().str();
    }
    pattern += std::regex_replace(text, std::regex(R"([[\](){}.*+?^$|\\])"), R"(\$&)");
    return std::regex(pattern);
}

TEST(Manual, MessagesAreThoseOfTheCode) {
    using namespace vexbind;
    // All texts of utilkit/errors.hpp but the prefix of the warnings, the leak that nobody reports, and the
    // explanation that goes with another.
    const std::string clut = std::string(CLUT_MSG) + CLUT_X_MSG;
    const std::vector<std::string> messages = {
        OPEN_ERR,   ALC_ERR,  EOF_ERR,     READ_ERR,        WRIT_ERR,        EOT_ERR,   RTXT_ERR,
        ARG_ERR,    FORM_ERR, VER_ERR,     SYN_ERR,         INDEX_ERR,       CLOSE_ERR, SEEK_ERR,
        GETCWD_ERR, PATH_ERR, MATLIST_ERR, SCALE_ERR,       OPTION_ERR,      clut,      TEXTURE_MSG,
        PIXEL_MSG,  NTEX_MSG, RANGE_MSG,   OLD_VERSION_MSG, NO_MATERIAL_MSG,
    };
    const std::string source = readWholeFile(VEXBIND_SOURCES "/utilkit/errors.hpp");
    const std::regex definition(R"(inline constexpr char \w+\[\] =)");
    const auto texts = std::distance(std::sregex_iterator(source.begin(), source.end(), definition), {});
    ASSERT_EQ(std::ssize(messages), texts - 3) << "a message is missing in this test";

    std::multiset<std::string> listed;
    for (const Item& item : itemsOf(readWholeFile(programPage), "DIAGNOSTICS")) {
        const std::string prefix = item.head.starts_with(WARN_MSG) ? WARN_MSG : "";
        listed.insert(item.head.substr(prefix.size()));
    }
    EXPECT_EQ(listed.size(), messages.size());
    for (const std::string& message : messages) {
        const std::regex pattern = patternOf(message);
        EXPECT_EQ(std::count_if(listed.begin(), listed.end(),
                                [&](const std::string& head) { return std::regex_match(head, pattern); }),
                  1)
            << message;
    }
}

// Runs a command in the folder of the pages, where mandoc finds each when the other refers to it.
Outcome runInTheFolder(const std::string& command, std::string& printed) {
    const std::string outputs = makeFreshDirectory();
    const Outcome outcome = runProgram({.prefix = {}, .program = "/bin/sh"}, {"-c", "exec 2>&1\n" + command},
                                       VEXBIND_MAN, outputs + "/out", outputs + "/err");
    printed = readWholeFile(outputs + "/out");
    removeFreshDirectory(outputs);
    return outcome;
}

TEST(Manual, MandocFindsNothing) {
    std::string printed;
    if (runInTheFolder("command -v mandoc", printed).status != 0) {
        GTEST_SKIP() << "mandoc is not here: scripts/setup test installs it";
    }
    const Outcome outcome = runInTheFolder("mandoc -Tlint -Wall vexbind.1 vexbind.5", printed);
    EXPECT_EQ(describeOutcome(outcome), "exit status 0");
    EXPECT_EQ(printed, "");
}

TEST(Manual, PagesFitATerminal) {
    std::string printed;
    if (runInTheFolder("command -v mandoc", printed).status != 0) {
        GTEST_SKIP() << "mandoc is not here: scripts/setup test installs it";
    }
    const Outcome outcome = runInTheFolder("mandoc -Tascii vexbind.1 vexbind.5", printed);
    EXPECT_EQ(describeOutcome(outcome), "exit status 0");
    std::istringstream lines(std::regex_replace(printed, std::regex(".\b"), ""));
    std::size_t count = 0;
    for (std::string line; std::getline(lines, line); ++count) {
        EXPECT_LE(line.size(), 80U) << line;
    }
    EXPECT_GT(count, 500U);
}

} // namespace
