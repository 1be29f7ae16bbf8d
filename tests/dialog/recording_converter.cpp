// A stand-in for the converter's program file that converts nothing: it writes down how it was
// called (its program word, its working folder and every argument, one per line) and ends. Tests
// put it where the assistant looks for the converter and read back what arrived.
//
// The record goes to the file named by RECORDING_CONVERTER_LOG, else to "calls.txt" beside the
// program. Each call is appended with one write, between "=== call" and "=== end" lines, so that a
// reader never sees half a call.

#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <unistd.h>

int main(int argc, char** argv) {
    std::string record = "=== call\n";
    record += "program=" + std::string(argc > 0 ? argv[0] : "") + "\n";
    char cwd[4096];
    record += "folder=" + std::string(::getcwd(cwd, sizeof cwd) ? cwd : "?") + "\n";
    for (int i = 1; i < argc; ++i)
        record += "arg=" + std::string(argv[i]) + "\n";
    record += "=== end\n";

    std::string logFile;
    if (const char* named = std::getenv("RECORDING_CONVERTER_LOG"))
        logFile = named;
    else {
        const std::string self = argc > 0 ? argv[0] : "";
        const std::size_t slash = self.rfind('/');
        logFile = (slash == std::string::npos ? std::string() : self.substr(0, slash + 1)) + "calls.txt";
    }
    const int fd = ::open(logFile.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    if (fd < 0)
        return 2;
    const bool written = ::write(fd, record.data(), record.size()) == static_cast<ssize_t>(record.size());
    ::close(fd);
    return written ? 0 : 3;
}
