#include "naming/title_extraction.h"

#include "recording_sink.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#if __has_include(<sys/resource.h>)
#include <sys/resource.h>
#define PAPERLARK_HAVE_RUSAGE 1
#endif

using namespace pl;
using naming::GetPsFileTitle;
using naming::NamingState;

namespace {

// A job as printer drivers write it: header comments, the title somewhere among them, a body.
std::string job(std::string_view titleLine, std::string_view eol = "\r\n") {
    std::string out;
    for (std::string_view line : {std::string_view("%!PS-Adobe-3.0"), std::string_view("%%Creator: PScript5.dll"),
                                  titleLine, std::string_view("%%Pages: (atend)"), std::string_view("%%EndComments"),
                                  std::string_view("0 0 moveto 100 100 lineto stroke"), std::string_view("showpage")})
        (out += line) += eol;
    return out;
}

std::string titleOf(const std::string& path, NamingState& state) {
    test::RecordingSink sink;
    std::string title = GetPsFileTitle(path, state, sink);
    EXPECT_TRUE(sink.reports.empty());
    return title;
}

std::string titleOfJob(const test::TempDir& dir, const std::string& content) {
    NamingState state;
    const std::string title = titleOf(dir.write("job.ps", content), state);
    EXPECT_EQ(state.title, title) << "the title is left for the dialog as well";
    return title;
}

// A file of `prefix`, then `zeros` zero bytes that take no disk space, then `suffix`.
std::string writeSparse(const test::TempDir& dir, const std::string& prefix, std::uintmax_t zeros,
                        const std::string& suffix) {
    const std::string path = dir.write("huge.ps", prefix);
    std::filesystem::resize_file(path, prefix.size() + zeros);
    std::ofstream(path, std::ios::binary | std::ios::app) << suffix;
    return path;
}

long peakMemoryKiB() {
#ifdef PAPERLARK_HAVE_RUSAGE
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
#else
    return 0;
#endif
}

constexpr std::uintmax_t hugeLine = 300u * 1024 * 1024;

} // namespace

TEST(title_extraction, proposes_the_cleaned_title_of_real_jobs) {
    test::TempDir dir;
    EXPECT_EQ(titleOfJob(dir, job("%%Title: Microsoft Word - Quarterly Report.docx")), "Quarterly Report");
    EXPECT_EQ(titleOfJob(dir, job("%%Title: Untitled 1", "\n")), "Untitled 1");
    EXPECT_EQ(titleOfJob(dir, job("%%Title: <FEFF005200E900730075006D00E9>")), "\u00FE\u00FFRésumé");
    EXPECT_EQ(titleOfJob(dir, job("%%Title: (Gr\\374\\337e an alle)")), "(Grüße an alle)");
    EXPECT_EQ(titleOfJob(dir, job("%%Title: http://intranet.example.com/news/today.html")), "intranet.example.com");
    // An 8-bit file: the bytes are Latin-1 text.
    EXPECT_EQ(titleOfJob(dir, job("%%Title: Gr\xF6\xDF"
                                  "e.txt")),
              "Größe");
}

TEST(title_extraction, takes_the_first_title_line_wherever_it_is) {
    test::TempDir dir;
    std::string body;
    for (int i = 0; i < 5000; ++i)
        body += "%%BeginFeature: *PageSize A4\n0 0 moveto\n%%EndFeature\n";
    EXPECT_EQ(titleOfJob(dir, body + "gsave %%title: Late Title\n%%Title: Second\n"), "Late Title");
}

TEST(title_extraction, drops_the_character_after_the_colon) {
    test::TempDir dir;
    EXPECT_EQ(titleOfJob(dir, job("%%TITLE:Report")), "eport");
    EXPECT_EQ(titleOfJob(dir, job("%%Title:    Report")), "Report");
}

TEST(title_extraction, gives_the_same_title_for_every_kind_of_line_end) {
    test::TempDir dir;
    for (std::string_view eol : {"\r\n", "\n", "\r"}) {
        EXPECT_EQ(titleOfJob(dir, job("%%Title: Monthly Figures.xlsx", eol)), "Monthly Figures");
        EXPECT_EQ(titleOfJob(dir, job("%%Title:", eol)), "Paperlark File");
    }
}

TEST(title_extraction, falls_back_only_when_no_title_was_found) {
    test::TempDir dir;
    EXPECT_EQ(titleOfJob(dir, job("%%Subject: none")), "Paperlark File");
    EXPECT_EQ(titleOfJob(dir, ""), "Paperlark File");
    // A title that the clean-up empties stays empty.
    EXPECT_EQ(titleOfJob(dir, job("%%Title: .pdf")), "");
}

TEST(title_extraction, paths_in_titles_become_part_of_the_name) {
    test::TempDir dir;
    EXPECT_EQ(titleOfJob(dir, job("%%Title: C:\\Docs\\Letter.doc")), "C -Docs-Letter");
}

TEST(title_extraction, cuts_a_half_cleaned_title_at_its_last_separator) {
    test::TempDir dir;
    NamingState state;
    test::RecordingSink sink;
    const std::string title = GetPsFileTitle(dir.write("job.ps", job("%%Title: C:\\Scans\\Page <4G>")), state, sink);
    ASSERT_EQ(sink.reports.size(), 1u);
    EXPECT_EQ(sink.reports[0].tag, "ParsePDFName.ParsePdfFileName");
    EXPECT_EQ(title, "Page <4G>");
    EXPECT_EQ(state.title, "Page <4G>");
}

TEST(title_extraction, an_unreadable_job_gives_the_fallback_but_leaves_the_title_empty) {
    test::TempDir dir;
    NamingState state;
    state.title = "previous job";
    EXPECT_EQ(titleOf(dir.folder() + "missing.ps", state), "Paperlark File");
    EXPECT_EQ(state.title, "");
    state.title = "previous job";
    EXPECT_EQ(titleOf(dir.path().string(), state), "Paperlark File");
    EXPECT_EQ(state.title, "");
}

TEST(title_extraction, finds_a_title_line_that_straddles_two_read_blocks) {
    test::TempDir dir;
    const std::string line = "%%Title: Straddle\r\n";
    const std::size_t boundary = naming::TitleReadBlockSize;
    for (std::size_t start = boundary - line.size() - 1; start <= boundary + 1; ++start) {
        std::string filler = "%!PS\n";
        while (filler.size() < start)
            filler += "0 0 moveto\n";
        filler.resize(start - 1);
        filler += '\n';
        EXPECT_EQ(titleOfJob(dir, filler + line + "%%Title: wrong\n"), "Straddle") << "line at byte " << start;
    }
}

TEST(title_extraction, reads_a_huge_line_without_line_breaks_in_bounded_memory) {
    test::TempDir dir;
    const std::string path = writeSparse(dir, "%!PS\n", hugeLine, "\n%%Title: After The Flood\n");
    const long before = peakMemoryKiB();
    NamingState state;
    EXPECT_EQ(titleOf(path, state), "After The Flood");
#ifdef PAPERLARK_HAVE_RUSAGE
    EXPECT_LT(peakMemoryKiB() - before, 16 * 1024) << "peak memory grew by KiB";
#endif
}

TEST(title_extraction, keeps_the_end_of_a_huge_title_line) {
    test::TempDir dir;
    const std::string path = writeSparse(dir, "%%Title: A", hugeLine, "Tail\r\n%%EOF\n");
    const long before = peakMemoryKiB();
    NamingState state;
    EXPECT_EQ(titleOf(path, state), std::string(167, '\0') + "Tail");
#ifdef PAPERLARK_HAVE_RUSAGE
    EXPECT_LT(peakMemoryKiB() - before, 16 * 1024) << "peak memory grew by KiB";
#endif
}
