#include "faults/run_process.hpp"

#include "faults/kept_globals.hpp"
#include "faults/sanitized.hpp"

#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/reporttext.hpp"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <fcntl.h>
#include <grp.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

// The program's main, under the name that the build gives it here.
int vexbindMain(int argumentCount, char** arguments);

#ifdef FAULTS_SANITIZED
// What the environment leaves open. The search for lost memory at the end of a run would take longer
// than the run, and so would it to remember from where each block was allocated. A larger quarantine
// of freed memory would take up all the memory that a run with many files may have.
extern "C" const char* __asan_default_options() {
    return "exitcode=66:allocator_may_return_null=1:"
           "detect_leaks=0:malloc_context_size=1:quarantine_size_mb=16";
}
#endif

#ifdef VEXBIND_COVERAGE
extern "C" void __gcov_dump();
#endif

namespace {

#ifdef FAULTS_SANITIZED
constexpr unsigned secondsPerRun = 20;
#else
constexpr unsigned secondsPerRun = 5;
#endif
constexpr rlim_t memoryPerRun = rlim_t{256} << 20U; // beyond what a process holds before its run
constexpr rlim_t largestFile = rlim_t{16} << 20U;
constexpr int runsInTurn = 32; // what they leave behind must not add up
constexpr unsigned nobody = 65534;

struct EndOfRun {
    int status;
};

// Set for runs in turn, which give their process back.
bool givesProcessBack = false;

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
#ifdef VEXBIND_COVERAGE
    // The counts would be written behind this. What goes wrong with them is not the run's, and they are not
    // written where a limit of the run would cut them short.
    const rlimit unlimited{.rlim_cur = RLIM_INFINITY, .rlim_max = RLIM_INFINITY};
    failingMemory = nullptr;
    dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
    if (setrlimit(RLIMIT_FSIZE, &unlimited) == 0)
        __gcov_dump();
#endif
    _exit(status);
}

// What a request says, spread out. It lies on the stack: global variables do not last.
struct RunWords {
    const char* startDirectory = nullptr;
    const char* standardOutput = nullptr;
    int count = 0;
    std::array<char*, 64> words{};
};

void spread(RunRequest& request, RunWords& words) {
    char* next = request.text.data();
    const auto take = [&next]() {
        char* text = next;
        next += std::strlen(text) + 1;
        return text;
    };
    words.startDirectory = take();
    words.standardOutput = take();
    words.count = static_cast<int>(request.words);
    for (std::size_t i = 0; i < request.words; ++i)
        words.words[i] = take();
}

// Gives up what root may do beyond others, when it is root that runs the tests.
bool dropPrivileges() {
    return geteuid() != 0 || (setgroups(0, nullptr) == 0 && setgid(nobody) == 0 && setuid(nobody) == 0);
}

bool sendOutputTo(const char* name) {
    const int file = open(name, O_WRONLY | O_CREAT | O_TRUNC, 0644);
    return file >= 0 && dup2(file, STDOUT_FILENO) == STDOUT_FILENO && close(file) == 0;
}

// False when the surroundings of a run cannot be had.
bool surround(const RunRequest& request, const RunWords& words, const RunPlace& place) {
    if (words.standardOutput[0] != '\0' && !sendOutputTo(words.standardOutput))
        return false;
    if (request.keepsOutput && dup2(place.output, STDOUT_FILENO) < 0)
        return false;
    if (words.startDirectory[0] != '\0' && chdir(words.startDirectory) != 0)
        return false;
    if (request.unprivileged && !dropPrivileges())
        return false;
    if (request.fileLimit >= 0) {
        std::signal(SIGXFSZ, SIG_IGN);
        dup2(place.errorPipe, STDERR_FILENO);
    }
    setLimit(RLIMIT_FSIZE, request.fileLimit >= 0 ? static_cast<rlim_t>(request.fileLimit) : largestFile);
    // What the helper has open would take numbers from the run's own files.
    close_range(STDERR_FILENO + 1, ~0U, 0);
    if (request.openLimit >= 0)
        setLimit(RLIMIT_NOFILE, static_cast<rlim_t>(request.openLimit));
    setLimit(RLIMIT_CPU, secondsPerRun);
    setLimit(RLIMIT_CORE, 0);
    return true;
}

// A run that has this process for itself. Nothing may leave through an exception: the test's own handlers
// wait above.
[[noreturn]] void runAlone(RunRequest& request, const RunPlace& place) noexcept {
    RunWords words;
    spread(request, words);
    if (!surround(request, words, place))
        std::raise(SIGUSR1); // which no run could end by
    alarm(secondsPerRun);
    on_exit(leave, nullptr);
    place.notes->memory = request.memory;
    failingMemory = &place.notes->memory;
    std::exit(vexbindMain(words.count, words.words.data()));
}

// A run after which the process goes on: its exit status.
int runInTurn(RunRequest& request) noexcept {
    RunWords words;
    spread(request, words);
    restoreGlobals();
    givesProcessBack = true;
    int status = 0;
    try {
        status = vexbindMain(words.count, words.words.data());
    } catch (const EndOfRun& end) {
        status = end.status;
    }
    std::fflush(nullptr);
    return status;
}

// Waits for a request; false when no more will come. It stays where it is.
bool awaitRequest(int line, bool& inTurn) {
    return recv(line, &inTurn, sizeof(inTurn), MSG_PEEK) == sizeof(inTurn);
}

bool takeRequest(int line, RunRequest& request) {
    return read(line, &request, sizeof(request)) == static_cast<ssize_t>(sizeof(request));
}

bool answer(int line, int how) {
    return write(line, &how, sizeof(how)) == static_cast<ssize_t>(sizeof(how));
}

// As wait tells of a process that ended with this status.
int endingWith(int status) {
    return (status & 0xFF) << 8;
}

// Makes runs in turn in this process, until it has made enough, or the next one is another kind of run.
[[noreturn]] void makeRunsInTurn(const RunPlace& place) noexcept {
    setLimit(RLIMIT_FSIZE, largestFile);
    setLimit(RLIMIT_CORE, 0);
    RunRequest request;
    bool inTurn = false;
    for (int i = 0; i < runsInTurn && awaitRequest(place.line, inTurn) && inTurn; ++i) {
        if (chdir(place.directory) != 0 || !takeRequest(place.line, request))
            break;
        place.notes->running = true;
        alarm(secondsPerRun);
        const int status = runInTurn(request);
        alarm(0);
        place.notes->running = false;
        if (!answer(place.line, endingWith(status)))
            break;
    }
    _exit(0);
}

// Waits for the end of a child; false when there was none.
bool awaitEnd(pid_t child, int& how) {
    return child > 0 && waitpid(child, &how, 0) == child;
}

// One process for some runs; false when no more are possible. One that breaks down in a run is told of in
// that run's place.
bool serveInTurn(const RunPlace& place) {
    const pid_t child = fork();
    if (child == 0)
        makeRunsInTurn(place);
    int how = 0;
    if (!awaitEnd(child, how))
        return false;
    if (!place.notes->running)
        return true;
    place.notes->running = false;
    return answer(place.line, how);
}

// One process for one run.
bool serveAlone(const RunPlace& place) {
    RunRequest request;
    if (!takeRequest(place.line, request))
        return false;
    const pid_t child = fork();
    if (child == 0)
        runAlone(request, place);
    int how = 0;
    return awaitEnd(child, how) && answer(place.line, how);
}

} // namespace

// The program's own, but that a run can give its process back.
void vexbind::Exit(std::int32_t status) {
    writePendingWords();
    sendReport();
    chDir(cwd.data());
    if (givesProcessBack)
        throw EndOfRun{status};
    std::exit(status);
}

void becomeHelper(const RunPlace& place) noexcept {
    const int nothing = open("/dev/null", O_RDWR);
    const bool ready = chdir(place.directory) == 0 && dup2(nothing, STDIN_FILENO) >= 0 &&
                       dup2(nothing, STDOUT_FILENO) >= 0 && dup2(place.errors, STDERR_FILENO) >= 0;
    if (!ready)
        _exit(1);
    close(nothing);
    setLimit(RLIMIT_AS, addressSpace() + memoryPerRun);
    const bool inTurnPossible = keepGlobals();
    bool inTurn = false;
    while (awaitRequest(place.line, inTurn)) {
        const bool served = inTurn && inTurnPossible ? serveInTurn(place) : serveAlone(place);
        if (!served)
            break;
    }
    _exit(0);
}
