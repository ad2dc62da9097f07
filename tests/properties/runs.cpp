#include "properties/runs.hpp"

#include "properties/format.hpp"
#include "support/sanitized.hpp"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include <gtest/gtest.h>

namespace fs = std::filesystem;

namespace properties {

namespace {

constexpr std::size_t mostFailures = 3; // scenes, after which a test makes no more runs
constexpr std::size_t mostShown = 6000; // bytes of a scene's files in a message

// Numbers from the environment; a name that is not there leaves the value as it is.
std::uint64_t numberNamed(const char* name, std::uint64_t otherwise) {
    const char* text = std::getenv(name);
    if (text == nullptr)
        return otherwise;
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(text, &end, 0);
    EXPECT_TRUE(end != text && *end == '\0') << name << " is no number: " << text;
    return number;
}

std::optional<std::string> contentOf(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return {};
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

// Names are from `folder`, absolute ones aside.
std::string pathFrom(const std::string& folder, const std::string& name) {
    return name.starts_with("/") ? name : folder + "/" + name;
}

void writeFile(const std::string& directory, const File& file) {
    const std::string path = directory + "/" + file.name;
    std::ofstream out(path, std::ios::binary);
    if (!out) {
        fs::create_directories(folderOf(path));
        out.open(path, std::ios::binary);
    }
    out << file.content;
}

const File* findFile(const std::vector<File>& files, const std::string& name) {
    const auto found =
        std::find_if(files.begin(), files.end(), [&](const File& each) { return each.name == name; });
    return found == files.end() ? nullptr : &*found;
}

// The words with those of an ARG file in its place.
Words expand(const Words& words, const std::vector<File>& files) {
    Words all;
    for (const std::string& word : words) {
        const File* file = word.ends_with(argName) ? findFile(files, argName) : nullptr;
        if (file == nullptr) {
            all.push_back(word);
            continue;
        }
        std::istringstream content(file->content);
        all.insert(all.end(), std::istream_iterator<std::string>(content), {});
    }
    return all;
}

// What the last -o says.
std::string outputOf(const Words& words, const std::vector<File>& files) {
    const Words all = expand(words, files);
    const auto last =
        std::find_if(all.rbegin(), all.rend(), [](const std::string& word) { return toLower(word) == "-o"; });
    return last == all.rend() ? "a.tmd" : *last.base();
}

// Line ends and what is no text can be seen.
std::string visible(const std::string& text) {
    std::string shown;
    for (const char byte : text) {
        const auto value = static_cast<unsigned char>(byte);
        if (byte == '\n') {
            shown += "\\n\n";
        } else if (byte == '\r') {
            shown += "\\r";
        } else if (value < ' ' || value > '~') {
            shown += format("\\x%02X", value);
        } else {
            shown += byte;
        }
    }
    return shown;
}

std::string firstDifference(const std::string& got, const std::string& wanted) {
    const auto [at, other] = std::mismatch(got.begin(), got.end(), wanted.begin(), wanted.end());
    const auto around = [](const std::string& text, std::ptrdiff_t place) {
        const std::size_t from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(place - 20, 0));
        return visible(text.substr(from, 60));
    };
    const std::ptrdiff_t place = at - got.begin();
    return "byte " + std::to_string(place) + " of " + std::to_string(got.size()) + " and " +
           std::to_string(wanted.size()) + ":\n" + around(got, place) + "\n--- expected\n" +
           around(wanted, place);
}

// The entries of a list of IDs, behind its head.
std::string entriesOf(const std::optional<std::string>& list) {
    const std::size_t head = list ? list->find("{\n") : std::string::npos;
    return head == std::string::npos ? "" : list->substr(head);
}

// Runs `test` for scene number `first` and every `step`th after it; how many that were.
std::size_t forScenes(std::size_t first, std::size_t step, const Test& test) {
    ForkedRuns& runs = freshRuns();
    EXPECT_NE(runs.directory(), "");
    const std::uint64_t seed = numberNamed("VEXBIND_SEED", 1);
    std::size_t end = numberNamed("VEXBIND_SCENES", 1000);
    if (std::getenv("VEXBIND_SCENE") != nullptr) {
        first = numberNamed("VEXBIND_SCENE", 0);
        end = first + 1;
    }
    std::size_t scenes = 0;
    std::size_t failures = 0;
    for (std::size_t number = first; number < end && failures < mostFailures; number += step) {
        SceneTest one(runs, seed, number);
        test(one);
        ++scenes;
        failures += one.failed() ? 1 : 0;
    }
    return scenes;
}

} // namespace

TmdFile readResult(const Result& result) {
    const std::string bytes = result.tmd.value_or("");
    return readTmd({reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size()});
}

SceneTest::SceneTest(ForkedRuns& in, std::uint64_t seed, std::size_t number)
    : scene(makeScene(seed, number, fs::canonical(in.directory()).string())),
      random(~seed + std::uint64_t{0x5851F42D} * number), runs(in),
      label("VEXBIND_SEED=" + std::to_string(seed) + " VEXBIND_SCENE=" + std::to_string(number)) {}

Result SceneTest::convert(const Scene& other) {
    return convert(filesOf(other), wordsOf(other));
}

Result SceneTest::convert(const std::vector<File>& files, const Words& words, const std::string& start) {
    const std::string from = joinPath(runs.directory(), start);
    makeFiles(files);
    fs::create_directories(folderOf(pathFrom(from, outputOf(words, files))));
    fs::create_directories(from);
    return convertAgain(words, start);
}

// Only what is not there as it should be is written: that takes as long as a run.
void SceneTest::makeFiles(const std::vector<File>& files) {
    if (lastFiles.empty())
        runs.clear();
    for (const std::string& output : lastOutputs)
        fs::remove(output);
    for (const File& file : lastFiles) {
        if (findFile(files, file.name) == nullptr)
            fs::remove(runs.directory() + "/" + file.name);
    }
    for (const File& file : files) {
        const File* last = findFile(lastFiles, file.name);
        if (last == nullptr || last->content != file.content)
            writeFile(runs.directory(), file);
    }
    lastFiles = files;
}

Result SceneTest::convertAgain(const Words& words, const std::string& start) {
    lastWords = words;
    const std::string from = joinPath(runs.directory(), start);
    const std::string output = outputOf(words, lastFiles);
    lastOutputs = {pathFrom(from, output), from + "/" + baseOf(output) + ".h"};
    Result result;
    result.ending = runs.run(words, {.startDirectory = start, .keepsOutput = true});
    result.tmd = contentOf(lastOutputs[0]);
    result.idList = contentOf(lastOutputs[1]);
    return result;
}

void SceneTest::write(const File& file) {
    writeFile(runs.directory(), file);
}

Words SceneTest::newFiles() const {
    Words names;
    const fs::path directory = runs.directory();
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(directory)) {
        const std::string name = entry.path().lexically_relative(directory).string();
        if (entry.is_regular_file() && findFile(lastFiles, name) == nullptr)
            names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool SceneTest::expectSuccess(const Result& result) {
    const bool good = result.ending.signal == 0 && result.ending.status == 0 && result.tmd.has_value();
    if (!good)
        fail(describeEnding(result.ending) + (result.tmd ? "" : ", no TMD") + "\n" +
             visible(result.ending.errors));
    return good;
}

void SceneTest::expectText(const std::string& what, const std::string& got, const std::string& wanted) {
    if (got != wanted)
        fail(what + " differs at " + firstDifference(got, wanted));
}

void SceneTest::expectSame(const Result& result, const Result& other) {
    if (!expectSuccess(result) || !expectSuccess(other))
        return;
    expectText("the TMD", *result.tmd, *other.tmd);
    expectText("the ID list", entriesOf(result.idList), entriesOf(other.idList));
}

void SceneTest::fail(const std::string& fault) {
    hasFailed = true;
    std::string files;
    for (const File& file : lastFiles)
        files += "--- " + file.name + "\n" + visible(file.content) + "\n";
    ADD_FAILURE() << label << ": " << fault
                  << "\nwords of the last run: " << testing::PrintToString(lastWords) << "\nits files:\n"
                  << files.substr(0, mostShown);
}

void forAllScenes(const Test& test) {
    EXPECT_GT(forScenes(0, 1, test), 0U) << "no scene";
}

std::size_t forSomeScenes(const Test& test) {
    const std::size_t step = isSanitized() ? 32 : 16;
    std::uint32_t share = 0;
    for (const char letter : std::string(testing::UnitTest::GetInstance()->current_test_info()->name()))
        share = 31 * share + static_cast<unsigned char>(letter);
    return forScenes(share % step, step, test);
}

void expectTelling(std::size_t telling, std::size_t scenes) {
    EXPECT_GE(telling, scenes < 20 ? 0 : scenes / 10) << "of " << scenes << " scenes";
}

} // namespace properties
