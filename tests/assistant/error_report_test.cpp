// The error report: when it shows what, and the mail it hands to the mail program.

#include "assistant_world.h"

#include "assistant/mail_link.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace pl::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

// A world whose desktop opener is a small script that writes down what it was asked to open.
struct Reporting : AssistantWorld {
    Reporting() {
        setMachine("pldir", suite);
        const std::string opener =
            root.write("bin/xdg-open", "#!/bin/sh\nprintf '%s' \"$1\" > \"" + root.folder() + "opened.tmp\"\nmv \"" +
                                           root.folder() + "opened.tmp\" \"" + opened() + "\"\n");
        fs::permissions(opener, fs::perms::owner_all);
        const char* path = std::getenv("PATH");
        env.set("PATH", root.folder() + "bin:" + (path ? path : "/usr/bin:/bin"));
    }
    std::string opened() const { return root.folder() + "opened.txt"; }
    // What the opener was given, waiting a little for it to run.
    std::string openedLink() const {
        const auto deadline = std::chrono::steady_clock::now() + 10s;
        while (!fs::exists(opened()) && std::chrono::steady_clock::now() < deadline)
            std::this_thread::sleep_for(20ms);
        return root.read("opened.txt");
    }
    std::string suite = folder("suite");
};

std::string percentDecoded(std::string_view text) {
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool escape = text[i] == '%' && i + 2 < text.size();
        out.push_back(escape ? static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16)) : text[i]);
        i += escape ? 2 : 0;
    }
    return out;
}

TEST(error_report, a_recent_installation_offers_a_report_mail_that_reaches_the_mail_program) {
    Reporting w;
    w.setMachine("SupportMail", "support@example.org");
    w.setMachine("Version", "4.12.3");
    w.setMachine("Build", "2026");
    w.setMachine("gswin32c", "/usr/bin/gs");
    const char* windows = "HKLM\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion";
    w.registry.SetRegValue(windows, "CurrentVersion", "6.1");
    w.registry.SetRegValue(windows, "CurrentBuildNumber", "7601");
    w.registry.SetRegValue(windows, "CSDVersion", "Service Pack 1");
    w.registry.SetRegValue("HKCU\\Control Panel\\International", "locale", "00000407");
    w.fileAt(w.suite + "plsetup", startOfDayDaysAgo(40) + 1min);
    w.view.msgBoxAnswers.push_back(mb::Yes);

    w.report.report("frmPlAssist1.showplAssist.click", "14 - name a as b", RuntimeError(err::FileNotFound),
                    "psdir = /spool/ & more\r\nUsername = alice");

    ASSERT_EQ(w.view.messages.size(), 1u);
    EXPECT_EQ(w.view.messages[0].style, mb::YesNo | mb::Exclamation);
    EXPECT_TRUE(w.view.messages[0].prompt.starts_with(
        "Fatal exeption.\r\n\r\nError 53 (File not found)\r\n\r\nError in Module "
        "frmPlAssist1.showplAssist.click\r\n\r\n"
        "Data:\r\n14 - name a as b\r\npsdir = /spool/ & more\r\nUsername = alice\r\n\r\n"))
        << w.view.messages[0].prompt;
    EXPECT_TRUE(w.state.quitRequested);
    EXPECT_EQ(w.state.exitCode, 1);

    const std::string link = w.openedLink();
    const std::string start = "mailto:support@example.org?Subject=The%20following%20Error%20rised%20with%20plAssist:"
                              "%2053%20%28File%20not%20found%29%20-%20Version%204.12&Body=";
    ASSERT_TRUE(link.starts_with(start)) << link;
    EXPECT_NE(link.find("/spool/%20&%20more%0D%0AUsername"), std::string::npos) << "\"&\" is left as it is";
    const std::string body = percentDecoded(link.substr(start.size()));
    EXPECT_TRUE(body.starts_with("Fatal exeption.\r\n\r\nError 53 (File not found)\r\n")) << body;
    EXPECT_NE(body.find("Username = alice\r\n\r\n---------------------------------\r\nMore information:\r\n"
                        "- Windows version:     6.1.7601.Service Pack 1\r\n"
                        "- Windows language:    00000407\r\n"
                        "- Windows setupdir:    \r\n"),
              std::string::npos)
        << body;
    EXPECT_NE(body.find("/usr/bin/gs\r\n"), std::string::npos);
    EXPECT_NE(body.find(w.machineFolder + "\r\n"), std::string::npos) << "the machine psdir";
    EXPECT_TRUE(body.ends_with("v4.12.3 / 2026\r\n")) << body;
    EXPECT_EQ(body.find("Do you want"), std::string::npos) << "the question is no part of the mail";
}

TEST(error_report, an_installation_of_41_days_asks_for_an_update_instead) {
    Reporting w;
    w.setMachine("SupportMail", "support@example.org");
    w.fileAt(w.suite + "plsetup", startOfDayDaysAgo(41) + 23h + 59min);

    w.report.report("frmPlAssist1.Form.Load", "2: Init", RuntimeError(err::Overflow));

    ASSERT_EQ(w.view.messages.size(), 1u);
    EXPECT_EQ(w.view.messages[0].style, mb::OkOnly | mb::Exclamation);
    EXPECT_TRUE(w.view.messages[0].prompt.starts_with("Fatal exeption in frmPlAssist1.Form.Load\r\n\r\nError 6 "
                                                      "(Overflow)\r\n\r\nData:\r\n2: Init\r\n\r\nP l e a s e "))
        << w.view.messages[0].prompt;
    EXPECT_TRUE(w.state.quitRequested);
    std::this_thread::sleep_for(200ms);
    EXPECT_FALSE(fs::exists(w.opened()));
}

// The report never returns to the procedure that failed: the program's process really ends.
TEST(error_report, ends_the_process_and_never_returns_to_the_failing_procedure) {
    Reporting w;
    w.setMachine("DisableErr", "");
    w.view.msgBoxAnswers.push_back(mb::No);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        assistant::ErrorReport report(*w.os, w.registry, w.view, w.state,
                                      [&](int exitCode) { w.os->processes().exitCurrent(exitCode); });
        report.report("plDialog1.TexteAnzeigen", "1", RuntimeError(err::Overflow));
        ::_exit(42); // the failing procedure carried on
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), 1);
    std::this_thread::sleep_for(200ms);
    EXPECT_FALSE(fs::exists(w.opened())) << "No sends nothing";
}

// Shown without a support address and without a setup program (which counts as installed today),
// the report opens a mail for the user to address.
TEST(error_report, disable_err_in_the_machine_key_wins_and_the_user_key_counts_when_that_is_empty) {
    struct Case {
        const char* machine;
        const char* user;
        bool shown;
    };
    for (const Case& c : {Case{"0", "", false}, Case{"yes", "", false}, Case{"", "1", false}, Case{"", "", true}}) {
        Reporting w;
        if (*c.machine)
            w.setMachine("DisableErr", c.machine);
        if (*c.user)
            w.setUser("DisableErr", c.user);
        w.report.report("x.y", "1", RuntimeError(err::Overflow));
        EXPECT_EQ(!w.view.messages.empty(), c.shown) << c.machine << "/" << c.user;
        EXPECT_EQ(w.state.quitRequested, c.shown) << "switched off, the failing procedure carries on";
        if (!c.shown)
            continue;
        EXPECT_EQ(w.view.messages[0].style, mb::YesNo | mb::Exclamation);
        EXPECT_TRUE(w.openedLink().starts_with("mailto:?Subject=The%20following%20Error%20rised%20with%20"));
        EXPECT_EQ(w.endedWith, 1);
    }
}

TEST(error_report, mail_links_escape_every_byte_outside_the_kept_set_and_open_their_query_with_a_question_mark) {
    EXPECT_EQ(assistant::UrlEncode("a b\r\nZ-./_~&:?@#!$*+"), "a%20b%0D%0AZ-./_~&:?@#!$*+");
    EXPECT_EQ(assistant::UrlEncode(std::string("M\xC3\xBCller,%\x01", 10)), "M%C3%BCller%2C%25%01");
    EXPECT_EQ(assistant::mailtoLink("a@b.c", "", "d@e.f", "", "x y"), "mailto:a@b.c?CC=d@e.f&Body=x%20y");
    EXPECT_EQ(assistant::mailtoLink("a@b.c", "S", "", "g h", ""), "mailto:a@b.c?Subject=S&BCC=g h");
    EXPECT_EQ(assistant::mailtoLink("a@b.c", "", "", "", ""), "mailto:a@b.c");
}

} // namespace
} // namespace pl::test
