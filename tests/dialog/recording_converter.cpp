// A stand-in for the converter's program file that converts nothing: it writes down how it was
// called (its program word, its working folder and every argument, one per line) and ends. Tests
// put it where the assistant looks for the converter and read back what arrived.
//
// The record goes to the file named by RECORDING_CONVERTER_LOG, else to "calls.txt" beside the
// program. Each call is appended with one write, between "=== call" and "=== end" lines, so that a
// reader never sees half a call.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char** argv) {
    std::string record = "=== call\n";
    record += "program=" + std::string(argc > 0 ? argv[0] : "") + "\n";
    std::error_code error;
    const std::u8string cwd = std::filesystem::current_path(error).u8string();
    record += "folder=" + (error ? std::string("?") : std::string(cwd.begin(), cwd.end())) + "\n";
    for (int i = 1; i < argc; ++i)
        record += "arg=" + std::string(argv[i]) + "\n";
    record += "=== end\n";

    std::string logFile;
    if (const char* named = std::getenv("RECORDING_CONVERTER_LOG"))
        logFile = named;
    else {
        const std::string self = argc > 0 ? argv[0] : "";
        const std::size_t slash = self.find_last_of("/\\");
        logFile = (slash == std::string::npos ? std::string() : self.substr(0, slash + 1)) + "calls.txt";
    }
    // Unbuffered, so that the record goes out in one write at the end of the file.
    std::FILE* file = std::fopen(logFile.c_str(), "ab");
    if (!file)
        return 2;
    std::setvbuf(file, nullptr, _IONBF, 0);
    const bool written = std::fwrite(record.data(), 1, record.size(), file) == record.size();
    return std::fclose(file) == 0 && written ? 0 : 3;
}
