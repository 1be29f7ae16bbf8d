// The plassist program as a user's session runs it: started as a real process on the offscreen
// platform in a sandbox of its own (registry store, spool folders, home, desktop), converting a job
// with the real converter and Ghostscript, and ending when it is told to.

#include "assistant/resident_form.h"
#include "platform/platform.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

// A started program; killed if the test leaves it running.
class Process {
public:
    Process(const std::vector<std::string>& args, const std::vector<std::string>& env, const std::string& output) {
        std::vector<char*> argv, envp;
        for (const auto& a : args)
            argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        for (const auto& e : env)
            envp.push_back(const_cast<char*>(e.c_str()));
        envp.push_back(nullptr);
        posix_spawn_file_actions_t files;
        posix_spawn_file_actions_init(&files);
        posix_spawn_file_actions_addopen(&files, 1, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        posix_spawn_file_actions_adddup2(&files, 1, 2);
        if (posix_spawn(&pid_, args[0].c_str(), &files, nullptr, argv.data(), envp.data()) != 0)
            pid_ = -1;
        posix_spawn_file_actions_destroy(&files);
    }
    ~Process() {
        if (pid_ > 0 && !exitCode_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    bool started() const { return pid_ > 0; }
    // The exit code once the program has ended within `timeout`; nothing while it runs.
    std::optional<int> waitForExit(std::chrono::milliseconds timeout) {
        const auto until = std::chrono::steady_clock::now() + timeout;
        while (!exitCode_) {
            int status = 0;
            if (waitpid(pid_, &status, WNOHANG) == pid_)
                exitCode_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            else if (std::chrono::steady_clock::now() > until)
                break;
            else
                std::this_thread::sleep_for(20ms);
        }
        return exitCode_;
    }

private:
    pid_t pid_ = -1;
    std::optional<int> exitCode_;
};

// A session of user anna: registry hives, machine and user spool folders, a desktop.
class Session {
public:
    Session() {
        for (const char* folder : {"reg", "home", "machine", "user", "config", "data", "desktop", "run"})
            fs::create_directories(root.path() / folder);
        fs::permissions(root.path() / "run", fs::perms::owner_all);
        setMachine("\"psdir\"=\"" + folder("machine") + "\"");
        setUser("\"psdir\"=\"" + folder("user") + "\"");
    }

    std::string folder(const std::string& name) const { return root.folder() + name + "/"; }

    // Values of the suite's keys, as regedit lines.
    void setMachine(const std::string& line) { machineLines += line + "\n"; }
    void setUser(const std::string& line) { userLines += line + "\n"; }

    // Whether an assistant of this session holds the one-instance lock, asked the way a second
    // assistant asks; waits up to `timeout` for it (a busy machine may take a while to start one).
    bool waitUntilLocked(std::chrono::milliseconds timeout) const {
        ScopedEnv env;
        env.set("XDG_RUNTIME_DIR", root.folder() + "run");
        env.set("XDG_SESSION_ID", "plassist-test");
        auto os = platform::makeNativePlatform();
        const auto deadline = std::chrono::steady_clock::now() + timeout;
        while (std::chrono::steady_clock::now() < deadline) {
            if (!os->makeInstanceLock()->acquire(assistant::InstanceLockName))
                return true;
            std::this_thread::sleep_for(50ms);
        }
        return false;
    }
    std::vector<std::string> environment() const {
        return {"PATH=/usr/bin:/bin",
                "HOME=" + root.folder() + "home",
                "USER=anna",
                "LANG=C.UTF-8",
                "XDG_RUNTIME_DIR=" + root.folder() + "run",
                "XDG_CONFIG_HOME=" + root.folder() + "config",
                "XDG_DATA_HOME=" + root.folder() + "data",
                "XDG_SESSION_ID=plassist-test",
                "PAPERLARK_REGISTRY_DIR=" + root.folder() + "reg",
                "QT_QPA_PLATFORM=offscreen"};
    }

    // plassist with `args`, its output kept in the sandbox.
    Process start(std::vector<std::string> args = {}, const std::string& output = "plassist.out") {
        writeHives();
        args.insert(args.begin(), PLASSIST);
        return Process(args, environment(), root.folder() + output);
    }
    std::string output(const std::string& name = "plassist.out") const { return readFile(root.folder() + name); }

    // A print job as the printer delivers it: written under a "~" name, then renamed.
    void printJob(const std::string& name, const std::string& title) const {
        const std::string writing = folder("machine") + "~" + name;
        std::ofstream(writing, std::ios::binary)
            << "%!PS-Adobe-3.0\n%%Title: " << title << "\n%%Pages: 1\n%%EndComments\n"
            << "/Helvetica findfont 24 scalefont setfont\n72 720 moveto (" << title << ") show\nshowpage\n%%EOF\n";
        fs::rename(writing, folder("machine") + name);
    }

    TempDir root;

private:
    void writeHives() const {
        const std::string header = "Windows Registry Editor Version 5.00\n\n";
        std::ofstream(root.path() / "reg" / "HKEY_LOCAL_MACHINE.reg")
            << header << "[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]\n"
            << machineLines;
        std::ofstream(root.path() / "reg" / "HKEY_CURRENT_USER.reg")
            << header << "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n"
            << userLines
            << "\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]\n"
            << "\"Desktop\"=\"" << root.folder() << "desktop\"\n";
    }

    std::string machineLines, userLines;
};

// The text pdfinfo gives for a file, empty when it cannot read it as a PDF.
std::string pdfinfo(const std::string& pdf, const TempDir& scratch) {
    const std::string out = scratch.folder() + "pdfinfo.txt";
    Process info({"/usr/bin/pdfinfo", pdf}, {"PATH=/usr/bin:/bin"}, out);
    const auto code = info.waitForExit(30s);
    return code == 0 ? readFile(out) : std::string();
}

// The value of one "Name:   value" line of pdfinfo's report.
std::string field(const std::string& info, const std::string& name) {
    std::istringstream lines(info);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(name + ":")) {
            const auto value = line.find_first_not_of(' ', name.size() + 1);
            return value == std::string::npos ? std::string() : line.substr(value);
        }
    return "(none)";
}

bool waitFor(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto until = std::chrono::steady_clock::now() + timeout;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > until)
            return false;
        std::this_thread::sleep_for(50ms);
    }
    return true;
}

TEST(plassist, puts_a_printed_job_on_the_desktop_as_pdf_and_ends_at_the_end_marker) {
    Session s;
    s.setUser("\"ADefault\"=\"desktop\"");
    Process assistant = s.start();
    ASSERT_TRUE(assistant.started());

    s.printJob("anna0001.ps", "Quarterly Report");

    const std::string pdf = s.folder("desktop") + "Quarterly Report.pdf";
    std::string info;
    ASSERT_TRUE(waitFor([&] { return fs::exists(pdf) && !(info = pdfinfo(pdf, s.root)).empty(); }, 90s))
        << "no PDF on the desktop; the assistant said: " << s.output();
    EXPECT_EQ(field(info, "Pages"), "1") << info;
    EXPECT_EQ(field(info, "Title"), "Quarterly Report") << info;
    EXPECT_TRUE(waitFor([&] { return !fs::exists(s.folder("machine") + "anna0001.ps"); }, 10s));
    EXPECT_FALSE(assistant.waitForExit(0ms).has_value()) << "the assistant waits for the next job";

    std::ofstream(s.folder("machine") + "plassistende.cmd") << "\n";
    EXPECT_EQ(assistant.waitForExit(10s), 0) << s.output();
}

TEST(plassist, ends_with_the_companion_program_it_started) {
    Session s;
    Process assistant = s.start({"/bin/sleep", "1"});
    ASSERT_TRUE(assistant.started());
    const auto code = assistant.waitForExit(15s);
    ASSERT_TRUE(code.has_value()) << "still running long after its companion ended";
    EXPECT_EQ(*code, 0);
}

TEST(plassist, a_second_assistant_in_the_same_session_leaves_at_once) {
    Session s;
    Process first = s.start();
    ASSERT_TRUE(first.started());
    ASSERT_TRUE(s.waitUntilLocked(60s)) << "the first assistant never took the session's lock";
    Process second = s.start({}, "second.out");
    EXPECT_EQ(second.waitForExit(15s), 0);
    EXPECT_FALSE(first.waitForExit(0ms).has_value());
    std::ofstream(s.folder("machine") + "plassistende.cmd") << "\n";
    EXPECT_EQ(first.waitForExit(10s), 0);
}

TEST(plassist, answers_help_and_version_without_starting) {
    Session s;
    Process version = s.start({"--version"}, "version.out");
    EXPECT_EQ(version.waitForExit(10s), 0);
    EXPECT_EQ(s.output("version.out"), "plassist " PAPERLARK_VERSION "\n");
    Process help = s.start({"--help"}, "help.out");
    EXPECT_EQ(help.waitForExit(10s), 0);
    EXPECT_NE(s.output("help.out").find("Usage: plassist [PROGRAM [ARGUMENT ...]]"), std::string::npos);
}

} // namespace
} // namespace pl::test
