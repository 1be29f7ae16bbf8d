#pragma once
// Calendar arithmetic in the user's local time, as the assistant's date rules are stated: "older
// than the start of the day three days ago", "installed less than 40 days ago", the date and time
// of the log's start line.

#include <chrono>
#include <string>

namespace pl::assistant {

using TimePoint = std::chrono::system_clock::time_point;

// Local midnight at the start of the day `daysBack` calendar days before the day of `t`.
TimePoint localDayStart(TimePoint t, int daysBack = 0);
// `t` moved by `days` calendar days, keeping its local time of day.
TimePoint addLocalDays(TimePoint t, int days);

std::string formatLocalDate(TimePoint t); // "DD.MM.YYYY"
std::string formatLocalTime(TimePoint t); // "HH:MM"

} // namespace pl::assistant
