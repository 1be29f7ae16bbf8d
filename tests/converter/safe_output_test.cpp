// The real converter puts out only whole results, never in place of a file it was not meant to
// replace, and leaves nothing behind, whatever happens to it.

#include "converter_harness.h"
#include "platform/run_marks.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <set>
#include <sys/wait.h>
#include <thread>
#include <tuple>
#include <unistd.h>

using namespace pl::test;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

std::string pagesJob(int pages) {
    return "%!PS\n/Helvetica findfont 20 scalefont setfont\n1 1 " + std::to_string(pages) +
           " { 72 600 moveto 20 string cvs show showpage } for\n";
}

// A job that keeps Ghostscript busy for `seconds` before it draws its word.
std::string slowJob(const std::string& word, int seconds) {
    return "%!PS\nrealtime " + std::to_string(seconds * 1000) +
           " add { dup realtime le { exit } if } loop pop\n/Helvetica findfont 30 scalefont setfont\n"
           "72 600 moveto (" + word + ") show showpage\n";
}

class Mount {
public:
    Mount(const std::string& folder, const std::string& size) : folder_(folder) {
        mounted_ = pl::platform::runAndWait({"mount", "-t", "tmpfs", "-o", "size=" + size, "tmpfs", folder}, 30s)
                       .exitCode == 0;
    }
    ~Mount() {
        if (mounted_)
            pl::platform::runAndWait({"umount", folder_}, 30s);
    }
    bool mounted() const { return mounted_; }

private:
    std::string folder_;
    bool mounted_ = false;
};

} // namespace

TEST(converter_output, a_full_disk_fails_keeping_the_job_and_leaving_nothing) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "a small file system to fill can only be mounted by root";
    // 20 pages fill 8 KiB only when the file is closed, and Ghostscript still reports success; 400
    // pages fill it while pages are written, which it notices.
    for (const int pages : {20, 400}) {
        ConverterHarness sandbox;
        Mount full(sandbox.out(), "8k");
        if (!full.mounted())
            GTEST_SKIP() << "no tmpfs can be mounted here";
        const auto job = sandbox.writeRawJob("~job.ps", pagesJob(pages));
        const auto result = sandbox.run({"/3", "delps,save,nocode", "", sandbox.out() + "Full.pdf", job});
        sandbox.expectFailureKeeping(result, "nothing was converted", {"~job.ps"});
        if (pages == 20) {
            EXPECT_NE(result.output.find("(is the disk full?)"), std::string::npos) << result.output;
        }
    }
}

TEST(converter_output, five_jobs_of_one_name_at_once_give_five_pdfs) {
    ConverterHarness sandbox;
    // Each job takes a second, so all five are converting when the first one finishes.
    const std::vector<std::string> words{"ONE", "TWO", "THREE", "FOUR", "FIVE"};
    std::vector<std::thread> converters;
    std::vector<int> exitCodes(words.size(), -2);
    for (std::size_t i = 0; i < words.size(); ++i) {
        const auto job = sandbox.writeRawJob("~job" + words[i] + ".ps", slowJob(words[i], 1));
        converters.emplace_back([&, i, job] {
            exitCodes[i] = sandbox.run({"/3", "delps,save,nocode", "", sandbox.out() + "Title.pdf", job}).exitCode;
        });
    }
    for (auto& converter : converters)
        converter.join();
    EXPECT_EQ(exitCodes, std::vector<int>(5, 0));
    const Names pdfs{"Title (1).pdf", "Title (2).pdf", "Title (3).pdf", "Title (4).pdf", "Title.pdf"};
    ASSERT_EQ(ConverterHarness::namesIn(sandbox.out()), pdfs);
    std::set<std::string> found;
    for (const auto& pdf : pdfs) {
        for (const auto& word : words) {
            if (pdfText(sandbox.out() + pdf).find(word) != std::string::npos)
                found.insert(word);
        }
    }
    EXPECT_EQ(found, std::set<std::string>(words.begin(), words.end()));
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
}

TEST(converter_output, a_job_without_a_page_or_over_a_read_only_file_fails_and_is_kept) {
    ConverterHarness sandbox;
    const auto readOnly = sandbox.out() + "Locked.pdf";
    std::ofstream(readOnly) << "kept as it is";
    fs::permissions(readOnly, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    const std::vector<std::tuple<std::string, std::string, std::string, std::string>> cases = {
        {"nothing at all", "", "Empty.pdf", "The job drew no page"},
        {"no showpage", "%!PS\n/Helvetica findfont 30 scalefont setfont 72 600 moveto (TEXT) show\n", "NoPage.pdf",
         "The job drew no page"},
        {"no showpage, images", "%!PS\n72 600 moveto 100 0 rlineto stroke\n", "NoPage - %02d.png",
         "The job drew no page"},
        {"a read-only output", pagesJob(1), "Locked.pdf", "is read-only and is not replaced"},
    };
    for (const auto& [what, postscript, output, complaint] : cases) {
        const auto job = sandbox.writeRawJob("~job.ps", postscript);
        const std::string profile = output.ends_with(".png") ? "PNG Images" : "";
        const auto result = sandbox.run({"/3", "delps,save,nocode", profile, sandbox.out() + output, job});
        SCOPED_TRACE(what);
        sandbox.expectFailureKeeping(result, complaint, {"~job.ps"}, {"Locked.pdf"});
    }
    EXPECT_EQ(readFile(readOnly), "kept as it is");
}

TEST(converter_output, what_killed_runs_left_is_removed_and_a_stopped_run_leaves_nothing) {
    ConverterHarness sandbox;
    // The marks of a run that has ended, and of one that still runs (this test).
    pid_t ended = ::fork();
    if (ended == 0)
        ::_exit(0);
    ::waitpid(ended, nullptr, 0);
    const std::string host = pl::platform::currentRunTag().substr(std::to_string(::getpid()).size());
    const std::string endedTag = std::to_string(ended) + host;
    const std::string liveTag = pl::platform::currentRunTag();
    for (const auto& tag : {endedTag, liveTag}) {
        std::ofstream(sandbox.out() + ".paperlark-" + tag + "-0123456789abcdef.tmp") << "half a PDF";
        fs::create_directories(sandbox.temp() + "paperlark-" + tag + "-Ab12Cd/sub");
    }
    const auto result = sandbox.run({"/3", "delps,save,nocode", "", sandbox.out() + "Done.pdf",
                                     sandbox.writeRawJob("~done.ps", pagesJob(1))});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()),
              (Names{".paperlark-" + liveTag + "-0123456789abcdef.tmp", "Done.pdf"}));
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{"paperlark-" + liveTag + "-Ab12Cd"});
    fs::remove_all(sandbox.temp() + "paperlark-" + liveTag + "-Ab12Cd");
    fs::remove(sandbox.out() + ".paperlark-" + liveTag + "-0123456789abcdef.tmp");

    // Stopped while Ghostscript works: the converter's process id is in its temporary's name.
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        const auto job = sandbox.writeRawJob("~slow.ps", slowJob("SLOW", 20));
        pl::platform::ChildResult stopped;
        std::thread converter([&] {
            stopped = sandbox.run({"/3", "delps,save,nocode", "", sandbox.out() + "Slow.pdf", job});
        });
        pid_t pid = 0;
        for (int i = 0; i < 200 && pid == 0; ++i) {
            std::this_thread::sleep_for(50ms);
            for (const auto& name : ConverterHarness::namesIn(sandbox.out())) {
                if (name.starts_with(".paperlark-"))
                    pid = std::stoi(name.substr(11));
            }
        }
        EXPECT_NE(pid, 0);
        if (pid != 0)
            ::kill(pid, signal);
        converter.join();
        EXPECT_EQ(stopped.exitCode, -1) << signal << ": " << stopped.output;
        EXPECT_NE(stopped.output.find("was stopped"), std::string::npos) << stopped.output;
        EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{"~slow.ps"});
        EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{"Done.pdf"});
        EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});
    }
}
