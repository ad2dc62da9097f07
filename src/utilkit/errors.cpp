#include "utilkit/errors.hpp"

#include "utilkit/exit.hpp"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace vexbind {

std::array<MessageCode, ignoreCapacity> _ignoreErr_{};
std::int32_t _igno_ = 0;

void pushIgnore(MessageCode code) {
    _ignoreErr_[static_cast<std::size_t>(_igno_)] = code;
    ++_igno_;
}

void popIgnore() {
    _igno_ = std::max(_igno_ - 1, 0);
}

bool isIgnored(MessageCode code) {
    const auto live = _ignoreErr_.begin() + _igno_;
    return std::find(_ignoreErr_.begin(), live, code) != live;
}

void raiseError(std::int32_t status, MessageCode code, ...) {
    if (isIgnored(code)) {
        return;
    }
    std::fputc('\n', stderr);
    std::va_list arguments;
    va_start(arguments, code);
    std::vfprintf(stderr, code, arguments);
    va_end(arguments);
    std::fflush(stderr);
    Exit(status);
}

void warn(MessageCode code, ...) {
    std::fputs(WARN_MSG, stderr);
    std::va_list arguments;
    va_start(arguments, code);
    std::vfprintf(stderr, code, arguments);
    va_end(arguments);
    std::fflush(stderr);
}

} // namespace vexbind
