// The real converter on real print jobs, through the real Ghostscript.

#include "converter_harness.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

using namespace pl::test;

TEST(converter, jobs_become_pdfs_in_queue_order_delps_removes_the_inputs_and_merge_joins_pdfs) {
    ConverterHarness sandbox;
    const auto single = sandbox.out() + "Report.pdf";
    std::ofstream(single) << "an old version";
    // Action words ignore letter case; without delps the job stays.
    auto result = sandbox.run({"/3", "Save,NoCode", "High Quality", single, sandbox.writeJob("job.ps", {"ALPHA"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(single), 1);
    EXPECT_NE(pdfText(single).find("ALPHA"), std::string::npos);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{"job.ps"});

    const auto all = sandbox.out() + "All.pdf";
    result = sandbox.run({"/3", "delps,save,nocode", "Standard", all, sandbox.writeJob("~queued-1.ps", {"FIRST"}),
                          sandbox.writeJob("~queued-2.ps", {"SECOND"}), sandbox.writeJob("~job.ps", {"THIRD"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(all), 3);
    EXPECT_TRUE(inOrder(pdfText(all), {"FIRST", "SECOND", "THIRD"})) << pdfText(all);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{"job.ps"});

    // Merging keeps the order given, not the names' order.
    const auto merged = sandbox.out() + "merged.pdf";
    result = sandbox.run({"/m", merged, single, all});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(merged), 4);
    EXPECT_TRUE(inOrder(pdfText(merged), {"ALPHA", "FIRST", "SECOND", "THIRD"})) << pdfText(merged);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), (Names{"All.pdf", "Report.pdf", "merged.pdf"}));
}

TEST(converter, png_images_write_one_numbered_file_per_page) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"ONE", "TWO"});

    const auto result = sandbox.run({"/3", "delps,save", "PNG Images", sandbox.out() + "name - %02d.png", job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), (Names{"name - 01.png", "name - 02.png"}));
    EXPECT_EQ(readFile(sandbox.out() + "name - 02.png").substr(0, 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
}

TEST(converter, every_profile_shipped_or_the_users_own_converts_a_two_page_job) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"LEFT", "RIGHT"});
    // An unknown or empty profile leaves Ghostscript's defaults, a PDF; only the user's profile
    // found case-blind can have made PostScript.
    sandbox.writeUserProfile("Mixed Case", "-sdevice=ps2write\r\n");
    sandbox.writeUserProfile("Empty", "");
    for (const std::string profile :
         {"High Quality", "Standard", "Smallest File", "PDF-A", "TIFF", "MIXED CASE", "", "No Such Profile", "Empty"}) {
        const auto file = sandbox.out() + "[" + profile + "].out";
        const auto result = sandbox.run({"/3", "save", profile, file, job});
        ASSERT_EQ(result.exitCode, 0) << profile << ": " << result.output;
        if (profile == "TIFF" || profile == "MIXED CASE")
            continue;
        EXPECT_EQ(pdfPages(file), 2) << profile;
        EXPECT_TRUE(inOrder(pdfText(file), {"LEFT", "RIGHT"})) << profile;
    }
    EXPECT_EQ(readFile(sandbox.out() + "[TIFF].out").substr(0, 4), std::string("II*\0", 4));
    EXPECT_EQ(readFile(sandbox.out() + "[MIXED CASE].out").substr(0, 4), "%!PS");
    const auto meta =
        pl::platform::runAndWait({"pdfinfo", "-meta", sandbox.out() + "[PDF-A].out"}, std::chrono::seconds(30));
    EXPECT_NE(meta.output.find("pdfaid:part"), std::string::npos) << meta.output;
}

TEST(converter, file_names_are_only_names_whatever_characters_they_hold) {
    ConverterHarness sandbox;
    const std::string odd = "R\xC3\xA4tsel $(touch pwned); `touch pwned` & | 'x' 100% %d";
    std::filesystem::create_directories(sandbox.out() + odd);
    const auto first = sandbox.writeJob(odd + " 1.ps", {"GRUEN"});
    const auto job = sandbox.writeJob(odd + ".ps", {"BLAU"});
    const auto pdf = sandbox.out() + odd + "/" + odd + ".pdf";

    const auto result = sandbox.run({"/3", "delps,save,nocode", "High Quality", pdf, first, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_TRUE(inOrder(pdfText(pdf), {"GRUEN", "BLAU"}));
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out() + odd), Names{odd + ".pdf"});
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
    EXPECT_FALSE(std::filesystem::exists("pwned"));
    EXPECT_FALSE(std::filesystem::exists(sandbox.home() + "pwned"));

    // A relative name is a file in the current folder, even when it looks like a switch.
    const auto cwd = std::filesystem::current_path();
    std::filesystem::current_path(sandbox.jobs());
    sandbox.writeJob("-sDEVICE=png16m.ps", {"DASH"});
    const auto relative = sandbox.run({"/3", "save", "", "@out.pdf", "-sDEVICE=png16m.ps"});
    std::filesystem::current_path(cwd);
    ASSERT_EQ(relative.exitCode, 0) << relative.output;
    EXPECT_NE(pdfText(sandbox.jobs() + "@out.pdf").find("DASH"), std::string::npos);
}
