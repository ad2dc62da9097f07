// The same scene written in another way comes out the same.
#include "properties/runs.hpp"

#include <gtest/gtest.h>

namespace properties {
namespace {

// The scene as it is against the scene with its texts spelled in another way.
void expectSameSpelled(const std::function<void(Spelling&)>& vary) {
    std::size_t changed = 0;
    const std::size_t scenes = forSomeScenes([&](SceneTest& test) {
        const Result plain = test.convert(test.scene);
        Spelling spelling;
        spelling.random = Random(test.random.next());
        vary(spelling);
        const std::vector<File> files = filesOf(test.scene, spelling);
        changed += files == filesOf(test.scene) ? 0 : 1;
        test.expectSame(test.convert(files, wordsOf(test.scene)), plain);
    });
    expectTelling(changed, scenes);
}

// Line ends are drawn for each line.
std::string withLineEnds(const std::string& text, const std::vector<std::string>& ends, Random& random) {
    std::string result;
    for (const char byte : text)
        result += byte == '\n' ? random.pick(ends) : std::string(1, byte);
    return result;
}

TEST(SameText, LineEndCr) {
    expectSameSpelled([](Spelling& spelling) { spelling.lineEnds = {"\r"}; });
}

TEST(SameText, LineEndCrLf) {
    expectSameSpelled([](Spelling& spelling) { spelling.lineEnds = {"\r\n"}; });
}

TEST(SameText, MixedLineEnds) {
    expectSameSpelled([](Spelling& spelling) {
        spelling.lineEnds = {"\n", "\r", "\r\n", "\n\r", "\n\n"};
        spelling.openEnds = true;
    });
}

// The entries of a PRJ file end in line feeds; words of an ARG file end in any blank.
TEST(SameText, LineEndsOfProjectAndArgFile) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = test.scene;
        if (!scene.inArgFile)
            scene.inArgFile = makeSlice(test.random, scene);
        const Result plain = test.convert(scene);
        std::vector<File> files = filesOf(scene);
        for (File& file : files) {
            if (file.name == projectName)
                file.content = withLineEnds(file.content, {"\n", "\r\n"}, test.random);
            if (file.name == argName)
                file.content =
                    withLineEnds(file.content, {"\n", "\r", "\r\n", " ", "\t", " \n\n"}, test.random);
        }
        test.expectSame(test.convert(files, wordsOf(scene)), plain);
    });
}

TEST(SameText, CommentsAndEmptyLines) {
    expectSameSpelled([](Spelling& spelling) { spelling.comments = true; });
}

TEST(SameText, Numbers) {
    expectSameSpelled([](Spelling& spelling) { spelling.numbers = true; });
}

TEST(SameText, Blanks) {
    expectSameSpelled([](Spelling& spelling) { spelling.blanks = true; });
}

TEST(SameText, SurplusWordsAndLines) {
    expectSameSpelled([](Spelling& spelling) { spelling.surplus = true; });
}

TEST(SameText, EverythingAtOnce) {
    expectSameSpelled([](Spelling& spelling) {
        spelling.lineEnds = {"\n", "\r", "\r\n"};
        spelling.openEnds = true;
        spelling.comments = true;
        spelling.numbers = true;
        spelling.blanks = true;
        spelling.surplus = true;
    });
}

} // namespace
} // namespace properties
