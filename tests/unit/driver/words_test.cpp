#include "driver/words.hpp"

#include "unit/failing_alloc.hpp"
#include "unit/library_calls.hpp"
#include "unit/support.hpp"

#include "utilkit/tracked.hpp"

#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

using namespace vexbind;
using testing::ExitedWithCode;

namespace {

using Texts = std::vector<std::string>;

// What a command line of the program's name and these words is collected into. Releases it.
Texts collected(Texts words) {
    words.insert(words.begin(), "vexbind");
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    WordList list = collect_words(static_cast<int>(arguments.size()), arguments.data());
    const Texts texts(list.words, list.words + list.count);
    free_words(list);
    EXPECT_EQ(list.words, nullptr);
    EXPECT_EQ(list.count, 0U);
    return texts;
}

} // namespace

TEST(CollectWords, KeepsWordsInTheirOrder) {
    const TestDirectory directory;
    const Texts words = {"-v", "a.rsd", "", "-s", "2", "-s", "b"};
    EXPECT_EQ(collected(words), words);
}

TEST(CollectWords, OfNoWordsHasNoList) {
    const TestDirectory directory;
    std::string name = "vexbind";
    char* arguments[] = {name.data(), nullptr};
    for (const int count : {0, 1}) {
        const WordList list = collect_words(count, arguments);
        EXPECT_EQ(list.words, nullptr);
        EXPECT_EQ(list.count, 0U);
    }
    EXPECT_EQ(allocCount, 0);
}

TEST(CollectWords, PutsTheWordsOfArgFilesInTheirPlace) {
    const TestDirectory directory({
        {"one.arg", "a.rsd -s\n2\tb.rsd\n"},
        {"two.ARG", "\n\n  c.rsd  \r\n\v\f d.rsd"},
        {"mixed.Arg", "e.rsd"},
        {"none.arg", " \n"},
    });
    EXPECT_EQ(collected({"one.arg"}), (Texts{"a.rsd", "-s", "2", "b.rsd"}));
    EXPECT_EQ(collected({"x", "one.arg", "y"}), (Texts{"x", "a.rsd", "-s", "2", "b.rsd", "y"}));
    EXPECT_EQ(collected({"two.ARG", "mixed.Arg"}), (Texts{"c.rsd", "d.rsd", "e.rsd"}));
    EXPECT_EQ(collected({"none.arg"}), Texts{});
    EXPECT_EQ(collected({"one.arg", "one.arg"}),
              (Texts{"a.rsd", "-s", "2", "b.rsd", "a.rsd", "-s", "2", "b.rsd"}));
}

TEST(CollectWords, KnowsArgFilesByTheirLastExtension) {
    const TestDirectory directory({{"a.b.arg", "x"}, {"arg", "no"}, {"c.args", "no"}, {"d.arg.txt", "no"}});
    EXPECT_EQ(collected({"a.b.arg", "arg", "c.args", "d.arg.txt", "e.arg/f"}),
              (Texts{"x", "arg", "c.args", "d.arg.txt", "e.arg/f"}));
}

TEST(CollectWords, ExpandsOneLevelOnly) {
    const TestDirectory directory({{"a.arg", "b.arg -id c.arg # \"d e\""}, {"b.arg", "never"}});
    EXPECT_EQ(collected({"a.arg"}), (Texts{"b.arg", "-id", "c.arg", "#", "\"d", "e\""}));
}

TEST(CollectWords, KeepsWordsOfAnyLength) {
    const std::string longWord(100'000, 'w');
    const TestDirectory directory({{"a.arg", "x " + longWord + "\n" + longWord + " y"}});
    EXPECT_EQ(collected({"a.arg"}), (Texts{"x", longWord, longWord, "y"}));
}

TEST(CollectWords, OpensTheNameAsItIsTyped) {
    const TestDirectory directory({{"low.arg", "low"}, {"up.ARG", "up"}});
    EXPECT_EQ(collected({"low.arg", "up.ARG"}), (Texts{"low", "up"}));
    // An extension of the list takes the place of itself only.
    EXPECT_EXIT(collected({"low.ARG"}), ExitedWithCode(30), testing::Eq("\nCannot open: \"low.ARG\"\n"));
    EXPECT_EXIT(collected({"up.arg"}), ExitedWithCode(30), testing::Eq("\nCannot open: \"up.arg\"\n"));
}

TEST(CollectWords, EndsTheRunAtAnArgFileThatIsMissing) {
    const TestDirectory directory;
    EXPECT_EXIT(collected({"x", "none.arg"}), ExitedWithCode(30),
                testing::Eq("\nCannot open: \"none.arg\"\n"));
    EXPECT_EXIT(collected({"None.Arg"}), ExitedWithCode(30), testing::Eq("\nCannot open: \"None.Arg\"\n"));
}

TEST(CollectWords, DoesNotExpandTheWordBehindId) {
    const TestDirectory directory({{"a.arg", "x y z"}});
    EXPECT_EQ(collected({"-id", "a.arg", "a.arg"}), (Texts{"-id", "a.arg", "x", "y", "z"}));
    EXPECT_EQ(collected({"-ID", "a.arg"}), (Texts{"-ID", "a.arg"}));
    // The word behind it is no "-id" of its own.
    EXPECT_EQ(collected({"-id", "-id", "a.arg"}), (Texts{"-id", "-id", "x", "y", "z"}));
}

TEST(CollectWords, OpensTheArgFileBehindIdToCount) {
    const TestDirectory directory;
    EXPECT_EXIT(collected({"-id", "none.arg"}), ExitedWithCode(30),
                testing::Eq("\nCannot open: \"none.arg\"\n"));
}

TEST(CollectWords, KeepsAnIdAtTheEnd) {
    const TestDirectory directory;
    EXPECT_EQ(collected({"a", "-id"}), (Texts{"a", "-id"}));
    EXPECT_EQ(collected({"-id"}), Texts{"-id"});
}

TEST(CollectWords, CountsTheListAndItsWords) {
    const TestDirectory directory({{"a.arg", "one two"}});
    collected({"abc", "a.arg"});
    // Three entries of 4 bytes; "abc", "one" and "two" with their ends.
    EXPECT_EQ(allocTotal, 12 + 4 + 4 + 4);
    EXPECT_EQ(allocCount, 4);
    EXPECT_EQ(freeCount, 4);
}

TEST(CollectWords, CountsTheWordBehindIdTwice) {
    const TestDirectory directory;
    collected({"-id", "a.prx"});
    EXPECT_EQ(allocTotal, 3 * 4 + 4 + 6);
    EXPECT_EQ(allocCount, 3);
    EXPECT_EQ(freeCount, 3);
}

TEST(CollectWords, FailsWhenTheListCannotBeHad) {
    const TestDirectory directory;
    std::string name = "vexbind";
    std::string word = "a";
    char* arguments[] = {name.data(), word.data(), word.data()};
    EXPECT_EXIT(
        {
            failAllocation(1);
            collect_words(3, arguments);
        },
        ExitedWithCode(10), testing::Eq("\nAlloc Error: \"char*\" 2 x 4(+0-0:sum=0)\n"));
    EXPECT_EXIT(
        {
            failAllocation(2);
            collect_words(3, arguments);
        },
        ExitedWithCode(13), testing::Eq("\nAlloc Error: \"a\" 2 x 1(+2-0:sum=10)\n"));
}

TEST(CollectWords, PutsAProjectsNamesBehindIdAndItsOwnName) {
    const TestDirectory directory({
        {"p.prj", "@PRJ940401\n1 second.rsd\n1 a.rsd\n\nno entry\n2\n-3 dir/b rest\n"},
        {"q.PRJ", "@PRJ940402\r\nx\r\n1 c.arg\r\n2 -s\r\n3 p.prj"},
        {"r.Prj", "@PRJ940401\nx\n"},
        {"a.arg", "p.prj x"},
        {"out/t.prj", "@PRJ940401\nx\n7 d"},
    });
    EXPECT_EQ(collected({"p.prj"}), (Texts{"-id", "p.prj", "a.rsd", "dir/b"}));
    // One level only.
    EXPECT_EQ(collected({"-v", "q.PRJ", "z"}), (Texts{"-v", "-id", "q.PRJ", "c.arg", "-s", "p.prj", "z"}));
    EXPECT_EQ(collected({"r.Prj"}), (Texts{"-id", "r.Prj"}));
    EXPECT_EQ(collected({"a.arg"}), (Texts{"p.prj", "x"}));
    EXPECT_EQ(collected({"./out/t.prj"}), (Texts{"-id", "./out/t.prj", "d"}));
    EXPECT_EQ(collected({"r.Prj", "p.prj"}), (Texts{"-id", "r.Prj", "-id", "p.prj", "a.rsd", "dir/b"}));
}

TEST(CollectWords, DoesNotExpandTheProjectBehindId) {
    const TestDirectory directory({{"p.prj", "@PRJ940401\nx\n1 a\n"}});
    EXPECT_EQ(collected({"-id", "p.prj", "p.prj"}), (Texts{"-id", "p.prj", "-id", "p.prj", "a"}));
    EXPECT_EQ(collected({"p.prj", "-Id", "p.prj"}), (Texts{"-id", "p.prj", "a", "-Id", "p.prj"}));
}

TEST(CollectWords, WarnsOfAnOldProjectInEachPass) {
    const TestDirectory directory({{"p.prj", "@PRJ940331\nx\n1 a\n"}});
    const std::string warning = "WARNING: \"p.prj\" has a bad version: @PRJ940331\n";
    testing::internal::CaptureStderr();
    EXPECT_EQ(collected({"p.prj"}), (Texts{"-id", "p.prj", "a"}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), warning + warning);
    // Behind "-id" it is counted, but not read again.
    testing::internal::CaptureStderr();
    EXPECT_EQ(collected({"-id", "p.prj"}), (Texts{"-id", "p.prj"}));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), warning);
}

TEST(CollectWords, EndsTheRunAtABadProject) {
    const TestDirectory directory({{"bad.prj", "@RSD940102\n"}, {"short.prj", "@PRJ940401\n"}});
    EXPECT_EXIT(collected({"none.prj"}), ExitedWithCode(30), testing::Eq("\nCannot open: \"none.prj\"\n"));
    EXPECT_EXIT(collected({"bad.PRJ"}), ExitedWithCode(30), testing::Eq("\nCannot open: \"bad.PRJ\"\n"));
    EXPECT_EXIT(collected({"x", "bad.prj"}), ExitedWithCode(3),
                testing::Eq("\n\"bad.prj\" is not a PRJ file\n"));
    EXPECT_EXIT(collected({"short.prj"}), ExitedWithCode(34),
                testing::Eq("\nUnexpected EOF: \"short.prj\" line=1\n"));
    EXPECT_EXIT(collected({"-id", "bad.prj"}), ExitedWithCode(3),
                testing::Eq("\n\"bad.prj\" is not a PRJ file\n"));
}

TEST(CollectWords, CountsAProjectsFileInEachPass) {
    const TestDirectory directory({{"p.prj", "@PRJ940401\nx\n1 a.rsd\n"}});
    collected({"p.prj"});
    // Three entries of 4 bytes; "-id", "p.prj" and "a.rsd" with their ends; twice the file's record and
    // names.
    EXPECT_EQ(allocTotal, 12 + 4 + 6 + 6 + 2 * (20 + 6 + 255));
    EXPECT_EQ(allocCount, 1 + 3 + 2 * 3);
    EXPECT_EQ(freeCount, 1 + 3 + 2 * 3);
}

// The list has room for the words that were counted.
TEST(CollectWords, LeavesOutWhatAFileGainsAfterItWasCounted) {
    const TestDirectory directory({{"a.arg", "x y"}});
    int openings = 0;
    const BeforeOpening hook([&](const char*) {
        ++openings;
        if (openings == 2) {
            writeFile("a.arg", "x y z");
        }
        return true;
    });
    EXPECT_EQ(collected({"a.arg"}), (Texts{"x", "y"}));
    EXPECT_EQ(openings, 2);
}
