#include "fuzz/sandbox.hpp"

#include "settings/settings.hpp"
#include "utilkit/chdir.hpp"
#include "utilkit/errors.hpp"
#include "utilkit/exit.hpp"
#include "utilkit/put4.hpp"
#include "utilkit/reporttext.hpp"
#include "utilkit/status.hpp"
#include "utilkit/tracked.hpp"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>
#include <utility>

#include "fuzz/fresh_state.hpp"
#include "fuzz/held_blocks.hpp"

namespace {

// Thrown by Exit. The sources catch nothing, so that it comes through to runInSandbox.
struct EndOfRun {
    std::int32_t status;
};

// A stream whose text is kept, up to a limit.
class Capture {
  public:
    Capture()
        : stream(
              fopencookie(this, "w", {.read = nullptr, .write = keep, .seek = nullptr, .close = nullptr})) {
        if (stream == nullptr)
            std::abort();
    }

    [[nodiscard]] std::FILE* file() const { return stream; }

    std::string take() {
        std::fflush(stream);
        std::clearerr(stream);
        return std::move(text);
    }

    void clear() { text.clear(); }

  private:
    static ssize_t keep(void* cookie, const char* bytes, std::size_t size) {
        constexpr std::size_t mostText = std::size_t{1} << 20U;
        std::string& text = static_cast<Capture*>(cookie)->text;
        if (text.size() < mostText)
            text.append(bytes, size);
        return static_cast<ssize_t>(size);
    }

    std::FILE* stream;
    std::string text;
};

// The streams of all runs; as long as there is one of these, they take the place of the process's own.
class CapturedStreams {
  public:
    CapturedStreams() {
        output().clear();
        errors().clear();
        stdout = output().file();
        stderr = errors().file();
    }
    ~CapturedStreams() {
        stdout = realOutput;
        stderr = realErrors;
    }
    CapturedStreams(const CapturedStreams&) = delete;
    CapturedStreams& operator=(const CapturedStreams&) = delete;

    static Capture& output() {
        static Capture capture;
        return capture;
    }
    static Capture& errors() {
        static Capture capture;
        return capture;
    }

  private:
    std::FILE* realOutput = stdout;
    std::FILE* realErrors = stderr;
};

// The run, as in the program's own main.
std::int32_t statusOf(void (*body)()) {
    try {
        try {
            body();
        } catch (const std::bad_alloc&) {
            vexbind::raiseAllocError(vexbind::allocFailed, "main", 0, 0);
        }
    } catch (const EndOfRun& end) {
        return end.status;
    }
    return vexbind::normalEnd;
}

} // namespace

// In the place of src/utilkit/exit.cpp.
void vexbind::Exit(std::int32_t status) {
    writePendingWords();
    sendReport();
    chDir(cwd.data());
    throw EndOfRun{status};
}

std::string RunResult::digest() const {
    std::string text =
        "status " + std::to_string(ending.status) + "\nerrors: " + ending.errors + "\nprinted: " + printed;
    for (const NamedFile& file : harvest.outputs)
        text += "\nfile " + file.name + ": " + file.content;
    return text;
}

RunResult runInSandbox(std::span<const PlantedFile> files, void (*body)()) {
    const CapturedStreams streams;
    setStateBack();
    plantTree(files);
    RunResult result;
    holdBlocks();
    result.ending.status = statusOf(body);
    stopHolding();
    result.harvest = fellTree();
    result.ending.errors = CapturedStreams::errors().take();
    result.printed = CapturedStreams::output().take();
    result.ignored = static_cast<std::size_t>(vexbind::_igno_);
    for (std::size_t i = 0; i < result.packets.size(); ++i)
        result.packets[i] = *vexbind::counterLines[i].count;
    setStateBack();
    result.blocks = releaseHeldBlocks();
    return result;
}
