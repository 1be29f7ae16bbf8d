// The CUPS backend of the Paperlark printer: CUPS runs it as root (it is installed with mode 0700)
// for every job, and it writes the job as a PostScript file into the spool folder named by the
// device URI, under the printing user's name, where that user's assistant picks it up.
//
//   paperlark                                       tells CUPS which device it offers
//   paperlark job-id user title copies options [file]   writes one job (from standard input
//                                                        without a file)
//
// It starts no other program, so nothing a user typed (name, title) can reach one.

#include "backend/job_names.h"
#include "backend/spool_job.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <pwd.h>
#include <string>
#include <unistd.h>

namespace {

constexpr const char* DefaultFolder = "/var/spool/paperlark";

// "paperlark:/var/spool/paperlark" or "paperlark:///var/spool/paperlark".
std::string folderFromUri(const char* uri) {
    std::string folder = uri ? uri : "";
    const auto colon = folder.find(':');
    if (colon == std::string::npos)
        return DefaultFolder;
    folder.erase(0, colon + 1);
    if (folder.rfind("//", 0) == 0)
        folder.erase(0, 2);
    return folder.empty() ? DefaultFolder : folder;
}

std::optional<pl::backend::Owner> localUser(const std::string& name) {
    const passwd* entry = ::getpwnam(name.c_str());
    if (!entry)
        return std::nullopt;
    return pl::backend::Owner{entry->pw_uid, entry->pw_gid};
}

void onTerminate(int) {
    pl::backend::removePartialJob();
    std::_Exit(pl::backend::BackendFailed);
}

int finish(int code, const std::string& message) {
    std::fprintf(stderr, "%s\n", message.c_str());
    return code;
}

} // namespace

int main(int argc, char** argv) {
    using namespace pl::backend;
    if (argc == 1) {
        std::printf("direct paperlark:%s \"Paperlark\" \"Paperlark PDF printer\"\n", DefaultFolder);
        return BackendOk;
    }
    if (argc < 6 || argc > 7)
        return finish(BackendFailed, "ERROR: usage: paperlark job-id user title copies options [file]");

    std::signal(SIGPIPE, SIG_IGN);
    struct sigaction cancel {};
    cancel.sa_handler = onTerminate;
    sigaction(SIGTERM, &cancel, nullptr);

    const auto user = usableUserName(argv[2]);
    if (!user)
        return finish(BackendCancel, "ERROR: the job's user name cannot name a job file; job refused");

    int input = STDIN_FILENO;
    if (argc == 7) {
        input = ::open(argv[6], O_RDONLY | O_CLOEXEC);
        if (input < 0)
            return finish(BackendFailed, std::string("ERROR: cannot open the job: ") + std::strerror(errno));
    }

    std::string error;
    const std::string path = folderFromUri(std::getenv("DEVICE_URI"));
    const int folder = openSpoolFolder(path, error);
    if (folder < 0)
        return finish(BackendStop, error);

    JobRequest request{*user, jobNumber(argv[1]), argv[3], localUser(*user)};
    if (!request.owner) {
        // Nobody here can take the job: it stays root's, readable by root only, until an
        // administrator hands it on.
        std::fprintf(stderr, "WARNING: %s is no user of this system; the job stays with root\n", user->c_str());
    }
    const JobResult result = writeJob(folder, input, request);
    return finish(result.code, result.message);
}
