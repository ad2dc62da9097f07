// A run leaves an exit status, two streams and a directory; each is compared on its own, so that
// one run shows everything that is wrong with it.
#include "runner/run_case.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t bytesAround = 8; // shown on either side of a differing byte

// What must stand under one name of the fresh directory after the run.
struct Expected {
    bool isDirectory = false;
    bool isHex = false;
    std::string what;                  // "input" or "output"
    std::vector<CaseContent> contents; // one of them
};

using Tree = std::map<std::string, Expected>;

std::string absolutePath(const std::string& path) {
    std::error_code ignored;
    return fs::absolute(path, ignored).string();
}

// In the child: never returns; a failure is told to the parent through `report`.
[[noreturn]] void startProgram(const std::vector<char*>& argv, const std::string& directory,
                               const std::string& standardOutput, const std::string& standardError,
                               int report) {
    setpgid(0, 0);
    const int input = open("/dev/null", O_RDONLY);
    const int output = open(standardOutput.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    const int errors = open(standardError.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (input >= 0 && output >= 0 && errors >= 0 && dup2(input, 0) == 0 && dup2(output, 1) == 1 &&
        dup2(errors, 2) == 2 && chdir(directory.c_str()) == 0) {
        for (const int file : {input, output, errors}) {
            if (file > 2)
                close(file);
        }
        execvp(argv[0], argv.data());
    }
    const int reason = errno;
    static_cast<void>(!write(report, &reason, sizeof reason));
    _exit(127);
}

// Waits for the child, at most until the limit, then kills its process group.
void awaitEnd(pid_t child, std::chrono::milliseconds limit, Outcome& outcome) {
    const auto end = std::chrono::steady_clock::now() + limit;
    int ended = 0;
    while (waitpid(child, &ended, WNOHANG) == 0) {
        if (std::chrono::steady_clock::now() >= end) {
            outcome.timedOut = true;
            kill(-child, SIGKILL);
            waitpid(child, &ended, 0);
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    if (WIFEXITED(ended))
        outcome.status = WEXITSTATUS(ended);
    if (WIFSIGNALED(ended))
        outcome.signal = WTERMSIG(ended);
}

std::string firstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

// The minute as the ID list writes it: hour:minute month/day/years since 1900.
std::string dateText(std::time_t when) {
    std::tm local{};
    localtime_r(&when, &local);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d %02d/%02d/%02d", local.tm_hour, local.tm_min,
                  local.tm_mon + 1, local.tm_mday, local.tm_year);
    return text.data();
}

void addDirectories(const fs::path& name, Tree& tree) {
    for (fs::path path = name; !path.empty(); path = path.parent_path()) {
        tree[path.generic_string()].isDirectory = true;
    }
}

CaseContent decode(const CaseSection& section, const CaseNames& names) {
    std::string parsedBefore; // a parsed case has no faults left
    return decodeSection(section, names, parsedBefore);
}

Tree inputTree(const CaseFile& file, const CaseNames& names) {
    Tree tree;
    for (const std::string& name : file.directories)
        addDirectories(name, tree);
    addDirectories(file.startDirectory, tree);
    for (const CaseSection& input : file.inputs) {
        addDirectories(fs::path(input.name).parent_path(), tree);
        tree[input.name] = {.isHex = input.isHex, .what = "input", .contents = {decode(input, names)}};
    }
    return tree;
}

// Puts the outputs into the tree; a date may be that of any minute of the run.
void addOutputs(const CaseFile& file, CaseNames names, std::time_t from, std::time_t to, Tree& tree) {
    std::vector<std::string> dates;
    for (std::time_t when = from; when < to; when += 60)
        dates.push_back(dateText(when));
    dates.push_back(dateText(to));
    for (const CaseSection& output : file.outputs) {
        Expected expected;
        expected.isHex = output.isHex;
        expected.what = "output";
        for (const std::string& date : dates) {
            names.date = date;
            expected.contents.push_back(decode(output, names));
        }
        tree[output.name] = expected;
    }
}

std::string writeInputs(const Tree& tree, const fs::path& directory) {
    for (const auto& [name, entry] : tree) {
        const fs::path path = directory / name;
        std::error_code failed;
        if (entry.isDirectory) {
            fs::create_directories(path, failed);
        } else {
            const std::string& bytes = entry.contents.front().bytes;
            std::ofstream out(path, std::ios::binary);
            out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
            out.close();
            if (!out)
                failed = std::make_error_code(std::errc::io_error);
        }
        if (failed)
            return "cannot write the input " + name + ": " + failed.message();
    }
    return {};
}

const CaseMark* markAt(const CaseContent& content, std::size_t offset) {
    const CaseMark* last = nullptr;
    for (const CaseMark& mark : content.marks) {
        if (mark.offset <= offset)
            last = &mark;
    }
    return last;
}

std::size_t firstDifference(std::string_view a, std::string_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    const auto stop = std::mismatch(a.begin(), a.begin() + common, b.begin()).first;
    return static_cast<std::size_t>(stop - a.begin());
}

std::string hexNumber(std::size_t value) {
    std::ostringstream text;
    text << "0x" << std::hex << value;
    return text.str();
}

std::string showBytes(const std::string& bytes, std::size_t at) {
    const std::size_t from = at > bytesAround ? at - bytesAround : 0;
    std::string shown = from > 0 ? ".." : "";
    for (std::size_t i = from; i < std::min(bytes.size(), at + bytesAround + 1); ++i) {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), i == at ? " [%02X]" : " %02X",
                      static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
        shown += text.data();
    }
    if (bytes.size() <= at)
        return shown + " [end]";
    return bytes.size() > at + bytesAround + 1 ? shown + " .." : shown;
}

// The part of `text` around `at` that a case file would hold on one line: a progress line ends in
// a carriage return alone. Also counts the lines up to it.
std::string_view lineAround(std::string_view text, std::size_t at, std::size_t& number) {
    std::size_t start = 0;
    number = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool ends = text[i] == '\n' || (text[i] == '\r' && !text.substr(i + 1).starts_with('\n'));
        if (ends && i >= at)
            return text.substr(start, i + 1 - start);
        if (ends) {
            start = i + 1;
            number += 1;
        }
    }
    return text.substr(start);
}

std::string showLine(std::string_view line, const std::string& directory) {
    return line.empty() ? "(nothing more)" : escapeText(line, directory);
}

// Describes the first difference, headed by the line of the case file that it contradicts.
std::string describeDifference(const CaseFile& file, const std::string& what, const CaseContent& expected,
                               const std::string& got, bool isHex, const std::string& directory) {
    const std::size_t at = firstDifference(expected.bytes, got);
    const CaseMark* mark = markAt(expected, at);
    std::ostringstream text;
    text << file.path << ':' << (mark == nullptr ? 0 : mark->line) << ": " << what << ": ";
    if (isHex) {
        text << "first difference at " << hexNumber(at) << " (" << expected.bytes.size()
             << " bytes expected, " << got.size() << " got)";
        text << "\n  expected  " << showBytes(expected.bytes, at);
        text << "\n  got       " << showBytes(got, at);
        if (mark != nullptr)
            text << "\n  case line " << mark->text;
    } else {
        std::size_t number = 0;
        std::size_t gotNumber = 0;
        const std::string_view wanted = lineAround(expected.bytes, at, number);
        const std::string_view found = lineAround(got, at, gotNumber);
        text << "first difference in line " << number;
        text << "\n  expected  " << showLine(wanted, directory);
        text << "\n  got       " << showLine(found, directory);
    }
    return text.str();
}

void compareStream(const CaseFile& file, const std::string& what, const CaseSection& section,
                   const CaseNames& names, const std::string& got, std::vector<std::string>& differences) {
    const CaseContent expected = decode(section, names);
    if (expected.bytes != got) {
        differences.push_back(describeDifference(file, what, expected, got, false, names.directory));
    }
}

void compareFile(const CaseFile& file, const std::string& what, const Expected& entry, const std::string& got,
                 const std::string& directory, std::vector<std::string>& differences) {
    const auto same = [&](const CaseContent& content) { return content.bytes == got; };
    if (std::any_of(entry.contents.begin(), entry.contents.end(), same))
        return;
    differences.push_back(describeDifference(file, what, entry.contents.back(), got, entry.isHex, directory));
}

void compareTree(const CaseFile& file, const Tree& tree, const std::string& directory,
                 std::vector<std::string>& differences) {
    const std::string place = file.path + ":0: ";
    for (const auto& [name, entry] : tree) {
        const fs::path path = fs::path(directory) / name;
        const fs::file_type type = fs::symlink_status(path).type();
        if (entry.isDirectory) {
            if (type != fs::file_type::directory)
                differences.push_back(place + "directory " + name + " is missing");
        } else if (type == fs::file_type::not_found) {
            differences.push_back(place + entry.what + " " + name + " is missing");
        } else if (type != fs::file_type::regular) {
            differences.push_back(place + entry.what + " " + name + " is no plain file");
        } else {
            const std::string what = entry.what + " " + name + (entry.what == "input" ? " was changed" : "");
            compareFile(file, what, entry, readWholeFile(path), directory, differences);
        }
    }
    std::error_code failed;
    auto found = fs::recursive_directory_iterator(directory, failed);
    for (; !failed && found != fs::recursive_directory_iterator(); found.increment(failed)) {
        const std::string name = found->path().lexically_relative(directory).generic_string();
        if (!tree.contains(name)) {
            const std::string what = found->is_directory(failed) ? "directory" : "file";
            differences.push_back(place + "extra " + what + ": " + name);
        }
        failed.clear(); // an entry that leads nowhere is a file
    }
    if (failed)
        differences.push_back(place + "cannot list what was left: " + failed.message());
}

// The run and its comparison, in `place`: the program's directory is d, its streams stand beside.
std::vector<std::string> runIn(const std::string& place, const CaseFile& file, const Command& command) {
    const std::string directory = place + "/d";
    CaseNames names{.directory = command.volume + directory, .notice = {}, .date = {}};
    Tree tree = inputTree(file, names);
    std::error_code failed;
    fs::create_directory(directory, failed);
    const std::string unwritten = writeInputs(tree, directory);
    if (!unwritten.empty())
        return {file.path + ":0: " + unwritten};

    std::string parsedBefore;
    const std::vector<std::string> words = splitWords(file.args, names, parsedBefore);
    const std::string start = file.startDirectory.empty() ? "" : "/" + file.startDirectory;
    const std::time_t from = std::time(nullptr);
    const Outcome outcome =
        runProgram(command, words, directory + start, place + "/stdout", place + "/stderr");
    const std::time_t to = std::time(nullptr);

    std::vector<std::string> differences;
    if (!outcome.error.empty())
        return {file.path + ":0: " + outcome.error};
    if (outcome.timedOut || outcome.signal != 0 || outcome.status != file.status) {
        differences.push_back(file.path + ":0: exit status " + std::to_string(file.status) +
                              " expected, got: " + describeOutcome(outcome));
    }
    if (outcome.timedOut)
        return differences;

    const std::string errors = readWholeFile(place + "/stderr");
    names.notice = firstLine(errors);
    if (names.notice.empty())
        differences.push_back(file.path + ":0: stderr: there is no start notice");
    compareStream(file, "stderr", file.standardError, names, errors, differences);
    compareStream(file, "stdout", file.standardOutput, names, readWholeFile(place + "/stdout"), differences);
    addOutputs(file, names, from, to, tree);
    compareTree(file, tree, directory, differences);
    return differences;
}

} // namespace

Command commandFromEnvironment(const std::string& program) {
    Command command;
    const char* named = std::getenv("VEXBIND_SANITIZED");
    if (named == nullptr)
        named = std::getenv("VEXBIND");
    command.program = absolutePath(named == nullptr ? program : named);
    const char* volume = std::getenv("VEXBIND_VOLUME");
    command.volume = volume == nullptr ? "" : volume;
    const char* prefix = std::getenv("VEXBIND_PREFIX");
    std::istringstream words(prefix == nullptr ? "" : prefix);
    for (std::string word; words >> word;)
        command.prefix.push_back(word);
    if (!command.prefix.empty() && command.prefix.front().find('/') != std::string::npos) {
        command.prefix.front() = absolutePath(command.prefix.front());
    }
    return command;
}

Outcome runProgram(const Command& command, const std::vector<std::string>& words,
                   const std::string& directory, const std::string& standardOutput,
                   const std::string& standardError) {
    std::vector<std::string> all = command.prefix;
    all.push_back(command.program);
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> argv;
    for (std::string& word : all)
        argv.push_back(word.data());
    argv.push_back(nullptr);

    Outcome outcome;
    std::array<int, 2> report{};
    if (pipe2(report.data(), O_CLOEXEC) != 0)
        return {.error = "cannot make a pipe"};
    const pid_t child = fork();
    if (child == 0)
        startProgram(argv, directory, standardOutput, standardError, report[1]);
    close(report[1]);
    int reason = 0;
    const bool failed = child < 0 || read(report[0], &reason, sizeof reason) > 0;
    close(report[0]);
    if (child > 0)
        awaitEnd(child, command.limit, outcome);
    if (failed)
        outcome.error = "cannot run " + all.front() + ": " + std::strerror(reason);
    return outcome;
}

std::string describeOutcome(const Outcome& outcome) {
    if (!outcome.error.empty())
        return outcome.error;
    if (outcome.timedOut)
        return "no end within the time limit (killed)";
    if (outcome.signal == 0)
        return "exit status " + std::to_string(outcome.status);
    return "signal " + std::to_string(outcome.signal) + " (" + strsignal(outcome.signal) + ")";
}

std::string makeFreshDirectory() {
    const char* named = std::getenv("TMPDIR");
    const std::string parent = named == nullptr || *named == '\0' ? "/tmp" : named;
    std::error_code failed;
    std::string path = fs::canonical(parent, failed).string() + "/vb-XXXXXX";
    return failed || mkdtemp(path.data()) == nullptr ? std::string() : path;
}

void removeFreshDirectory(const std::string& directory) {
    std::error_code ignored;
    fs::remove_all(directory, ignored);
}

std::string readWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> runCase(const CaseFile& file, const Command& command) {
    const std::string place = makeFreshDirectory();
    if (place.empty())
        return {file.path + ":0: cannot make a fresh directory"};
    std::vector<std::string> differences = runIn(place, file, command);
    removeFreshDirectory(place);
    return differences;
}
