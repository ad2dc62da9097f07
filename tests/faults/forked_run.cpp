#include "faults/forked_run.hpp"

#include "faults/run_process.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

std::string makeDirectory(std::string path) {
    path += "/vexbind-faults-XXXXXX";
    // Runs without privileges get there, too.
    return mkdtemp(path.data()) == nullptr || chmod(path.c_str(), 0755) != 0 ? std::string() : path;
}

RunNotes* shareNotes() {
    void* memory = mmap(nullptr, sizeof(RunNotes), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    return memory == MAP_FAILED ? nullptr : new (memory) RunNotes;
}

bool emptyFile(int file) {
    return ftruncate(file, 0) == 0 && lseek(file, 0, SEEK_SET) == 0;
}

std::string contentOf(int file) {
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = pread(file, piece.data(), piece.size(), static_cast<off_t>(text.size()));
        if (count <= 0)
            return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

// The texts of a request; false when they are too many or too long.
bool fillRequest(RunRequest& request, const std::vector<std::string>& words, const Surroundings& around) {
    constexpr std::size_t mostWords = 60;
    std::string text = around.startDirectory + '\0' + around.standardOutput + '\0' + "vexbind";
    for (const std::string& word : words)
        text += '\0' + word;
    request.words = words.size() + 1;
    if (words.size() > mostWords || text.size() >= request.text.size())
        return false;
    text.copy(request.text.data(), text.size());
    return true;
}

} // namespace

std::string describeEnding(const Ending& ending) {
    if (ending.signal > 0) {
        return "signal " + std::to_string(ending.signal) + " (" + strsignal(ending.signal) + ")";
    }
    return ending.signal < 0 ? "no run" : "exit status " + std::to_string(ending.status);
}

ForkedRuns::ForkedRuns() : place(makeDirectory("/dev/shm")), notes(shareNotes()) {
    if (place.empty())
        place = makeDirectory(fs::temp_directory_path().string());
    output = memfd_create("output", MFD_CLOEXEC);
    errors = memfd_create("errors", MFD_CLOEXEC);
    std::array<int, 2> ends = {-1, -1};
    std::array<int, 2> pipeEnds = {-1, -1};
    if (place.empty() || notes == nullptr || pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0 ||
        socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()) != 0)
        return;
    std::fflush(nullptr);
    helper = fork();
    if (helper == 0) {
        close(ends[0]);
        becomeHelper({.directory = place.c_str(),
                      .output = output,
                      .errors = errors,
                      .errorPipe = pipeEnds[1],
                      .line = ends[1],
                      .notes = notes});
    }
    close(ends[1]);
    close(pipeEnds[1]);
    line = ends[0];
    errorPipe = pipeEnds[0];
}

ForkedRuns::~ForkedRuns() {
    close(line);
    close(output);
    close(errors);
    close(errorPipe);
    if (helper > 0)
        waitpid(helper, nullptr, 0);
    if (notes != nullptr)
        munmap(notes, sizeof(RunNotes));
    std::error_code ignored;
    if (!place.empty())
        fs::remove_all(place, ignored);
}

void ForkedRuns::clear() {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(place, ignored))
        fs::remove_all(entry.path(), ignored);
}

Ending ForkedRuns::run(const std::vector<std::string>& words, const Surroundings& around) {
    return request(words, around, false);
}

Ending ForkedRuns::runInTurn(const std::vector<std::string>& words) {
    return request(words, {}, true);
}

Ending ForkedRuns::request(const std::vector<std::string>& words, const Surroundings& around, bool inTurn) {
    Ending ending;
    ending.signal = -1;
    RunRequest request;
    request.inTurn = inTurn;
    request.unprivileged = around.unprivileged;
    request.keepsOutput = around.keepsOutput;
    request.memory = {.first = around.failingAllocation, .onwards = around.failsOnwards};
    request.fileLimit = around.fileLimit;
    request.openLimit = around.openLimit;
    notes->memory = {};
    int how = 0;
    const bool ran = fillRequest(request, words, around) && emptyFile(output) && emptyFile(errors) &&
                     send(line, &request, sizeof(request), MSG_NOSIGNAL) > 0 &&
                     read(line, &how, sizeof(how)) == static_cast<ssize_t>(sizeof(how));
    if (!ran)
        return ending;
    ending.signal = WIFSIGNALED(how) ? WTERMSIG(how) : 0;
    ending.status = WIFEXITED(how) ? WEXITSTATUS(how) : 0;
    ending.output = contentOf(output);
    ending.errors = takeErrors();
    ending.failed = notes->memory.failed;
    return ending;
}

std::string ForkedRuns::takeErrors() const {
    std::string text = contentOf(errors);
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = read(errorPipe, piece.data(), piece.size());
        if (count <= 0)
            return text;
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

ForkedRuns& freshRuns() {
    static ForkedRuns runs;
    runs.clear();
    return runs;
}
