// The real converter on real print jobs, through the real Ghostscript.

#include "converter_harness.h"
#include "support/scoped_env.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <thread>

using pl::test::ConverterHarness;
using pl::test::inOrder;
using pl::test::pdfPages;
using pl::test::pdfText;
using Names = std::vector<std::string>;

namespace {

std::string firstBytes(const std::string& path, std::size_t count) {
    std::ifstream in(path, std::ios::binary);
    std::string bytes(count, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    return bytes;
}

} // namespace

TEST(converter, a_one_page_job_becomes_a_one_page_pdf_and_the_job_stays_without_delps) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"ALPHA"});
    const auto pdf = sandbox.out() + "Report.pdf";

    const auto result = sandbox.run({"/3", "save,nocode", "High Quality", pdf, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(pdf), 1);
    EXPECT_NE(pdfText(pdf).find("ALPHA"), std::string::npos);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{"Report.pdf"});
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{"job.ps"});
}

TEST(converter, queued_files_come_first_in_queue_order_and_delps_removes_every_input) {
    ConverterHarness sandbox;
    const auto first = sandbox.writeJob("~queued-1.ps", {"FIRST"});
    const auto second = sandbox.writeJob("~queued-2.ps", {"SECOND"});
    const auto job = sandbox.writeJob("~job.ps", {"THIRD"});
    const auto pdf = sandbox.out() + "All.pdf";

    const auto result = sandbox.run({"/3", "delps,save,nocode", "Standard", pdf, first, second, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(pdf), 3);
    EXPECT_TRUE(inOrder(pdfText(pdf), {"FIRST", "SECOND", "THIRD"})) << pdfText(pdf);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{"All.pdf"});
}

TEST(converter, png_images_write_one_numbered_file_per_page) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"ONE", "TWO"});

    const auto result = sandbox.run({"/3", "delps,save", "PNG Images", sandbox.out() + "name - %02d.png", job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), (Names{"name - 01.png", "name - 02.png"}));
    EXPECT_EQ(firstBytes(sandbox.out() + "name - 02.png", 8), "\x89PNG\r\n\x1a\n");
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
}

TEST(converter, every_shipped_profile_converts_a_two_page_job) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"LEFT", "RIGHT"});
    for (const std::string profile : {"High Quality", "Standard", "Smallest File", "PDF-A"}) {
        const auto pdf = sandbox.out() + profile + ".pdf";
        const auto result = sandbox.run({"/3", "save", profile, pdf, job});
        ASSERT_EQ(result.exitCode, 0) << profile << ": " << result.output;
        EXPECT_EQ(pdfPages(pdf), 2) << profile;
        EXPECT_TRUE(inOrder(pdfText(pdf), {"LEFT", "RIGHT"})) << profile;
    }
    const auto meta =
        pl::platform::runAndWait({"pdfinfo", "-meta", sandbox.out() + "PDF-A.pdf"}, std::chrono::seconds(30));
    EXPECT_NE(meta.output.find("pdfaid:part"), std::string::npos) << meta.output;

    const auto tiff = sandbox.out() + "scan.tif";
    const auto result = sandbox.run({"/3", "save", "TIFF", tiff, job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(firstBytes(tiff, 4), std::string("II*\0", 4));
}

TEST(converter, the_users_own_profile_wins_and_profile_names_ignore_case) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"WORD"});
    // The user's "Standard" writes PostScript: only that profile can have made the result.
    sandbox.writeUserProfile("Standard", "-sDEVICE=ps2write\r\n");
    sandbox.writeUserProfile("Mixed Case", "-sdevice=ps2write\r\n");

    auto result = sandbox.run({"/3", "save", "Standard", sandbox.out() + "a.ps", job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(firstBytes(sandbox.out() + "a.ps", 4), "%!PS");

    result = sandbox.run({"/3", "save", "MIXED CASE", sandbox.out() + "b.ps", job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(firstBytes(sandbox.out() + "b.ps", 4), "%!PS");

    result = sandbox.run({"/3", "save", "smallest file", sandbox.out() + "c.pdf", job});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(sandbox.out() + "c.pdf"), 1);
}

TEST(converter, no_profile_or_an_empty_one_gives_a_pdf_with_ghostscripts_defaults) {
    ConverterHarness sandbox;
    const auto job = sandbox.writeJob("job.ps", {"PLAIN"});
    sandbox.writeUserProfile("Empty", "");

    for (const std::string profile : {"", "No Such Profile", "Empty"}) {
        const auto pdf = sandbox.out() + "plain.pdf";
        const auto result = sandbox.run({"/3", "save", profile, pdf, job});
        ASSERT_EQ(result.exitCode, 0) << "[" << profile << "] " << result.output;
        EXPECT_EQ(pdfPages(pdf), 1) << profile;
        std::filesystem::remove(pdf);
    }
}

TEST(converter, merge_joins_pdf_files_in_the_given_order) {
    ConverterHarness sandbox;
    const auto a = sandbox.out() + "a.pdf";
    const auto b = sandbox.out() + "b.pdf";
    ASSERT_EQ(sandbox.run({"/3", "save", "", a, sandbox.writeJob("a.ps", {"APPLE"})}).exitCode, 0);
    ASSERT_EQ(sandbox.run({"/3", "save", "", b, sandbox.writeJob("b.ps", {"BANANA", "CHERRY"})}).exitCode, 0);

    const auto merged = sandbox.out() + "merged.pdf";
    const auto result = sandbox.run({"/m", merged, b, a});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(pdfPages(merged), 3);
    EXPECT_TRUE(inOrder(pdfText(merged), {"BANANA", "CHERRY", "APPLE"})) << pdfText(merged);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), (Names{"a.pdf", "b.pdf", "merged.pdf"}));
}

TEST(converter, an_existing_output_is_replaced_on_success) {
    ConverterHarness sandbox;
    const auto pdf = sandbox.out() + "again.pdf";
    {
        std::ofstream old(pdf);
        old << "an old version";
    }
    const auto result = sandbox.run({"/3", "save", "", pdf, sandbox.writeJob("job.ps", {"NEWER"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_NE(pdfText(pdf).find("NEWER"), std::string::npos);
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.out()), Names{"again.pdf"});
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

TEST(converter, open_and_email_hand_the_finished_result_to_the_desktop) {
    ConverterHarness sandbox;
    // Stand-ins for the desktop's programs, found first on the path, that write down their words.
    const std::string bin = sandbox.home() + "bin/";
    for (const std::string program : {"xdg-open", "xdg-email"}) {
        std::filesystem::create_directories(bin);
        std::ofstream script(bin + program);
        script << "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" << sandbox.home() << program << ".words'\n";
        script.close();
        std::filesystem::permissions(bin + program, std::filesystem::perms::owner_all);
    }
    pl::test::ScopedEnv path("PATH", bin + ":" + std::getenv("PATH"));
    const auto waitForWords = [&](const std::string& program) {
        const std::string file = sandbox.home() + program + ".words";
        for (int i = 0; i < 100 && !std::filesystem::exists(file); ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        std::ifstream in(file);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    };

    const auto pdf = sandbox.out() + "Brief an M\xC3\xBCller.pdf";
    auto result = sandbox.run({"/3", "delps,save,open,nocode", "", pdf, sandbox.writeJob("a.ps", {"OPEN"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(waitForWords("xdg-open"), pdf + "\n");

    result = sandbox.run({"/3", "delps,email", "PNG Images", sandbox.out() + "mail - %02d.png",
                          sandbox.writeJob("b.ps", {"ONE", "TWO"})});
    ASSERT_EQ(result.exitCode, 0) << result.output;
    EXPECT_EQ(waitForWords("xdg-email"),
              "--attach\n" + sandbox.out() + "mail - 01.png\n--attach\n" + sandbox.out() + "mail - 02.png\n");
    EXPECT_EQ(ConverterHarness::namesIn(sandbox.jobs()), Names{});
}
