#include "child_process.h"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

namespace pl::test {

std::string helperProgram() {
    return PLATFORM_TEST_HELPER;
}

std::optional<std::string> waitForFile(const std::string& path, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (!std::filesystem::exists(path)) {
        if (std::chrono::steady_clock::now() > deadline)
            return std::nullopt;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

bool waitUntilEnded(platform::Processes& processes, platform::ProcessId id, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    while (processes.isRunning(id)) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

std::vector<std::string> splitRecordedWords(const std::string& recorded) {
    std::vector<std::string> words;
    std::size_t start = 0;
    for (std::size_t end = recorded.find('\0'); end != std::string::npos; end = recorded.find('\0', start)) {
        words.push_back(recorded.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

} // namespace pl::test
