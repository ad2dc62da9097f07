// The message of an allocation that failed, taken apart.
#pragma once

#include <optional>
#include <string>

struct AllocMessage {
    int status = 0;   // the exit status that came with it
    std::string name; // what was being allocated
    long factor = 0;  // two factors of its size
    long otherFactor = 0;
    long allocations = 0; // the counters
    long releases = 0;
    long total = 0;

    bool operator==(const AllocMessage&) const = default;
};

// "13: "a.tmd" 6 x 1(+2-0:sum=26)"
[[nodiscard]] std::string describe(const AllocMessage& message);

// The message with which a standard error ends; nothing when it ends with another one.
[[nodiscard]] std::optional<AllocMessage> findAllocMessage(const std::string& errors, int status);
