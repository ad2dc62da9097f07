#include "faults/alloc_message.hpp"

#include <cstddef>
#include <cstdlib>
#include <string_view>

namespace {

// Takes a number and the text behind it off the front of `rest`; false when they are not there.
bool takeNumber(std::string_view& rest, long& number, std::string_view behind) {
    const std::string text(rest);
    char* end = nullptr;
    number = std::strtol(text.c_str(), &end, 10);
    const auto length = static_cast<std::size_t>(end - text.c_str());
    if (length == 0 || !rest.substr(length).starts_with(behind))
        return false;
    rest.remove_prefix(length + behind.size());
    return true;
}

} // namespace

std::string describe(const AllocMessage& message) {
    return std::to_string(message.status) + ": \"" + message.name + "\" " + std::to_string(message.factor) +
           " x " + std::to_string(message.otherFactor) + "(+" + std::to_string(message.allocations) + "-" +
           std::to_string(message.releases) + ":sum=" + std::to_string(message.total) + ")";
}

std::optional<AllocMessage> findAllocMessage(const std::string& errors, int status) {
    constexpr std::string_view before = "\nAlloc Error: \"";
    const std::size_t at = errors.rfind(before);
    if (at == std::string::npos)
        return std::nullopt;
    const std::string_view text = std::string_view(errors).substr(at + before.size());
    const std::size_t quote = text.rfind('"');
    if (quote == std::string_view::npos || !text.substr(quote).starts_with("\" "))
        return std::nullopt;
    AllocMessage message{.status = status, .name = std::string(text.substr(0, quote))};
    std::string_view rest = text.substr(quote + 2);
    const bool whole =
        takeNumber(rest, message.factor, " x ") && takeNumber(rest, message.otherFactor, "(+") &&
        takeNumber(rest, message.allocations, "-") && takeNumber(rest, message.releases, ":sum=") &&
        takeNumber(rest, message.total, ")\n") && rest.empty();
    return whole ? std::optional(message) : std::nullopt;
}
