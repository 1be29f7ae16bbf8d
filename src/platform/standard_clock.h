#pragma once
// The clock and the random numbers as the standard library gives them; every system uses these.

#include "platform/clock.h"

#include <random>

namespace pl::platform {

class SystemClock : public Clock {
public:
    std::chrono::system_clock::time_point now() const override;
};

class UniformRandom : public Random {
public:
    UniformRandom();
    double next() override;

private:
    std::mt19937_64 engine_;
    std::uniform_real_distribution<double> distribution_{0.0, 1.0};
};

} // namespace pl::platform
