#include "assistant/local_time.h"

#include <cstdio>
#include <ctime>
#include <mutex>

namespace pl::assistant {
namespace {

// std::localtime shares one buffer across the process; the lock keeps concurrent callers apart.
std::mutex localTimeLock;

std::tm toLocal(TimePoint t) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(t);
    std::lock_guard guard(localTimeLock);
    const std::tm* local = std::localtime(&seconds);
    return local ? *local : std::tm{};
}

TimePoint fromLocal(std::tm local) {
    local.tm_isdst = -1; // let the library decide whether summer time applies on that day
    return std::chrono::system_clock::from_time_t(std::mktime(&local));
}

} // namespace

TimePoint localDayStart(TimePoint t, int daysBack) {
    std::tm local = toLocal(t);
    local.tm_mday -= daysBack;
    local.tm_hour = 0;
    local.tm_min = 0;
    local.tm_sec = 0;
    return fromLocal(local);
}

TimePoint addLocalDays(TimePoint t, int days) {
    const auto fraction = t - std::chrono::system_clock::from_time_t(std::chrono::system_clock::to_time_t(t));
    std::tm local = toLocal(t);
    local.tm_mday += days;
    return fromLocal(local) + fraction;
}

std::string formatLocalDate(TimePoint t) {
    const std::tm local = toLocal(t);
    char text[32];
    std::snprintf(text, sizeof text, "%02d.%02d.%04d", local.tm_mday, local.tm_mon + 1, local.tm_year + 1900);
    return text;
}

std::string formatLocalTime(TimePoint t) {
    const std::tm local = toLocal(t);
    char text[32];
    std::snprintf(text, sizeof text, "%02d:%02d", local.tm_hour, local.tm_min);
    return text;
}

} // namespace pl::assistant
