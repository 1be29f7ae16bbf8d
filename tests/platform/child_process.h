#pragma once
// Helpers for tests that start the platform test helper as a real child process.

#include "platform/processes.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace pl::test {

// Full path of the helper program, built next to the tests.
std::string helperProgram();

// The file's content once it exists, or nothing when it did not appear in time.
std::optional<std::string> waitForFile(const std::string& path,
                                       std::chrono::milliseconds timeout = std::chrono::seconds(10));

// Polls isRunning until it turns false; false when the process was still running at the timeout.
bool waitUntilEnded(platform::Processes& processes, platform::ProcessId id,
                    std::chrono::milliseconds timeout = std::chrono::seconds(10));

// The zero-terminated words the helper's "argv" mode wrote: its working folder, then its arguments.
std::vector<std::string> splitRecordedWords(const std::string& recorded);

} // namespace pl::test
