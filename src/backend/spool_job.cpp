#include "backend/spool_job.h"

#include "backend/job_names.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace pl::backend {

namespace {

constexpr int MaxAttempts = 1000;
// Names taken in order before the backend turns to random ones: every user may write into the spool
// folder, and a job that finds no free name fails, which stops the printer for everybody.
constexpr int SequentialNames = 100;
constexpr std::size_t HeadLimit = 4096;

// What the signal handler needs to remove a partial file: fixed storage, no allocation.
volatile int partialFolder = -1;
char partialName[512];

std::string errorText(const char* what, int error) {
    return std::string("ERROR: ") + what + ": " + std::strerror(error);
}

bool writeAll(int fd, const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t n = ::write(fd, data, size);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = EIO;
            return false;
        }
        data += n;
        size -= static_cast<std::size_t>(n);
    }
    return true;
}

ssize_t readSome(int fd, char* buffer, std::size_t size) {
    for (;;) {
        const ssize_t n = ::read(fd, buffer, size);
        if (n >= 0 || errno != EINTR)
            return n;
    }
}

// Copies the job, with the title comment after the first line of a PostScript job: the assistant
// proposes the first title it finds, and this one is the title the user printed with.
bool copyJob(int input, int output, std::string_view title, std::string& error) {
    std::string head;
    char buffer[65536];
    bool ended = false;
    std::optional<std::size_t> firstLine;
    while (head.size() < HeadLimit) {
        const ssize_t n = readSome(input, buffer, sizeof buffer);
        if (n < 0) {
            error = errorText("cannot read the job", errno);
            return false;
        }
        if (n == 0) {
            ended = true;
            break;
        }
        head.append(buffer, static_cast<std::size_t>(n));
        firstLine = endOfFirstPostScriptLine(head);
        if (firstLine || (head.size() >= 2 && head.compare(0, 2, "%!") != 0))
            break;
    }
    if (!firstLine)
        firstLine = endOfFirstPostScriptLine(head);
    std::string out = head;
    if (firstLine) {
        const std::size_t at = *firstLine;
        std::size_t eol = head.find_first_of("\r\n");
        const std::string line = titleLine(title, std::string_view(head).substr(eol, at - eol));
        out = head.substr(0, at) + line + head.substr(at);
    }
    if (!writeAll(output, out.data(), out.size())) {
        error = errorText("cannot write the job", errno);
        return false;
    }
    while (!ended) {
        const ssize_t n = readSome(input, buffer, sizeof buffer);
        if (n < 0) {
            error = errorText("cannot read the job", errno);
            return false;
        }
        if (n == 0)
            break;
        if (!writeAll(output, buffer, static_cast<std::size_t>(n))) {
            error = errorText("cannot write the job", errno);
            return false;
        }
    }
    return true;
}

// The number after "_" in the job's name at `attempt`: the next numbers first, then random ones,
// which nobody can place in the folder beforehand.
int nameSuffix(int attempt) {
    std::uint32_t random = 0;
    if (attempt < SequentialNames || ::getrandom(&random, sizeof random, 0) != sizeof random)
        return attempt;
    return SequentialNames + static_cast<int>(random % 900000000u);
}

// Renames without ever replacing what is at `to`; EEXIST when something is there.
int renameNoReplace(int folder, const std::string& from, const std::string& to) {
    if (::renameat2(folder, from.c_str(), folder, to.c_str(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // File systems without the flag: a hard link fails on an existing name, as wanted.
    if (::linkat(folder, from.c_str(), folder, to.c_str(), 0) != 0)
        return errno;
    ::unlinkat(folder, from.c_str(), 0);
    return 0;
}

void rememberPartial(int folder, const std::string& name) {
    std::snprintf(partialName, sizeof partialName, "%s", name.c_str());
    partialFolder = folder;
}

void forgetPartial() {
    partialFolder = -1;
}

} // namespace

void removePartialJob() {
    const int folder = partialFolder;
    if (folder >= 0)
        ::unlinkat(folder, partialName, 0);
}

int openSpoolFolder(const std::string& path, std::string& error) {
    if (path.empty() || path.front() != '/') {
        error = "ERROR: the device URI names no absolute spool folder: " + path;
        return -1;
    }
    const int fd = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (fd < 0) {
        const int e = errno;
        if (e == ELOOP || e == ENOTDIR)
            error = "ERROR: the spool folder " + path + " is not a real folder (a link or a file); nothing written";
        else
            error = errorText(("cannot open the spool folder " + path).c_str(), e);
        return -1;
    }
    return fd;
}

JobResult writeJob(int folder, int input, const JobRequest& request) {
    // A new partial file, never an existing one: a link or file planted at the name is skipped.
    int output = -1;
    int attempt = 0;
    std::string partial;
    // CUPS cancels with SIGTERM; it waits until the handler knows the new file, so that a cancel
    // never leaves a partial file that no user may remove.
    sigset_t terminate, previous;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    sigprocmask(SIG_BLOCK, &terminate, &previous);
    int suffix = 0;
    for (; attempt < MaxAttempts; ++attempt) {
        suffix = nameSuffix(attempt);
        partial = partialJobName(finalJobName(request.user, request.number, suffix));
        output = ::openat(folder, partial.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
        if (output >= 0 || errno != EEXIST)
            break;
    }
    const int openError = errno;
    if (output >= 0)
        rememberPartial(folder, partial);
    sigprocmask(SIG_SETMASK, &previous, nullptr);
    if (output < 0)
        return {BackendFailed, errorText("cannot create the job file in the spool folder", openError)};

    auto fail = [&](std::string message) {
        ::close(output);
        ::unlinkat(folder, partial.c_str(), 0);
        forgetPartial();
        return JobResult{BackendFailed, std::move(message)};
    };

    std::string error;
    if (!copyJob(input, output, request.title, error))
        return fail(error);
    // Only the owner may read the job; it becomes the user's only once it is complete.
    if (::fchmod(output, 0600) != 0)
        return fail(errorText("cannot protect the job file", errno));
    if (request.owner && ::fchown(output, request.owner->uid, request.owner->gid) != 0)
        return fail(errorText("cannot give the job file to its user", errno));
    if (::fsync(output) != 0)
        return fail(errorText("cannot write the job to disk", errno));
    if (::close(output) != 0) {
        output = -1;
        ::unlinkat(folder, partial.c_str(), 0);
        forgetPartial();
        return {BackendFailed, errorText("cannot write the job", errno)};
    }

    // The final name of the partial file's own suffix first.
    for (bool first = true; attempt < MaxAttempts; ++attempt, first = false) {
        const std::string final = finalJobName(request.user, request.number, first ? suffix : nameSuffix(attempt));
        const int e = renameNoReplace(folder, partial, final);
        if (e == 0) {
            forgetPartial();
            ::fsync(folder);
            return {BackendOk, "INFO: job " + request.number + " of " + request.user + " is waiting as " + final};
        }
        if (e != EEXIST) {
            ::unlinkat(folder, partial.c_str(), 0);
            forgetPartial();
            return {BackendFailed, errorText("cannot rename the job file", e)};
        }
    }
    ::unlinkat(folder, partial.c_str(), 0);
    forgetPartial();
    return {BackendFailed, "ERROR: no free job name in the spool folder"};
}

} // namespace pl::backend
