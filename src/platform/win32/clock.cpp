#include "platform/win32/win32_services.h"

#include <windows.h>

namespace pl::platform::win32 {

std::chrono::system_clock::time_point SystemClock::now() const {
    return std::chrono::system_clock::now();
}

UniformRandom::UniformRandom() {
    // std::random_device reads the system's generator with mingw-w64's POSIX-thread runtime too;
    // the tick count and the process id are mixed in should it ever be a fixed sequence.
    std::random_device device;
    std::seed_seq seed{device(), device(), static_cast<unsigned>(GetTickCount64()),
                       static_cast<unsigned>(GetCurrentProcessId())};
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

} // namespace pl::platform::win32
