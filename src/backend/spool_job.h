#pragma once
// Writing one print job into the spool folder as root, so that nothing another user placed there can
// redirect it: every file operation is relative to the opened folder, nothing follows a link, the
// partial file is new (never an existing one), belongs to the printing user before anyone can see it
// complete, and its final name never replaces anything.

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>

namespace pl::backend {

// CUPS's backend exit codes.
enum ExitCode {
    BackendOk = 0,
    BackendFailed = 1,
    BackendStop = 4,
    BackendCancel = 5,
};

struct Owner {
    uid_t uid;
    gid_t gid;
};

struct JobRequest {
    std::string user;           // already checked with usableUserName
    std::string number;         // from jobNumber
    std::string title;          // as CUPS gave it
    std::optional<Owner> owner; // nothing: a user this system does not know; the job stays root's
};

struct JobResult {
    ExitCode code;
    std::string message; // for CUPS's log: "INFO: ..." or "ERROR: ..."
};

// Opens the spool folder itself (not a link to one) for the operations below; -1 with `error` set
// when it is missing or not a real folder.
int openSpoolFolder(const std::string& path, std::string& error);

// Copies `input` into a new job file of the folder `folderFd`.
JobResult writeJob(int folderFd, int input, const JobRequest& request);

// Called from the SIGTERM handler (CUPS cancels a job that way): removes the partial file being
// written, if any. Async-signal-safe.
void removePartialJob();

} // namespace pl::backend
