// Preloaded into a program, this finds the conditional jumps that tests/deep/mutation has listed for it, and
// turns one of them round (VEXBIND_FLIP: its number) or notes which are reached (VEXBIND_REACH: a file with a
// byte for each). The list is the file <name of the program>.jumps in the folder VEXBIND_JUMPS: one
// hexadecimal address in each line, 0 for a jump that this program lacks. Programs without a list run as they
// are. For Linux on x86-64.
//
// Nothing here allocates: the program's own allocations may be counted, or made to fail.
#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <ucontext.h>
#include <unistd.h>

namespace {

using Byte = unsigned char;

constexpr Byte breakpoint = 0xCC;
constexpr Byte longJump = 0x0F; // stands before the opcode of a jump farther than 127 bytes
constexpr std::size_t mostJumps = 8192;

struct Jump {
    Byte* address;
    std::size_t number;
    Byte first; // the byte at the address
};

std::array<Jump, mostJumps> jumps; // in the order of their addresses
std::size_t jumpCount = 0;
Byte* reached = nullptr; // by number

[[noreturn]] void giveUp(const char* reason) {
    std::array<char, 200> text{};
    const int length =
        std::snprintf(text.data(), text.size(), "jumps: %s: %s\n", reason, std::strerror(errno));
    static_cast<void>(!write(2, text.data(), static_cast<std::size_t>(length)));
    _exit(125);
}

// A whole file, mapped; empty when there is none.
struct Mapped {
    Byte* bytes = nullptr;
    std::size_t size = 0;
};

Mapped mapFile(const char* name, int openMode, int protection, int sharing) {
    const int file = open(name, openMode | O_CLOEXEC);
    struct stat facts {};
    if (file < 0 || fstat(file, &facts) != 0)
        return {};
    const auto size = static_cast<std::size_t>(facts.st_size);
    void* bytes = mmap(nullptr, size, protection, sharing, file, 0);
    close(file);
    return bytes == MAP_FAILED ? Mapped{} : Mapped{.bytes = static_cast<Byte*>(bytes), .size = size};
}

// The list for this program; empty when there is none.
Mapped mapList(const char* folder) {
    std::array<char, 4096> self{};
    if (readlink("/proc/self/exe", self.data(), self.size() - 1) < 0)
        return {};
    std::array<char, 8192> name{};
    std::snprintf(name.data(), name.size(), "%s/%s.jumps", folder, std::strrchr(self.data(), '/') + 1);
    return mapFile(name.data(), O_RDONLY, PROT_READ, MAP_PRIVATE);
}

int takeBase(dl_phdr_info* object, std::size_t /*size*/, void* base) {
    *static_cast<std::uintptr_t*>(base) = object->dlpi_addr;
    return 1; // the program comes first
}

void readList(const Mapped& list) {
    std::uintptr_t base = 0;
    dl_iterate_phdr(takeBase, &base);
    std::size_t number = 0;
    std::uintptr_t address = 0;
    for (std::size_t i = 0; i < list.size; ++i) {
        const char digit = static_cast<char>(list.bytes[i]);
        if (digit != '\n') {
            address =
                address * 16 + static_cast<std::uintptr_t>(digit <= '9' ? digit - '0' : digit - 'a' + 10);
            continue;
        }
        if (address != 0 && jumpCount < jumps.size()) {
            auto* place = reinterpret_cast<Byte*>(base + address);
            jumps[jumpCount++] = {.address = place, .number = number, .first = *place};
        }
        ++number;
        address = 0;
    }
    std::sort(jumps.begin(), jumps.begin() + jumpCount,
              [](const Jump& one, const Jump& other) { return one.address < other.address; });
}

void makeWritable(Byte* from, Byte* to) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(from) / page * page;
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(to) + 1;
    if (mprotect(reinterpret_cast<void*>(start), end - start, PROT_READ | PROT_WRITE | PROT_EXEC) != 0)
        giveUp("cannot write to the code");
}

// A jump is reached for the first time: it is noted, and from now on as it was.
void note(int /*signal*/, siginfo_t* /*unused*/, void* context) {
    auto& place = static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP];
    auto* address = reinterpret_cast<Byte*>(place - 1);
    Jump* const end = jumps.data() + jumpCount;
    Jump* const jump = std::lower_bound(jumps.data(), end, address, [](const Jump& each, const Byte* wanted) {
        return each.address < wanted;
    });
    if (jump == end || jump->address != address)
        giveUp("a breakpoint of somebody else");
    reached[jump->number] = 1;
    *address = jump->first;
    --place;
}

void noteAll(const char* name) {
    reached = mapFile(name, O_RDWR, PROT_READ | PROT_WRITE, MAP_SHARED).bytes;
    if (reached == nullptr)
        return; // the program may be one that is allowed next to nothing
    struct sigaction action {};
    action.sa_sigaction = note;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    sigaction(SIGTRAP, &action, nullptr);
    makeWritable(jumps[0].address, jumps[jumpCount - 1].address + 1);
    for (std::size_t i = 0; i < jumpCount; ++i)
        *jumps[i].address = breakpoint;
}

// The lowest bit of the opcode is the sense of the condition.
void flip(std::size_t number) {
    for (std::size_t i = 0; i < jumpCount; ++i) {
        if (jumps[i].number != number)
            continue;
        Byte* opcode = jumps[i].address + (jumps[i].first == longJump ? 1 : 0);
        makeWritable(opcode, opcode);
        *opcode ^= 1;
    }
}

[[gnu::constructor]] void start() {
    const char* folder = std::getenv("VEXBIND_JUMPS");
    const Mapped list = folder == nullptr ? Mapped{} : mapList(folder);
    if (list.bytes == nullptr)
        return;
    readList(list);
    munmap(list.bytes, list.size);
    const char* flipped = std::getenv("VEXBIND_FLIP");
    const char* noted = std::getenv("VEXBIND_REACH");
    if (flipped != nullptr)
        flip(std::strtoul(flipped, nullptr, 10));
    else if (noted != nullptr && jumpCount > 0)
        noteAll(noted);
}

} // namespace
