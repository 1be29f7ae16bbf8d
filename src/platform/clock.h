#pragma once

#include <chrono>

namespace pl::platform {

class Clock {
public:
    virtual ~Clock() = default;
    virtual std::chrono::system_clock::time_point now() const = 0;
};

class Random {
public:
    virtual ~Random() = default;
    // A uniform number in [0, 1), like the classic Rnd.
    virtual double next() = 0;
};

} // namespace pl::platform
