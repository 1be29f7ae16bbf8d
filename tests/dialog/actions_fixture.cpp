#include "actions_fixture.h"

#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pl::test {

FileHolder::FileHolder(const std::string& path, Lock kind) {
    int ready[2], release[2];
    if (::pipe(ready) != 0 || ::pipe(release) != 0)
        return;
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::close(ready[0]);
        ::close(release[1]);
        const int fd = ::open(path.c_str(), O_RDWR);
        bool locked = false;
        if (fd >= 0 && kind == Lock::Flock) {
            locked = ::flock(fd, LOCK_EX) == 0;
        } else if (fd >= 0) {
            struct flock lock {};
            lock.l_type = F_WRLCK;
            lock.l_whence = SEEK_SET;
            locked = ::fcntl(fd, F_SETLKW, &lock) == 0;
        }
        const char answer = locked ? '1' : '0';
        (void)::write(ready[1], &answer, 1);
        char ignored;
        (void)::read(release[0], &ignored, 1); // until the test closes its end
        ::_exit(0);
    }
    ::close(ready[1]);
    ::close(release[0]);
    pid_ = pid;
    release_ = release[1];
    char answer = '0';
    holding_ = pid > 0 && ::read(ready[0], &answer, 1) == 1 && answer == '1';
    ::close(ready[0]);
}

FileHolder::~FileHolder() {
    if (release_ >= 0)
        ::close(release_);
    if (pid_ > 0) {
        int status = 0;
        while (::waitpid(pid_, &status, 0) < 0 && errno == EINTR) {
        }
    }
}

ActionsFixture::ActionsFixture() {
    tempFolder = root.folder() + "tmp";
    out = root.folder() + "out/";
    std::filesystem::create_directories(tempFolder);
    std::filesystem::create_directories(out);
    env.set("TMPDIR", tempFolder);
    // The suite folder ("pldir") is where the converter is looked for ("plDir", the same value).
    installRecordingConverter(RECORDING_CONVERTER);
    writeProfile(suite, "High Quality.plp");
}

bool ActionsFixture::noCallArrives() const {
    return waitForCalls(1, std::chrono::milliseconds(400)).empty();
}

void ActionsFixture::expectOneWarning(const std::string& prompt) const {
    ASSERT_EQ(view.messages.size(), 1u);
    EXPECT_EQ(view.messages[0].prompt, prompt);
    EXPECT_EQ(view.messages[0].style, mb::Exclamation);
    EXPECT_EQ(view.messages[0].title, "Paperlark 4.12");
}

dialog::JobDialog& ActionsFixture::openWithActions() {
    dialog = std::make_unique<dialog::JobDialog>(*context, dialog::jobActions);
    dialog->Load();
    return *dialog;
}

dialog::DialogJobActions& ActionsFixture::buttons() {
    return dynamic_cast<dialog::DialogJobActions&>(dialog->actions());
}

} // namespace pl::test
