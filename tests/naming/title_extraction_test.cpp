#include "naming/title_extraction.h"

#include "support/recording_errors.h"
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
std::string job(const std::string& titleLine, const std::string& eol) {
    return "%!PS-Adobe-3.0" + eol + "%%Creator: PScript5.dll" + eol + titleLine + eol + "%%Pages: (atend)" + eol +
           "%%EndComments" + eol + "0 0 moveto 100 100 lineto stroke" + eol + "showpage" + eol;
}

std::string titleOf(const std::string& path, NamingState& state) {
    test::RecordingErrors errors;
    std::string title = GetPsFileTitle(path, state, errors);
    EXPECT_TRUE(errors.entries.empty());
    return title;
}

std::string titleOfJob(const test::TempDir& dir, const std::string& content) {
    NamingState state;
    const std::string title = titleOf(dir.write("job.ps", content), state);
    EXPECT_EQ(state.title, title) << "the title is left for the dialog as well";
    return title;
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

} // namespace

TEST(title_extraction, proposes_the_same_cleaned_title_for_every_kind_of_line_end) {
    const std::pair<std::string, std::string> cases[] = {
        {"%%Title: Microsoft Word - Quarterly Report.docx", "Quarterly Report"},
        {"%%Title: <FEFF005200E900730075006D00E9>", "\u00FE\u00FFRésumé"},
        {"%%Title: (Gr\\374\\337e an alle)", "(Grüße an alle)"},
        {"%%Title: Gr\xF6\xDF.txt", "Größ"}, // an 8-bit file: the bytes are Latin-1 text
        {"%%Title: C:\\Docs\\Letter.doc", "C -Docs-Letter"},
        // The character right after the colon goes, a whole UTF-8 character included; blanks then.
        {"%%TITLE:Report", "eport"},
        {"%%Title:\xC3\x84rger", "rger"},
        {"%%Title:    Report", "Report"},
        {"x %%tItLe:    spaced  ", "spaced  "}, // anywhere in a line, any case
        {"%%%Title: T", "T"},
        {"%%Title: " + std::string(100 * 1024, ' ') + "short", "short"}, // blanks trimmed before the cut
        // No title: the fallback; a title the clean-up empties stays empty.
        {"%%Title:", "Paperlark File"},
        {"%%Titl: x %Title: y %%Title x", "Paperlark File"},
        {"%%Title: .pdf", ""},
    };
    test::TempDir dir;
    for (const std::string eol : {"\r\n", "\n", "\r"}) {
        for (const auto& [line, expected] : cases)
            EXPECT_EQ(titleOfJob(dir, job(line, eol)), expected) << line << " with line end " << eol.size();
    }
    EXPECT_EQ(titleOfJob(dir, ""), "Paperlark File");
}

TEST(title_extraction, finds_the_first_title_line_even_across_read_blocks) {
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

TEST(title_extraction, reads_huge_lines_without_line_breaks_in_bounded_memory) {
    // 300 MiB of zeros that take no disk space before the title line and inside it (a NUL ends the
    // title), and 32 MiB of letters inside it (only its end is kept).
    const std::string cases[][4] = {{"%!PS\n", "\n%%Title: After The Flood\n", "After The Flood", ""},
                                    {"%%Title: Head", "Tail\r\n%%EOF\n", "Head", ""},
                                    {"%%Title: A", "Tail\r\n%%EOF\n", std::string(167, 'x') + "Tail", "x"}};
    for (const auto& [prefix, suffix, expected, fill] : cases) {
        test::TempDir dir;
        const std::string path = dir.write("huge.ps", prefix);
        if (fill.empty()) {
            std::filesystem::resize_file(path, prefix.size() + 300u * 1024 * 1024);
        } else {
            std::ofstream out(path, std::ios::binary | std::ios::app);
            const std::string letters(1024 * 1024, fill[0]);
            for (int i = 0; i < 32; ++i)
                out << letters;
        }
        std::ofstream(path, std::ios::binary | std::ios::app) << suffix;
        const long before = peakMemoryKiB();
        NamingState state;
        EXPECT_EQ(titleOf(path, state), expected);
#ifdef PAPERLARK_HAVE_RUSAGE
        EXPECT_LT(peakMemoryKiB() - before, 16 * 1024) << "peak memory grew by KiB";
#endif
    }
}
