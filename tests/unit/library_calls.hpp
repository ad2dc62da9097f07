// Calls of the C library that a test takes part in, so that they go as they do on a bad day.
#pragma once

#include <functional>

// Until its end every file that is opened is shown to `mayOpen` first, by its name. It may do anything; when
// it returns false, nothing is opened and errno is what it has left there.
struct BeforeOpening {
    explicit BeforeOpening(std::function<bool(const char*)> mayOpen);
    ~BeforeOpening();
    BeforeOpening(const BeforeOpening&) = delete;
    BeforeOpening& operator=(const BeforeOpening&) = delete;
};

// Until its end no time can be told as local time.
struct NoLocalTime {
    NoLocalTime();
    ~NoLocalTime();
    NoLocalTime(const NoLocalTime&) = delete;
    NoLocalTime& operator=(const NoLocalTime&) = delete;
};
