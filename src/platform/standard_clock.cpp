#include "platform/standard_clock.h"

namespace pl::platform {

std::chrono::system_clock::time_point SystemClock::now() const {
    return std::chrono::system_clock::now();
}

UniformRandom::UniformRandom() {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device()};
    engine_.seed(seed);
}

double UniformRandom::next() {
    // Rounding can make the distribution return its upper bound; callers scale the number into a
    // range and rely on never reaching its end.
    for (;;) {
        const double value = distribution_(engine_);
        if (value < 1.0)
            return value;
    }
}

} // namespace pl::platform
