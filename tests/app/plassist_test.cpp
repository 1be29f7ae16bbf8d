// The plassist program as a user's session runs it: started as a real process on the offscreen
// platform in a sandbox of its own (registry store, spool folders, home, desktop), converting a job
// with the real converter and Ghostscript, and ending when it is told to.

#include "assistant/resident_form.h"
#include "platform/platform.h"
#include "support/scoped_env.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <set>
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
    // With `account` (uid, gid), run as that account; this process must then be root.
    Process(const std::vector<std::string>& args, const std::vector<std::string>& env, const std::string& output,
            std::optional<std::pair<uid_t, gid_t>> account = {}) {
        std::vector<char*> argv, envp;
        for (const auto& a : args)
            argv.push_back(const_cast<char*>(a.c_str()));
        argv.push_back(nullptr);
        for (const auto& e : env)
            envp.push_back(const_cast<char*>(e.c_str()));
        envp.push_back(nullptr);
        pid_ = ::fork();
        if (pid_ == 0) {
            if (account &&
                (::setgroups(0, nullptr) != 0 || ::setgid(account->second) != 0 || ::setuid(account->first) != 0))
                ::_exit(126);
            const int out = ::open(output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            ::dup2(out, 1);
            ::dup2(out, 2);
            ::execve(args[0].c_str(), argv.data(), envp.data());
            ::_exit(127);
        }
    }
    ~Process() {
        if (pid_ > 0 && !exitCode_) {
            kill(pid_, SIGKILL);
            waitpid(pid_, nullptr, 0);
        }
    }
    bool started() const { return pid_ > 0; }
    pid_t pid() const { return pid_; }
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

// The children of `parent` that have ended and were never collected.
std::vector<pid_t> zombieChildren(pid_t parent) {
    std::vector<pid_t> zombies;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string stat = readFile(entry.path() / "stat");
        const auto close = stat.rfind(')');
        if (close == std::string::npos)
            continue;
        std::istringstream rest(stat.substr(close + 2));
        char state = 0;
        pid_t ppid = 0;
        rest >> state >> ppid;
        if (ppid == parent && state == 'Z')
            zombies.push_back(std::stoi(entry.path().filename().string()));
    }
    return zombies;
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
    EXPECT_TRUE(waitFor([&] { return zombieChildren(assistant.pid()).empty(); }, 5s))
        << "the finished converter was never collected";

    std::ofstream(s.folder("machine") + "plassistende.cmd") << "\n";
    EXPECT_EQ(assistant.waitForExit(10s), 0) << s.output();
}

// A Unix account for a test, made with useradd when the system has none of that name and removed
// again afterwards.
class Account {
public:
    explicit Account(std::string name) : name_(std::move(name)) {
        if (::getpwnam(name_.c_str()) == nullptr) {
            TempDir scratch;
            Process add({"/usr/sbin/useradd", "--no-create-home", "--shell", "/usr/sbin/nologin", name_},
                        {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"}, scratch.folder() + "useradd.out");
            made_ = add.waitForExit(30s) == 0;
        }
        if (const passwd* pw = ::getpwnam(name_.c_str())) {
            uid_ = pw->pw_uid;
            gid_ = pw->pw_gid;
            ok_ = uid_ != 0;
        }
    }
    ~Account() {
        if (made_) {
            TempDir scratch;
            Process del({"/usr/sbin/userdel", name_}, {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"},
                        scratch.folder() + "userdel.out");
            del.waitForExit(30s);
        }
    }
    bool ok() const { return ok_; }
    uid_t uid() const { return uid_; }
    gid_t gid() const { return gid_; }

private:
    std::string name_;
    bool made_ = false, ok_ = false;
    uid_t uid_ = 0;
    gid_t gid_ = 0;
};

// One user's session on a terminal server: the user's own account, folders, registry and
// assistant; only the machine spool folder is shared.
class UserSession {
public:
    UserSession(const std::string& user, const Account& account, const std::string& base, const std::string& machine)
        : user_(user), account_(account), home_(base + user + "/") {
        for (const char* folder : {"reg", "config", "data", "desktop", "spool", "tmp", "run"})
            fs::create_directories(home_ + folder);
        const std::string header = "Windows Registry Editor Version 5.00\n\n";
        std::ofstream(home_ + "reg/HKEY_LOCAL_MACHINE.reg")
            << header << "[HKEY_LOCAL_MACHINE\\Software\\tobrin\\PaperlarkXP]\n\"psdir\"=\"" << machine << "\"\n";
        std::ofstream(home_ + "reg/HKEY_CURRENT_USER.reg")
            << header << "[HKEY_CURRENT_USER\\Software\\tobrin\\PaperlarkXP]\n"
            << "\"ADefault\"=\"desktop\"\n\"psdir\"=\"" << home_ << "spool/\"\n"
            << "\n[HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders]\n"
            << "\"Desktop\"=\"" << home_ << "desktop\"\n";
        for (const auto& entry : fs::recursive_directory_iterator(home_))
            ::lchown(entry.path().c_str(), account.uid(), account.gid());
        ::chown(home_.c_str(), account.uid(), account.gid());
        fs::permissions(home_ + "run", fs::perms::owner_all, fs::perm_options::replace);
    }

    Process start() const {
        const std::vector<std::string> env{"PATH=/usr/bin:/bin",
                                           "HOME=" + home_,
                                           "USER=" + user_,
                                           "LANG=C.UTF-8",
                                           "TMPDIR=" + home_ + "tmp",
                                           "XDG_RUNTIME_DIR=" + home_ + "run",
                                           "XDG_CONFIG_HOME=" + home_ + "config",
                                           "XDG_DATA_HOME=" + home_ + "data",
                                           "XDG_SESSION_ID=plassist-" + user_,
                                           "PAPERLARK_REGISTRY_DIR=" + home_ + "reg",
                                           "QT_QPA_PLATFORM=offscreen"};
        return Process({PLASSIST}, env, home_ + "plassist.out", std::pair(account_.uid(), account_.gid()));
    }
    std::set<std::string> desktop() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(home_ + "desktop"))
            names.insert(entry.path().filename().string());
        return names;
    }
    std::string output() const { return readFile(home_ + "plassist.out"); }
    const Account& account() const { return account_; }

private:
    std::string user_;
    const Account& account_;
    std::string home_;
};

// A job as the printer backend delivers it: written under a "~" name, given to its owner, renamed.
void deliver(const std::string& machine, const std::string& name, const std::string& titleLine, const Account& owner) {
    const std::string writing = machine + "~" + name;
    std::ofstream(writing, std::ios::binary)
        << "%!PS-Adobe-3.0\n%%Title: " << titleLine << "\n%%Pages: 1\n%%EndComments\n"
        << "/Helvetica findfont 24 scalefont setfont\n72 720 moveto (page) show\nshowpage\n%%EOF\n";
    ::chown(writing.c_str(), owner.uid(), owner.gid());
    fs::rename(writing, machine + name);
}

TEST(plassist, users_whose_names_share_a_prefix_each_get_only_their_own_jobs_past_pipes_and_nul_titles) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "needs root to run assistants under accounts of their own";
    Account one("user1"), ten("user10");
    if (!one.ok() || !ten.ok())
        GTEST_SKIP() << "could not make the accounts user1 and user10";
    TempDir dir;
    fs::permissions(dir.path(), fs::perms::all, fs::perm_options::replace);
    const std::string machine = dir.folder() + "machine/";
    fs::create_directories(machine);
    fs::permissions(machine, fs::perms::all | fs::perms::sticky_bit, fs::perm_options::replace);
    UserSession s1("user1", one, dir.folder(), machine), s10("user10", ten, dir.folder(), machine);
    Process a1 = s1.start(), a10 = s10.start();
    ASSERT_TRUE(a1.started() && a10.started());

    const auto pdfs = [](const std::string& user) {
        return std::set<std::string>{user + " first.pdf", user + " second.pdf", user + " third.pdf",
                                     user + " fourth.pdf"};
    };
    for (const auto* s : {&s1, &s10}) {
        const std::string user = s == &s1 ? "user1" : "user10";
        deliver(machine, user + "-1.ps", user + " first", s->account());
    }
    for (const auto* s : {&s1, &s10}) {
        const std::string user = s == &s1 ? "user1" : "user10";
        ASSERT_TRUE(waitFor([&] { return s->desktop() == std::set<std::string>{user + " first.pdf"}; }, 120s))
            << user << ": " << s->output();
    }

    // Ahead of each user's next jobs in name order: a pipe of the user's name, a job whose title
    // holds a NUL, and one whose title holds an escaped NUL.
    for (const auto* s : {&s1, &s10}) {
        const std::string user = s == &s1 ? "user1" : "user10";
        const std::string pipe = machine + user + "-2.ps";
        ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
        ::chown(pipe.c_str(), s->account().uid(), s->account().gid());
        deliver(machine, user + "-3.ps", user + " second" + std::string(1, '\0') + "ignored", s->account());
        deliver(machine, user + "-4.ps", user + " third\\000ignored", s->account());
    }
    for (const auto* s : {&s1, &s10}) {
        const std::string user = s == &s1 ? "user1" : "user10";
        ASSERT_TRUE(waitFor([&] { return s->desktop().size() >= 3; }, 120s)) << user << ": " << s->output();
    }
    // One more each, still handled.
    deliver(machine, "user1-5.ps", "user1 fourth", one);
    deliver(machine, "user10-5.ps", "user10 fourth", ten);
    for (const auto* s : {&s1, &s10}) {
        const std::string user = s == &s1 ? "user1" : "user10";
        EXPECT_TRUE(waitFor([&] { return s->desktop() == pdfs(user); }, 120s)) << user << ": " << s->output();
    }
    const auto left = [&] {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(machine))
            names.insert(entry.path().filename().string());
        return names;
    };
    const std::set<std::string> pipes{"user1-2.ps", "user10-2.ps"};
    EXPECT_TRUE(waitFor([&] { return left() == pipes; }, 30s)) << "only the pipes stay";

    std::ofstream(machine + "plassistende.cmd") << "\n";
    EXPECT_EQ(a1.waitForExit(15s), 0) << s1.output();
    EXPECT_EQ(a10.waitForExit(15s), 0) << s10.output();
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
