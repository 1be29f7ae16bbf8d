// Whatever goes wrong, a job is never lost: every input stays where it was, nothing half-written
// or temporary is left behind, the reason is on standard error and the exit code says so.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using pl::test::ConverterHarness;
using Names = std::vector<std::string>;

TEST(converter_failure, a_postscript_error_keeps_every_input_and_leaves_nothing_behind) {
    ConverterHarness sandbox;
    sandbox.writeJob("~queued.ps", {"QUEUED"});
    sandbox.writeBrokenJob("~job.ps");
    const auto before = ConverterHarness::namesIn(sandbox.jobs());

    const auto result = sandbox.run({"/3", "delps,save,nocode", "High Quality", sandbox.out() + "x.pdf",
                                     sandbox.jobs() + "~queued.ps", sandbox.jobs() + "~job.ps"});
    sandbox.expectFailureKeeping(result, "Ghostscript could not convert", before);
    EXPECT_NE(result.output.find("Error: /undefined in thisoperatordoesnotexist"), std::string::npos) << result.output;
}

TEST(converter_failure, a_failed_conversion_leaves_an_existing_output_untouched) {
    ConverterHarness sandbox;
    const auto pdf = sandbox.out() + "keep.pdf";
    {
        std::ofstream old(pdf);
        old << "the previous document";
    }
    const auto result = sandbox.run({"/3", "save", "", pdf, sandbox.writeBrokenJob("job.ps")});
    EXPECT_EQ(result.exitCode, 1);
    std::ifstream in(pdf);
    std::string content((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(content, "the previous document");
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{"keep.pdf"});
}

TEST(converter_failure, a_job_that_never_ends_is_stopped_at_the_time_limit) {
    ConverterHarness sandbox;
    sandbox.setUserValue("GsTimeout", "3");
    const auto queued = sandbox.writeJob("~queued.ps", {"QUEUED"});
    const auto job = sandbox.writeEndlessJob("~job.ps");

    const auto start = std::chrono::steady_clock::now();
    const auto result = sandbox.run({"/3", "delps,save", "", sandbox.out() + "never.pdf", queued, job});
    const auto took = std::chrono::steady_clock::now() - start;
    sandbox.expectFailureKeeping(result, "within 3 seconds", {"~job.ps", "~queued.ps"});
    EXPECT_GE(took, std::chrono::seconds(3));
    EXPECT_LT(took, std::chrono::seconds(20));
}

TEST(converter_failure, an_endless_job_for_page_files_leaves_no_page_behind) {
    ConverterHarness sandbox;
    sandbox.setUserValue("GsTimeout", "3");
    // Two pages are written before the endless part starts.
    const auto pages = sandbox.writeJob("~pages.ps", {"ONE", "TWO"});
    const auto job = sandbox.writeEndlessJob("~job.ps");
    const auto result = sandbox.run({"/3", "delps,save", "PNG Images", sandbox.out() + "p - %02d.png", pages, job});
    sandbox.expectFailureKeeping(result, "within 3 seconds", {"~job.ps", "~pages.ps"});
}

TEST(converter_failure, a_missing_input_stops_before_anything_is_converted) {
    ConverterHarness sandbox;
    const auto queued = sandbox.writeJob("~queued.ps", {"QUEUED"});
    const auto result =
        sandbox.run({"/3", "delps,save", "", sandbox.out() + "x.pdf", queued, sandbox.jobs() + "~gone.ps"});
    sandbox.expectFailureKeeping(result, "~gone.ps", {"~queued.ps"});
}

TEST(converter_failure, an_output_folder_that_is_missing_or_not_writable_keeps_the_job) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("~job.ps", {"JOB"});

    sandbox.expectFailureKeeping(sandbox.run({"/3", "delps,save", "", sandbox.out() + "no such folder/x.pdf", job}),
                                 "does not exist", {"~job.ps"});
    // /proc takes no new files, whoever asks.
    sandbox.expectFailureKeeping(sandbox.run({"/3", "delps,save", "", "/proc/paperlark-test.pdf", job}),
                                 "Cannot write into the folder", {"~job.ps"});
    sandbox.expectFailureKeeping(sandbox.run({"/3", "delps,save", "", sandbox.out(), job}), "is a folder", {"~job.ps"});
}

TEST(converter_failure, a_missing_ghostscript_is_reported_and_keeps_the_job) {
    ConverterHarness sandbox;
    sandbox.setUserValue("gswin32c", "/nonexistent/gs");
    const auto job = sandbox.writeJob("~job.ps", {"JOB"});
    const auto result = sandbox.run({"/3", "delps,save", "", sandbox.out() + "x.pdf", job});
    sandbox.expectFailureKeeping(result, "/nonexistent/gs", {"~job.ps"});
}

TEST(converter_failure, a_bad_command_line_gives_exit_code_2_and_touches_nothing) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("~job.ps", {"JOB"});
    const auto pdf = sandbox.out() + "x.pdf";
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
        {{}, "no switch"},
        {{"/x", "delps,save", "", pdf, job}, "\"/x\""},
        {{"/3", "delps,print", "", pdf, job}, "\"print\""},
        {{"/3", "delps,save", "", pdf}, "JOBFILE"},
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
