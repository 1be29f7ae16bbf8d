// Whatever goes wrong, a job is never lost: every input stays where it was, nothing half-written
// or temporary is left behind, the reason is on standard error and the exit code says so.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace pl::test;

TEST(converter_failure, a_postscript_error_keeps_every_input_and_the_old_output_and_is_logged) {
    ConverterHarness sandbox;
    std::filesystem::create_directories(sandbox.home() + "Desktop");
    sandbox.setUserValue("Debug", "1");
    const auto queued = sandbox.writeJob("~queued.ps", {"QUEUED"});
    const auto job = sandbox.writeRawJob("~job.ps", "%!PS\n72 600 moveto thisoperatordoesnotexist\nshowpage\n");
    const auto pdf = sandbox.out() + "keep.pdf";
    std::ofstream(pdf) << "the previous document";

    const auto result = sandbox.run({"/3", "delps,save,nocode", "High Quality", pdf, queued, job});
    sandbox.expectFailureKeeping(result, "Ghostscript could not convert", {"~job.ps", "~queued.ps"}, {"keep.pdf"});
    EXPECT_NE(result.output.find("Error: /undefined in thisoperatordoesnotexist"), std::string::npos) << result.output;
    EXPECT_EQ(readFile(pdf), "the previous document");
    const auto log = readFile(sandbox.home() + "Desktop/plAssist.log");
    EXPECT_NE(log.find("Paperlark: Ghostscript could not convert the job"), std::string::npos) << log;
}

TEST(converter_failure, a_job_that_never_ends_is_stopped_at_the_time_limit_leaving_no_page_behind) {
    ConverterHarness sandbox;
    sandbox.setUserValue("GsTimeout", "3");
    // Two pages are written before the endless part starts.
    const auto pages = sandbox.writeJob("~pages.ps", {"ONE", "TWO"});
    const auto job = sandbox.writeRawJob("~job.ps", "%!PS\n{ 1 pop } loop\nshowpage\n");
    for (const auto& [profile, output] : {std::pair{"", "never.pdf"}, std::pair{"PNG Images", "p - %02d.png"}}) {
        const auto start = std::chrono::steady_clock::now();
        const auto result = sandbox.run({"/3", "delps,save", profile, sandbox.out() + output, pages, job});
        const auto took = std::chrono::steady_clock::now() - start;
        sandbox.expectFailureKeeping(result, "within 3 seconds", {"~job.ps", "~pages.ps"});
        EXPECT_GE(took, std::chrono::seconds(3)) << output;
        EXPECT_LT(took, std::chrono::seconds(20)) << output;
    }
}

TEST(converter_failure, a_missing_input_output_folder_password_or_ghostscript_keeps_every_job) {
    ConverterHarness sandbox;
    const auto queued = sandbox.writeJob("~queued.ps", {"QUEUED"});
    const auto job = sandbox.writeJob("~job.ps", {"JOB"});
    const auto pdf = sandbox.out() + "x.pdf";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{"delps,save", "", pdf, queued, sandbox.jobs() + "~gone.ps"}, "~gone.ps"},
        {{"delps,save", "", sandbox.out() + "no such folder/x.pdf", queued, job}, "does not exist"},
        // /proc takes no new files, whoever asks.
        {{"delps,save", "", "/proc/paperlark-test.pdf", queued, job}, "Cannot write into the folder"},
        {{"delps,save", "", sandbox.out(), queued, job}, "is a folder"},
        // Nobody to ask for a password: there is no desktop.
        {{"delps,save,encode", "High Quality", pdf, queued, job}, "password"},
    };
    for (auto [args, complaint] : cases) {
        args.insert(args.begin(), "/3");
        sandbox.expectFailureKeeping(sandbox.run(args), complaint, {"~job.ps", "~queued.ps"});
    }
    sandbox.setUserValue("gswin32c", "/nonexistent/gs");
    sandbox.expectFailureKeeping(sandbox.run({"/3", "delps,save", "", pdf, queued, job}), "/nonexistent/gs",
                                 {"~job.ps", "~queued.ps"});
}

TEST(converter_failure, a_bad_command_line_gives_exit_code_2_and_touches_nothing) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("~job.ps", {"JOB"});
    const auto pdf = sandbox.out() + "x.pdf";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "no switch"},
        {{"/x", "delps,save", "", pdf, job}, "\"/x\""},
        {{"-3", "delps,save", "", pdf, job}, "\"-3\""},
        {{"/3", "delps,print", "", pdf, job}, "\"print\""},
        {{"/3", "delps,,save", "", pdf, job}, "empty action"},
        // A blank is not a separator: the assistant never writes one, so it is a different word.
        {{"/3", "delps, save", "", pdf, job}, "\" save\""},
        {{"/3", "delps,save", "", pdf}, "JOBFILE"},
        {{"/3", "delps,save", "", "", job}, "OUTPUT"},
        {{"/3", "delps,encode,nocode", "", pdf, job}, "exclude"},
        {{"/m", pdf}, "INPUT"},
    };
    for (const auto& [args, complaint] : cases) {
        const auto result = sandbox.run(args);
        EXPECT_EQ(result.exitCode, 2) << complaint;
        EXPECT_NE(result.output.find(complaint), std::string::npos) << result.output;
        EXPECT_NE(result.output.find("usage:"), std::string::npos) << result.output;
    }
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{"~job.ps"});
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{});
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.temp()), Names{});
}
