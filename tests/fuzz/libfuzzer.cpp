// One target for libFuzzer: FUZZ_TARGET names it. A fault ends the process, which makes the input a finding.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/targets.hpp"

// What the environment leaves open, for the sake of speed: the blocks of a run are looked after by the
// sandbox, and few of them are large or many.
extern "C" const char* __asan_default_options() {
    return "allocator_may_return_null=1:detect_leaks=0:malloc_context_size=2:max_malloc_fill_size=64:"
           "quarantine_size_mb=2:thread_local_quarantine_size_kb=64";
}

// What a run came to guides the fuzzer like the code that it went through: the sources have one and the same
// code for packets of every kind, and for many failures.
struct ExtraCounters {
    std::array<std::uint8_t, 256> ends; // by exit status
    std::array<std::uint8_t, vexbind::counterTotal> packets;
};

__attribute__((section("__libfuzzer_extra_counters"))) static ExtraCounters extraCounters;

static void count(const RunResult& result) {
    extraCounters.ends[static_cast<std::uint8_t>(result.ending.status)] = 1;
    for (std::size_t i = 0; i < result.packets.size(); ++i)
        extraCounters.packets[i] = static_cast<std::uint8_t>(std::min(result.packets[i], 255U));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static const FuzzTarget* const target = findTarget(FUZZ_TARGET);
    if (target == nullptr)
        std::abort();
    const std::string_view input(reinterpret_cast<const char*>(bytes), size);
    const RunResult result = target->run(input);
    count(result);
    const std::string fault = findFault(*target, result);
    if (!fault.empty()) {
        std::fprintf(stderr, "FAULT in %s: %s\n%s\n", FUZZ_TARGET, fault.c_str(), result.digest().c_str());
        std::abort();
    }
    return 0;
}
