// The runner's own tests: what a case file means, and that every kind of difference makes a case
// fail. The program of these cases is the shell.
#include "runner/case_file.hpp"
#include "runner/run_case.hpp"

#include <array>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using testing::AssertionFailure;
using testing::AssertionResult;
using testing::AssertionSuccess;

CaseFile parsed(const std::string& sections) {
    const ParsedCase result = parseCase("# What it pins.\n" + sections, "t.case");
    EXPECT_EQ(result.error, "");
    return result.file;
}

std::string parseError(const std::string& text) {
    return parseCase(text, "t.case").error;
}

CaseContent decoded(const CaseSection& section, const CaseNames& names = {}) {
    std::string error;
    CaseContent content = decodeSection(section, names, error);
    EXPECT_EQ(error, "");
    return content;
}

std::vector<std::string> words(const std::string& lines, const CaseNames& names = {}) {
    std::string error;
    std::vector<std::string> result = splitWords(parsed("--- args\n" + lines).args, names, error);
    EXPECT_EQ(error, "");
    return result;
}

std::string textOf(const std::string& lines) {
    return decoded(parsed("--- args\n--- file f\n" + lines).inputs.at(0)).bytes;
}

std::string hexOf(const std::string& lines) {
    return decoded(parsed("--- args\n--- hex f\n" + lines).inputs.at(0)).bytes;
}

// Runs `script` in the shell; `sections` follow the args of the case.
std::vector<std::string> runShell(const std::string& script, const std::string& sections,
                                  std::chrono::milliseconds limit = std::chrono::seconds(20)) {
    const CaseFile file = parsed("--- args\n-c \"" + script + "\"\n" + sections);
    return runCase(file, {.prefix = {}, .program = "/bin/sh", .limit = limit});
}

// Exactly one difference, and it says `text`.
AssertionResult failsWith(const std::vector<std::string>& differences, const std::string& text) {
    if (differences.size() == 1 && differences.front().find(text) != std::string::npos) {
        return AssertionSuccess();
    }
    AssertionResult failure = AssertionFailure() << differences.size() << " differences:";
    for (const std::string& difference : differences)
        failure << "\n" << difference;
    return failure;
}

TEST(ParseCase, KeepsEverySection) {
    const CaseFile file = parsed("--- args\na b\n--- file d/x.rsd\none\n--- hex y.tim\n10\n--- dir e\n"
                                 "--- cd d\n--- status 30\n--- stdout\nso\n--- stderr\n{notice}\nse\n"
                                 "--- out a.tmd\n41\n--- text-out a.h\nint\n");
    EXPECT_EQ(file.path, "t.case");
    ASSERT_EQ(file.inputs.size(), 2U);
    EXPECT_EQ(file.inputs[0].name, "d/x.rsd");
    EXPECT_FALSE(file.inputs[0].isHex);
    EXPECT_EQ(file.inputs[1].name, "y.tim");
    EXPECT_TRUE(file.inputs[1].isHex);
    EXPECT_EQ(file.directories, std::vector<std::string>{"e"});
    EXPECT_EQ(file.startDirectory, "d");
    EXPECT_EQ(file.status, 30);
    EXPECT_EQ(decoded(file.standardOutput).bytes, "so\n");
    EXPECT_EQ(decoded(file.standardError, {.directory = {}, .notice = "hello", .date = {}}).bytes,
              "hello\nse\n");
    ASSERT_EQ(file.outputs.size(), 2U);
    EXPECT_TRUE(file.outputs[0].isHex);
    EXPECT_FALSE(file.outputs[1].isHex);
}

TEST(ParseCase, LeftOutSectionsHaveDefaults) {
    const CaseFile file = parsed("--- args\n");
    EXPECT_EQ(file.status, 0);
    EXPECT_EQ(file.startDirectory, "");
    EXPECT_EQ(decoded(file.standardOutput).bytes, "");
    EXPECT_EQ(decoded(file.standardError, {.directory = {}, .notice = "n", .date = {}}).bytes, "n\n");
    EXPECT_TRUE(file.inputs.empty());
    EXPECT_TRUE(file.outputs.empty());
}

TEST(ParseCase, MalformedCasesAreRefusedWithTheirLine) {
    struct Row {
        std::string text;
        std::string error;
    };
    const std::vector<Row> rows = {
        {"", "t.case:1: no comment at the head says what the case pins"},
        {"--- args\n", "t.case:1: no comment at the head says what the case pins"},
        {"words\n", "t.case:1: a line before the first section begins with #"},
        {"# P.\n\n--- args\n", "t.case:2: a line before the first section begins with #"},
        {"# P.\n--- stdout\n", "t.case:1: no section args"},
        {"# P.\n--- args\n--- fiel x\n", "t.case:3: unknown section: fiel"},
        {"# P.\n--- args\n--- args\n", "t.case:3: duplicate section: args"},
        {"# P.\n--- args\n--- file x\n--- hex x\n", "t.case:4: duplicate section: in x"},
        {"# P.\n--- args\n--- out x\n--- text-out x\n", "t.case:4: duplicate section: out x"},
        {"# P.\n--- args\n--- status 0\n--- status 1\n", "t.case:4: duplicate section: status"},
        {"# P.\n--- args\n--- status 256\n", "t.case:3: an exit status is a number from 0 to 255"},
        {"# P.\n--- args\n--- status 1x\n", "t.case:3: an exit status is a number from 0 to 255"},
        {"# P.\n--- args\n--- status\n", "t.case:3: an exit status is a number from 0 to 255"},
        {"# P.\n--- args\n--- status 0\nx\n", "t.case:4: a section status has no content"},
        {"# P.\n--- args\n--- dir d\n\n", "t.case:4: a section dir has no content"},
        {"# P.\n--- args x\n", "t.case:2: a section args has no name"},
        {"# P.\n--- args\n--- hex x\n41 4\n", "t.case:4: bad hex: \"4\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- hex x\n4G\n", "t.case:4: bad hex: \"4G\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- hex x\n4141\n",
         "t.case:4: bad hex: \"4141\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- out x\n00*0\n",
         "t.case:4: bad hex: \"00*0\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- out x\n00*2x\n",
         "t.case:4: bad hex: \"00*2x\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- out x\n00*\n",
         "t.case:4: bad hex: \"00*\" (a byte is HH, repeated bytes HH*N)"},
        {"# P.\n--- args\n--- file x\na\\q\n", "t.case:4: unknown escape: \\q"},
        {"# P.\n--- args\n--- file x\n\n\\x4\n", "t.case:5: unknown escape: \\x4"},
        {"# P.\n--- args\n--- file x\n{notice}\n", "t.case:4: {notice} is not known before the run"},
        {"# P.\n--- args\n--- stdout\n{date}\n", "t.case:4: {date} stands in a text-out only"},
        {"# P.\n--- args\n\"a\nb\"\n", "t.case:3: a quoted word does not end on its line"},
        {"# P.\n--- args\n\"a\\\n", "t.case:3: a quoted word does not end"},
        {"# P.\n--- args\na\\x00b\n", "t.case:3: a word cannot hold \\x00"},
    };
    for (const Row& row : rows)
        EXPECT_EQ(parseError(row.text), row.error) << row.text;
}

TEST(ParseCase, AnInvisibleLineEndIsRefused) {
    for (const std::string end : {" ", "\t", "\r"}) {
        EXPECT_EQ(parseError("# P.\n--- args\n--- file x\na" + end + "\n"),
                  "t.case:4: a blank, tab or carriage return at the end of a line is written as "
                  "\\s, \\t or \\r");
    }
}

TEST(ParseCase, NamesStayBelowTheFreshDirectory) {
    for (const std::string name :
         {"", " ", " /x", " ../x", " a/../x", " ./x", " a//x", " a/", " x\\x00", " ."}) {
        for (const std::string kind : {"file", "hex", "dir", "cd", "out", "text-out"}) {
            EXPECT_EQ(parseError("# P.\n--- args\n--- " + kind + name + "\n"),
                      "t.case:3: a section " + kind +
                          " needs a name relative to the fresh directory, without . and ..");
        }
    }
    EXPECT_EQ(parsed("--- args\n--- file ..a/b\\sc\\x07\n").inputs.at(0).name, "..a/b c\x07");
    EXPECT_EQ(parseError("# P.\n--- args\n--- file x\\\n"), "t.case:3: a section's head is one line");
}

TEST(ReadCase, AMissingFileIsAnError) {
    EXPECT_EQ(readCase("/nowhere/x.case").error, "/nowhere/x.case:0: cannot be read");
}

TEST(DecodeText, EscapesStandForTheirBytes) {
    EXPECT_EQ(textOf("a\\r\\n\\t\\\\b\n"), "a\r\n\t\\b\n");
    EXPECT_EQ(textOf("\\x41\\xfF\\x00z\n"), std::string("A\xFF\0z\n", 5));
    EXPECT_EQ(textOf("a\\s\n"), "a \n");
}

TEST(DecodeText, EveryLineEndsInALineFeed) {
    EXPECT_EQ(textOf(""), "");
    EXPECT_EQ(textOf("\n"), "\n");
    EXPECT_EQ(textOf("a"), "a\n");
    EXPECT_EQ(textOf("a\n\n"), "a\n\n");
    EXPECT_EQ(textOf("# no comment\n---\n"), "# no comment\n---\n");
}

TEST(DecodeText, ABackslashAtTheLineEndTakesTheLineFeedAway) {
    EXPECT_EQ(textOf("a\\\nb\n"), "ab\n");
    EXPECT_EQ(textOf("a \\\n"), "a ");
    EXPECT_EQ(textOf("a\\r\\\nb\\\\\n"), "a\rb\\\n");
}

TEST(DecodeText, NamesAreReplacedUnlessEscaped) {
    const CaseNames names{.directory = "/tmp/x", .notice = "hello", .date = "12:00"};
    const CaseFile file = parsed("--- args\n--- text-out h\n{dir}/{dir} {notice} {date} {DIR} \\x7Bdir}\n");
    EXPECT_EQ(decoded(file.outputs.at(0), names).bytes, "/tmp/x//tmp/x hello 12:00 {DIR} {dir}\n");
}

TEST(DecodeText, MarksTellTheLineOfEveryByte) {
    const CaseContent content = decoded(parsed("--- args\n--- file f\nab\\\n\\n\nc\n").inputs.at(0));
    ASSERT_EQ(content.bytes, "ab\n\nc\n");
    ASSERT_EQ(content.marks.size(), 3U);
    EXPECT_EQ(content.marks[0].offset, 0U);
    EXPECT_EQ(content.marks[0].line, 4);
    EXPECT_EQ(content.marks[1].offset, 2U);
    EXPECT_EQ(content.marks[1].line, 5);
    EXPECT_EQ(content.marks[2].offset, 4U);
    EXPECT_EQ(content.marks[2].text, "c");
}

TEST(DecodeHex, BytesRepeatsAndComments) {
    EXPECT_EQ(hexOf(""), "");
    EXPECT_EQ(hexOf("41 4a\t4B  # not 4C\n\n# 00\n  4d\n"), "AJKM");
    EXPECT_EQ(hexOf("41*3 42*1 00*12 # 12 zeros\n"), "AAAB" + std::string(12, '\0'));
}

TEST(SplitWords, BlanksAndLineEndsSeparateWords) {
    EXPECT_EQ(words(""), std::vector<std::string>{});
    EXPECT_EQ(words("-o a.tmd \n\n  b\tc\n"), (std::vector<std::string>{"-o", "a.tmd", "b", "c"}));
    EXPECT_EQ(words("a\\\nb c\n"), (std::vector<std::string>{"ab", "c"}));
}

TEST(SplitWords, QuotesAndEscapesKeepBlanks) {
    EXPECT_EQ(words("\"a  b\" \"\" c\"d e\"f\n"), (std::vector<std::string>{"a  b", "", "cd ef"}));
    EXPECT_EQ(words("a\\sb \\x22 \\\\\n"), (std::vector<std::string>{"a b", "\"", "\\"}));
    EXPECT_EQ(words("\"a \\\nb\" c\n"), (std::vector<std::string>{"a b", "c"}));
}

TEST(SplitWords, TheFreshDirectoryIsOneWordWhateverItHolds) {
    EXPECT_EQ(words("{dir}/x \"{dir}\"\n", {.directory = "/t m/\"p", .notice = {}, .date = {}}),
              (std::vector<std::string>{"/t m/\"p/x", "/t m/\"p"}));
}

TEST(EscapeText, ShowsALineAsACaseFileHoldsIt) {
    EXPECT_EQ(escapeText("a b\\\tc \n", ""), "a b\\\\\\tc\\s");
    EXPECT_EQ(escapeText("(Reading a)  \r", ""), "(Reading a)  \\r\\");
    EXPECT_EQ(escapeText("\x01\xFF{dir}\n", ""), "\\x01\\xFF\\x7Bdir}");
    EXPECT_EQ(escapeText("in /tmp/x/a\n", "/tmp/x"), "in {dir}/a");
    EXPECT_EQ(escapeText("--- a\n", ""), "\\x2D-- a");
    EXPECT_EQ(escapeText("\n", ""), "");
}

TEST(RunCase, ACaseThatHoldsHasNoDifferences) {
    const std::string script = "echo notice >&2; cat i.txt; cat; printf AB > o.bin; pwd > o.txt; exit 3";
    EXPECT_EQ(runShell(script, "--- file i.txt\nin\n--- file d/e/f\nx\n--- dir empty\n--- status 3\n"
                               "--- stdout\nin\n--- out o.bin\n41 42\n--- text-out o.txt\n{dir}\n"),
              std::vector<std::string>{});
}

TEST(RunCase, StartsInTheNamedDirectory) {
    EXPECT_EQ(runShell("echo n >&2; pwd; echo x > ../o",
                       "--- cd a/b\n--- stdout\n{dir}/a/b\n--- text-out a/o\nx\n"),
              std::vector<std::string>{});
}

TEST(RunCase, AnOutputMayReplaceAnInput) {
    const std::string script = "echo n >&2; printf B > f";
    EXPECT_EQ(runShell(script, "--- file f\nold\n--- out f\n42\n"), std::vector<std::string>{});
    EXPECT_TRUE(
        failsWith(runShell(script, "--- file f\nold\n--- out f\n43\n"), "output f: first difference at 0x0"));
}

TEST(RunCase, AWrongByteFailsWithItsPlaceAndTheCasesLine) {
    EXPECT_EQ(
        runShell("echo n >&2; printf ABCDEFGHIJKLMNOPQRSTUVWXYZ > o",
                 "--- out o\n41 42 43 44 45 46 47 48 49   # A to I\n4A 4B 00 4D 4E   # J to N\n"
                 "4F 50 51 52 53 54 55 56 57 58 59 5A\n"),
        std::vector<std::string>{"t.case:6: output o: first difference at 0xb (26 bytes expected, 26 got)\n"
                                 "  expected  .. 44 45 46 47 48 49 4A 4B [00] 4D 4E 4F 50 51 52 53 54 ..\n"
                                 "  got       .. 44 45 46 47 48 49 4A 4B [4C] 4D 4E 4F 50 51 52 53 54 ..\n"
                                 "  case line 4A 4B 00 4D 4E   # J to N"});
}

TEST(RunCase, AShortAndALongOutputFail) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; printf A > o", "--- out o\n41 42\n"),
                          "first difference at 0x1 (2 bytes expected, 1 got)\n"
                          "  expected   41 [42]\n  got        41 [end]"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; printf AB > o", "--- out o\n41\n"),
                          "first difference at 0x1 (1 bytes expected, 2 got)\n"
                          "  expected   41 [end]\n  got        41 [42]"));
}

TEST(RunCase, AWrongLineFailsInTheCaseFilesForm) {
    EXPECT_EQ(runShell("echo n >&2; printf 'a\\\\nb \\\\nc\\\\n'", "--- stdout\na\nb\nc\n"),
              std::vector<std::string>{
                  "t.case:6: stdout: first difference in line 2\n  expected  b\n  got       b\\s"});
    EXPECT_TRUE(failsWith(runShell("echo n >&2; pwd > o", "--- text-out o\n{dir}/a\n"),
                          "output o: first difference in line 1\n  expected  {dir}/a\n  got       {dir}"));
    EXPECT_TRUE(
        failsWith(runShell("echo n >&2; printf 'a\\\\rb\\\\r' >&2", "--- stderr\n{notice}\na\\r\\\nc\\r\\\n"),
                  "stderr: first difference in line 3\n  expected  c\\r\\\n  got       b\\r\\"));
}

TEST(RunCase, AMissingOrAnExtraLineFails) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo a", "--- stdout\na\nb\n"),
                          "stdout: first difference in line 2\n  expected  b\n  got       (nothing more)"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo a", ""),
                          "stdout: first difference in line 1\n  expected  (nothing more)\n  got       a"));
    EXPECT_TRUE(
        failsWith(runShell("echo n >&2; printf a", "--- stdout\na\n"), "expected  a\n  got       a\\"));
}

TEST(RunCase, StandardErrorIsTheNoticeAlone) {
    EXPECT_TRUE(
        failsWith(runShell("echo n >&2; echo more >&2", ""),
                  "stderr: first difference in line 2\n  expected  (nothing more)\n  got       more"));
    EXPECT_TRUE(failsWith(runShell("echo >&2", ""), "stderr: there is no start notice"));
    EXPECT_TRUE(failsWith(runShell("printf n >&2", ""), "stderr: first difference in line 1"));
}

TEST(RunCase, AMissingFileFails) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2", "--- out sub/o\n41\n"), "output sub/o is missing"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; mkdir o", "--- out o\n41\n"), "output o is no plain file"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; ln -s i o", "--- file i\nA\n--- text-out o\nA\n"),
                          "output o is no plain file"));
}

TEST(RunCase, AnExtraFileOrDirectoryFails) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo x > d/e/o", "--- dir d/e\n"), "extra file: d/e/o"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo x > .o", ""), "extra file: .o"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; mkdir o", ""), "extra directory: o"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; ln -s nowhere o", ""), "extra file: o"));
}

TEST(RunCase, AChangedOrRemovedInputFails) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo x >> d/i", "--- file d/i\nin\n"),
                          "input d/i was changed: first difference in line 2\n"
                          "  expected  (nothing more)\n  got       x"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; printf A > i", "--- hex i\n42\n"), "input i was changed"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; rm i", "--- file i\nin\n"), "input i is missing"));
    EXPECT_TRUE(failsWith(runShell("echo n >&2; rmdir d", "--- dir d\n"), "directory d is missing"));
}

TEST(RunCase, AWrongStatusFails) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; exit 4", ""), "exit status 0 expected, got: exit status 4"));
    EXPECT_TRUE(
        failsWith(runShell("echo n >&2", "--- status 4\n"), "exit status 4 expected, got: exit status 0"));
}

TEST(RunCase, ASignalIsNoStatus) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; kill -ABRT $$", "--- status 134\n"),
                          "exit status 134 expected, got: signal 6 (Aborted)"));
}

TEST(RunCase, AnEndlessRunIsKilledWithItsChildren) {
    EXPECT_TRUE(failsWith(runShell("echo n >&2; sleep 50 & wait", "", std::chrono::milliseconds(200)),
                          "got: no end within the time limit (killed)"));
}

TEST(RunCase, EveryDifferenceIsReported) {
    EXPECT_EQ(runShell("echo n >&2; echo e >&2; echo o; echo x > x; exit 1", "--- out y\n00\n").size(), 5U);
}

TEST(RunCase, AProgramThatCannotStartFails) {
    const CaseFile file = parsed("--- args\n--- status 127\n--- stderr\n");
    EXPECT_TRUE(failsWith(runCase(file, {.prefix = {}, .program = "/nowhere/vexbind"}),
                          "cannot run /nowhere/vexbind: No such file or directory"));
}

TEST(RunCase, ThePrefixStandsBeforeTheProgram) {
    const CaseFile file = parsed("--- args\n-c \"echo $NAME >&2\"\n--- stderr\nvalue\n");
    EXPECT_EQ(runCase(file, {.prefix = {"env", "NAME=value"}, .program = "/bin/sh"}),
              std::vector<std::string>{});
}

TEST(RunCase, TheDateIsThatOfTheRun) {
    const std::string script =
        "echo n >&2; echo at $(date +%H:%M) $(date +%m/%d)/$(($(date +%Y) - 1900)) > o";
    EXPECT_EQ(runShell(script, "--- text-out o\nat {date}\n"), std::vector<std::string>{});
    EXPECT_TRUE(failsWith(runShell("echo n >&2; echo 12:00 01/01/96 > o", "--- text-out o\n{date}\n"),
                          "output o: first difference in line 1"));
}

TEST(RunCase, NothingIsLeftBehind) {
    const std::string place = makeFreshDirectory();
    const char* before = std::getenv("TMPDIR");
    const std::string kept = before == nullptr ? "" : before;
    ASSERT_EQ(setenv("TMPDIR", place.c_str(), 1), 0);
    const std::vector<std::string> differences =
        runShell("echo n >&2; pwd; mkdir -p a/b; echo x > a/b/c", "");
    if (before == nullptr) {
        unsetenv("TMPDIR");
    } else {
        setenv("TMPDIR", kept.c_str(), 1);
    }
    ASSERT_FALSE(differences.empty());
    EXPECT_TRUE(std::filesystem::exists(place));
    EXPECT_TRUE(std::filesystem::is_empty(place));
    removeFreshDirectory(place);
    EXPECT_FALSE(std::filesystem::exists(place));
}

TEST(CommandFromEnvironment, VariablesWinOverTheBuiltInProgram) {
    setenv("VEXBIND", "/a/vexbind", 1);
    setenv("VEXBIND_PREFIX", " valgrind  -q ", 1);
    const Command named = commandFromEnvironment("/b/vexbind");
    unsetenv("VEXBIND");
    unsetenv("VEXBIND_PREFIX");
    const Command builtIn = commandFromEnvironment("vexbind");
    EXPECT_EQ(named.program, "/a/vexbind");
    EXPECT_EQ(named.prefix, (std::vector<std::string>{"valgrind", "-q"}));
    EXPECT_EQ(builtIn.program, (std::filesystem::current_path() / "vexbind").string());
    EXPECT_TRUE(builtIn.prefix.empty());
}

} // namespace
