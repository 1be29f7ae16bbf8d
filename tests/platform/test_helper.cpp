// A small program the platform tests start as a real child process. What it does depends on its
// first word (or, when it is started under the name "xdg-open", on that name):
//   argv OUT WORD...   writes its working folder and the words it received to OUT, each ended by a
//                      zero byte
//   sleep SECONDS      waits, then ends
//   lock NAME READY    takes the instance lock NAME, writes "held" or "refused" to READY, then
//                      waits until it is killed (at most a minute)
//   xdg-open WORD...   writes its words to the file named by PLATFORM_TEST_RECORD

#include "platform/platform.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <unistd.h>

namespace {

// Written under a temporary name and renamed, so that a test polling for the file never reads it
// half written.
void writeFile(const std::string& path, const std::string& content) {
    const std::string temporary = path + ".part";
    {
        std::ofstream out(temporary, std::ios::binary | std::ios::trunc);
        out << content;
    }
    std::rename(temporary.c_str(), path.c_str());
}

std::string joinWords(int argc, char** argv, int first) {
    std::string all;
    for (int i = first; i < argc; ++i) {
        all += argv[i];
        all.push_back('\0');
    }
    return all;
}

} // namespace

int main(int argc, char** argv) {
    const std::string self = argv[0];
    if (self.size() >= 8 && self.compare(self.size() - 8, 8, "xdg-open") == 0) {
        const char* record = std::getenv("PLATFORM_TEST_RECORD");
        if (record)
            writeFile(record, joinWords(argc, argv, 1));
        return record ? 0 : 1;
    }
    if (argc < 2)
        return 2;
    const std::string mode = argv[1];
    if (mode == "argv" && argc >= 3) {
        char cwd[4096];
        writeFile(argv[2], std::string(getcwd(cwd, sizeof cwd) ? cwd : "") + '\0' + joinWords(argc, argv, 3));
    } else if (mode == "sleep" && argc == 3) {
        std::this_thread::sleep_for(std::chrono::milliseconds(static_cast<long>(std::atof(argv[2]) * 1000)));
    } else if (mode == "lock" && argc == 4) {
        auto platform = pl::platform::makeNativePlatform();
        auto lock = platform->makeInstanceLock();
        writeFile(argv[3], lock->acquire(argv[2]) ? "held" : "refused");
        std::this_thread::sleep_for(std::chrono::seconds(60));
    } else {
        return 2;
    }
    return 0;
}
