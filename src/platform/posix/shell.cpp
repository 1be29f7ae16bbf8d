#include "base/text.h"
#include "platform/command_line.h"
#include "platform/posix/posix_services.h"

#include <cctype>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::platform::posix {

namespace {

// "mailto:...", "https://...": a scheme of at least two characters, so that a Windows drive
// letter ("C:") is not taken for one.
bool isUrl(std::string_view file) {
    const std::size_t colon = file.find(':');
    if (colon == std::string_view::npos || colon < 2 || !std::isalpha(static_cast<unsigned char>(file[0])))
        return false;
    for (std::size_t i = 1; i < colon; ++i) {
        const char c = file[i];
        if (!std::isalnum(static_cast<unsigned char>(c)) && c != '+' && c != '-' && c != '.')
            return false;
    }
    return true;
}

// The opener and the program run in `folder`, where a path relative to ours would point elsewhere.
std::string absolute(std::string path) {
    char cwd[4096];
    if (path[0] != '/' && ::getcwd(cwd, sizeof cwd))
        path = std::string(cwd) + "/" + path;
    return path;
}

// The existing file or folder that `file` names: relative to `folder`, or as given.
std::string locate(std::string_view file, std::string_view folder) {
    if (file[0] != '/' && !folder.empty()) {
        const std::string inFolder = resolvePathCase(std::string(folder) + "/" + std::string(file));
        if (::access(inFolder.c_str(), F_OK) == 0)
            return absolute(inFolder);
    }
    const std::string path = resolvePathCase(file);
    return ::access(path.c_str(), F_OK) == 0 ? absolute(path) : std::string();
}

bool isExecutableFile(const std::string& path) {
    struct stat st {};
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode) && ::access(path.c_str(), X_OK) == 0;
}

// The program followed by its parameters, which are split by the same rules as a command line.
std::vector<std::string> programWords(std::string program, std::string_view parameters) {
    std::vector<std::string> words = splitCommandLine("program " + std::string(parameters));
    words[0] = std::move(program);
    return words;
}

} // namespace

bool PosixShell::execute(std::string_view verb, std::string_view file, std::string_view parameters,
                         std::string_view folder, WindowStyle) {
    if (file.empty() || !(verb.empty() || text::iequals(verb, "open") || text::iequals(verb, "explore")))
        return false;

    // Documents, folders and links go to the desktop's opener, which picks the program the user
    // chose for them.
    const auto openWithDesktop = [&](const std::string& what) {
        return processes_.spawn({"xdg-open", what}, folder).has_value();
    };
    if (isUrl(file))
        return openWithDesktop(std::string(file));

    const std::string path = locate(file, folder);
    if (path.empty()) {
        // Not a file here: a program name to be looked up on the search path, or a Windows program
        // name whose installed counterpart the process starter knows how to find.
        if (file.find('/') != std::string_view::npos && !text::iendsWith(file, ".exe"))
            return false;
        return processes_.spawn(programWords(std::string(file), parameters), folder).has_value();
    }
    // A file that is marked executable but cannot be run (a document on a file system that marks
    // everything executable) is opened as the document it is.
    if (isExecutableFile(path) && processes_.spawn(programWords(path, parameters), folder))
        return true;
    return openWithDesktop(path);
}

} // namespace pl::platform::posix
