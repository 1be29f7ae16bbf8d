#include "converter/desktop.h"

#include "platform/platform.h"

#include <chrono>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ;

namespace pl::converter {

namespace {

using namespace std::chrono_literals;

// How long a desktop helper may take to say that it found nothing to hand the file to. One that is
// still running then has started a program, or is that program, and counts as success.
constexpr auto kVerdictTime = 3s;

// Starts the desktop helper `argv` (xdg-open, xdg-email) and waits briefly for its verdict: they
// end with an error when the desktop has no program for the file, which the person must be told.
bool handOver(std::vector<std::string> argv) {
    std::vector<char*> words;
    for (auto& word : argv)
        words.push_back(word.data());
    words.push_back(nullptr);
    pid_t pid = 0;
    if (::posix_spawnp(&pid, words[0], nullptr, nullptr, words.data(), environ) != 0)
        return false;
    const auto giveUp = std::chrono::steady_clock::now() + kVerdictTime;
    while (std::chrono::steady_clock::now() < giveUp) {
        int status = 0;
        const pid_t done = ::waitpid(pid, &status, WNOHANG);
        if (done == pid)
            return WIFEXITED(status) && WEXITSTATUS(status) == 0;
        if (done < 0)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

class PosixDesktop final : public Desktop {
public:
    // xdg-open finds the program the user chose for the file's type, or the file manager for a
    // folder.
    bool open(const std::string& file) override { return handOver({"xdg-open", file}); }

    // xdg-email finds the user's mail program and starts a new mail with the attachments.
    bool mail(const std::vector<std::string>& files) override {
        std::vector<std::string> argv{"xdg-email"};
        for (const auto& file : files) {
            argv.emplace_back("--attach");
            argv.push_back(file);
        }
        return handOver(std::move(argv));
    }
};

} // namespace

std::unique_ptr<Desktop> makeDesktop(platform::Platform&) {
    return std::make_unique<PosixDesktop>();
}

} // namespace pl::converter
