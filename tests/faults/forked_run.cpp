#include "faults/forked_run.hpp"

#include "driver/run.hpp"
#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;

#if defined(__SANITIZE_ADDRESS__)
#define FAULTS_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FAULTS_SANITIZED 1
#endif
#endif

#ifdef FAULTS_SANITIZED
// What the environment leaves open. The search for lost memory at the end of a run would take longer
// than the run, and so would it to remember from where each block was allocated. A larger quarantine
// of freed memory would take up all the memory that a run with many files may have.
extern "C" const char* __asan_default_options() {
    return "exitcode=66:allocator_may_return_null=1:"
           "detect_leaks=0:malloc_context_size=1:quarantine_size_mb=16";
}
#endif

namespace {

#ifdef FAULTS_SANITIZED
constexpr unsigned secondsPerRun = 20;
#else
constexpr unsigned secondsPerRun = 5;
#endif
constexpr rlim_t memoryPerRun = rlim_t{256} << 20U; // beyond what a process holds before its run
constexpr rlim_t largestFile = rlim_t{16} << 20U;

// The words of a run as they go to the helper, each with its terminator.
struct Request {
    std::size_t words = 0;
    std::array<char, 4096> text{};
};

std::string makeDirectory(std::string path) {
    path += "/vexbind-faults-XXXXXX";
    return mkdtemp(path.data()) == nullptr ? std::string() : path;
}

void setLimit(decltype(RLIMIT_CPU) resource, rlim_t value) {
    const rlimit limit{.rlim_cur = value, .rlim_max = value};
    setrlimit(resource, &limit);
}

// The address space of this process, in bytes.
rlim_t addressSpace() {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE));
}

// Ends a run once its streams are written; what the test process has set up is not taken down.
void leave(int status, void* /*unused*/) {
    std::fflush(nullptr);
    _exit(status);
}

// The whole run, as in the program's own main. Nothing may leave through an exception: the test's own
// handlers wait above.
[[noreturn]] void runHere(Request& request) noexcept {
    static std::array<char*, 64> arguments{};
    char* word = request.text.data();
    for (std::size_t i = 0; i < request.words; ++i) {
        arguments[i] = word;
        word += std::strlen(word) + 1;
    }
    alarm(secondsPerRun);
    setLimit(RLIMIT_CPU, secondsPerRun);
    setLimit(RLIMIT_FSIZE, largestFile);
    setLimit(RLIMIT_CORE, 0);
    on_exit(leave, nullptr);
    try {
        vexbind::run(static_cast<int>(request.words), arguments.data());
    } catch (const std::bad_alloc&) {
        vexbind::raiseAllocError(vexbind::allocFailed, "main", 0, 0);
    }
    std::abort();
}

// The helper's life: one run for each request, answered by the way it ended.
[[noreturn]] void serve(int line) noexcept {
    static Request request;
    while (read(line, &request, sizeof(request)) == static_cast<ssize_t>(sizeof(request))) {
        const pid_t child = fork();
        if (child == 0)
            runHere(request);
        int how = 0;
        if (child < 0 || waitpid(child, &how, 0) != child || write(line, &how, sizeof(how)) < 0)
            break;
    }
    _exit(0);
}

// Turns this process into the helper, in `place`, its standard error going to `errors`.
[[noreturn]] void becomeHelper(const std::string& place, int errors, int line) noexcept {
    const int nothing = open("/dev/null", O_RDWR);
    const bool ready = chdir(place.c_str()) == 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
                       dup2(nothing, STDOUT_FILENO) >= 0 && dup2(errors, STDERR_FILENO) >= 0;
    if (!ready)
        _exit(1);
    setLimit(RLIMIT_AS, addressSpace() + memoryPerRun);
    serve(line);
}

// The words behind the program's name; false when they are too many or too long.
bool fillRequest(Request& request, const std::vector<std::string>& words) {
    constexpr std::size_t mostWords = 60;
    std::string text = "vexbind";
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

ForkedRuns::ForkedRuns() : place(makeDirectory("/dev/shm")) {
    if (place.empty())
        place = makeDirectory(fs::temp_directory_path().string());
    errors = memfd_create("errors", MFD_CLOEXEC);
    std::array<int, 2> ends = {-1, -1};
    if (place.empty() || socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()) != 0)
        return;
    std::fflush(nullptr);
    helper = fork();
    if (helper == 0) {
        close(ends[0]);
        becomeHelper(place, errors, ends[1]);
    }
    close(ends[1]);
    line = ends[0];
}

ForkedRuns::~ForkedRuns() {
    close(line);
    close(errors);
    if (helper > 0)
        waitpid(helper, nullptr, 0);
    std::error_code ignored;
    if (!place.empty())
        fs::remove_all(place, ignored);
}

void ForkedRuns::clear() {
    std::error_code ignored;
    for (const fs::directory_entry& entry : fs::directory_iterator(place, ignored))
        fs::remove_all(entry.path(), ignored);
}

Ending ForkedRuns::run(const std::vector<std::string>& words) {
    Ending ending;
    ending.signal = -1;
    Request request;
    int how = 0;
    const bool ran = fillRequest(request, words) && ftruncate(errors, 0) == 0 &&
                     lseek(errors, 0, SEEK_SET) == 0 &&
                     send(line, &request, sizeof(request), MSG_NOSIGNAL) > 0 &&
                     read(line, &how, sizeof(how)) == static_cast<ssize_t>(sizeof(how));
    if (!ran)
        return ending;
    ending.signal = WIFSIGNALED(how) ? WTERMSIG(how) : 0;
    ending.status = WIFEXITED(how) ? WEXITSTATUS(how) : 0;
    ending.errors = takeErrors();
    return ending;
}

std::string ForkedRuns::takeErrors() const {
    std::string text;
    std::array<char, 4096> piece{};
    for (;;) {
        const ssize_t count = pread(errors, piece.data(), piece.size(), static_cast<off_t>(text.size()));
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
