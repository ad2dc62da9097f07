// The same scene named in another way on the command line, and found in another way, comes out the same.
#include "properties/expect.hpp"
#include "properties/runs.hpp"

#include <algorithm>
#include <array>

#include <gtest/gtest.h>

namespace properties {
namespace {

// Names all objects anew, in the project too.
void renameObjects(Scene& scene, const std::function<void(Object&)>& rename) {
    for (Object& object : scene.objects) {
        const std::string word = object.word;
        rename(object);
        if (!scene.project)
            continue;
        for (ProjectLine& line : scene.project->lines) {
            if (line.id && line.text == word)
                line.text = object.word;
        }
    }
}

TEST(SameWords, ArgFile) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        const Result plain = test.convert(scene);
        scene.inArgFile = makeSlice(test.random, scene);
        test.expectSame(test.convert(scene), plain);
    });
}

// A project against -id and the names in it.
TEST(SameWords, Project) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        std::erase_if(scene.options, [](const Option& option) { return option.name == "-id"; });
        Project project;
        project.namesInputs = true;
        const std::size_t count = 1 + test.random.below(scene.inputs.size());
        for (std::size_t i = 0; i < count; ++i) {
            Input& input = scene.inputs[i];
            input.before.clear();
            const int id = test.random.between(-3, 30);
            project.lines.push_back({id, input.object ? scene.objects[*input.object].word : input.missing});
        }
        scene.project = project;
        const Result named = test.convert(scene);
        scene.project->namesInputs = false;
        scene.options.push_back({"-id", {projectName}});
        test.expectSame(named, test.convert(scene));
    });
}

std::string withOtherCase(std::string text, Random& random) {
    for (char& letter : text) {
        if (random.oneIn(2))
            letter = toUpper(std::string(1, letter)).front();
    }
    return text;
}

// What makes no difference to the TMD stands in front of what does.
TEST(SameWords, OptionCase) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        scene.options.insert(scene.options.begin(), {{"-v", {}}, {"-info", {}}});
        const Result plain = test.convert(scene);
        for (Option& option : scene.options)
            option.name = withOtherCase(option.name, test.random);
        const Result other = test.convert(scene);
        test.expectSame(other, plain);
        test.expectText("the standard output", other.ending.output, plain.ending.output);
    });
}

TEST(SameWords, AbsoluteNames) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        renameObjects(scene, nameFilesPlainly);
        const Result relative = test.convert(scene);
        renameObjects(scene, [&](Object& object) { nameFilesAbsolutely(scene.root, object); });
        for (Option& option : scene.options) {
            if (option.name == "-o")
                option.values[0] = scene.root + "/" + option.values[0];
        }
        Words words = wordsOf(scene);
        for (std::string& word : words) {
            if (word == projectName)
                word = scene.root + "/" + word;
        }
        test.expectSame(test.convert(filesOf(scene), words), relative);
    });
}

// Names that need a search for the file against the file's own name. The list of IDs has the names as they
// were given, so that it differs.
TEST(SameWords, FoundNames) {
    forSomeScenes([](SceneTest& test) {
        const Result found = test.convert(test.scene);
        Scene scene = test.scene;
        renameObjects(scene, nameFilesPlainly);
        const Result plain = test.convert(scene);
        if (test.expectSuccess(found) && test.expectSuccess(plain))
            test.expectText("the TMD", *found.tmd, *plain.tmd);
    });
}

TEST(SameWords, StartDirectory) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        renameObjects(scene, nameFilesPlainly);
        const Result here = test.convert(scene);
        renameObjects(scene, [](Object& object) { object.word = "../../" + object.word; });
        Words words = wordsOf(scene);
        for (std::string& word : words) {
            if (word == projectName)
                word = "../../" + word;
        }
        test.expectSame(test.convert(filesOf(scene), words, "other/place"), here);
    });
}

TEST(SameWords, VerboseAndInfo) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        std::erase_if(scene.options,
                      [](const Option& each) { return each.name == "-v" || each.name == "-info"; });
        const Result quiet = test.convert(scene);
        test.expectText("the standard output", quiet.ending.output, "");
        const std::size_t which = test.random.below(3);
        if (which != 0)
            scene.options.insert(scene.options.begin(), {"-v", {}});
        if (which != 1)
            scene.options.push_back({"-info", {}});
        const Result loud = test.convert(scene);
        test.expectSame(loud, quiet);
        if (loud.ending.output.empty())
            test.fail("nothing is on the standard output");
    });
}

// Over the output of the run before, or over something longer.
TEST(SameWords, Twice) {
    forSomeScenes([](SceneTest& test) {
        const Words words = wordsOf(test.scene);
        const Result once = test.convert(test.scene);
        test.expectSame(test.convertAgain(words), once);
        test.write({expect(test.scene).settings.output, std::string(100000, '\xA5')});
        test.expectSame(test.convertAgain(words), once);
    });
}

// Settings that later ones replace; of several -id the first counts.
TEST(SameWords, OverriddenOptions) {
    forSomeScenes([](SceneTest& test) {
        Scene scene = withoutArgFile(test.scene);
        const Result plain = test.convert(scene);
        std::vector<Option>& options = scene.options;
        const auto has = [&](std::initializer_list<const char*> names) {
            return std::any_of(options.begin(), options.end(), [&](const Option& each) {
                return std::find(names.begin(), names.end(), each.name) != names.end();
            });
        };
        // Without a later one, the default follows.
        std::vector<Option> front = {
            {"-sa", {"3.5"}}, {"-s", {"16"}}, {"-t", {"7", "-8", "9"}}, {"-o", {"no.tmd"}}};
        if (!has({"-s", "-sc", "-sa"}))
            front.push_back({"-sc", {"1"}});
        if (!has({"-t"}))
            front.push_back({"-t", {"0", "0", "0"}});
        if (!has({"-o"}))
            front.push_back({"-o", {"a.tmd"}});
        if (has({"-a", "-b"}))
            front.push_back({test.random.oneIn(2) ? "-a" : "-b", {}});
        options.insert(options.begin(), front.begin(), front.end());
        if (scene.project && !scene.project->namesInputs)
            options.push_back({"-id", {"none"}});
        test.expectSame(test.convert(scene), plain);
    });
}

} // namespace
} // namespace properties
