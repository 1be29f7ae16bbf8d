#include "naming/title_cleanup.h"

#include "base/text.h"
#include "recording_sink.h"

#include <gtest/gtest.h>

using namespace pl;
using naming::ParsePdfFileName;

namespace {

// The cleaned title; the clean-up must not report an error for any of these.
std::string cleaned(std::string title) {
    test::RecordingSink sink;
    ParsePdfFileName(title, sink);
    EXPECT_TRUE(sink.reports.empty()) << "unexpected error report for " << title;
    return title;
}

std::string repeat(std::string_view piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i)
        out += piece;
    return out;
}

} // namespace

TEST(title_cleanup, office_titles_lose_application_name_and_extension) {
    EXPECT_EQ(cleaned("Microsoft Word - Quarterly Report.docx"), "Quarterly Report");
    EXPECT_EQ(cleaned("Microsoft Word - Brief.docx"), "Brief");
    EXPECT_EQ(cleaned("MICROSOFT EXCEL - Budget 2024.xlsx"), "Budget 2024");
    EXPECT_EQ(cleaned("Microsoft PowerPoint - Kickoff.pptx"), "Kickoff");
    EXPECT_EQ(cleaned("Microsoft Outlook - Memo.msg"), "Memo");
    // The Windows editors put their name behind the document's.
    EXPECT_EQ(cleaned("Notes.txt - Editor"), "Notes - ");
    EXPECT_EQ(cleaned("Letter.rtf - WordPad"), "Letter - ");
}

TEST(title_cleanup, plain_titles_pass_unchanged) {
    EXPECT_EQ(cleaned("Untitled 1"), "Untitled 1");
    EXPECT_EQ(cleaned("Größenvergleich 2024"), "Größenvergleich 2024");
    EXPECT_EQ(cleaned(""), "");
}

TEST(title_cleanup, extensions_and_application_names_go_wherever_they_stand) {
    EXPECT_EQ(cleaned("my.document"), "myument");
    EXPECT_EQ(cleaned("a.PS"), "a");
    EXPECT_EQ(cleaned("Report.doc - Compatibility Mode"), "Report - Compatibility Mode");
    EXPECT_EQ(cleaned("Editorial"), "ial");
    // One pass only: a removal that joins a new extension leaves it.
    EXPECT_EQ(cleaned("x.t.txtxt"), "x.txt");
    // Longer extensions first: ".docx" is not left as "x".
    EXPECT_EQ(cleaned("Plan.DOCX"), "Plan");
    EXPECT_EQ(cleaned("scan.tiff"), "scan");
    EXPECT_EQ(cleaned("page.html"), "page");
}

TEST(title_cleanup, characters_file_names_cannot_hold_are_replaced) {
    EXPECT_EQ(cleaned("a*b?c|d\"e"), "a-b-c-d\"e");
    EXPECT_EQ(cleaned("x>y"), "x]y");
    EXPECT_EQ(cleaned("x<y"), "x[y");
    // A "<" after a ">" opens a hexadecimal group for the decoder, which drops it.
    EXPECT_EQ(cleaned("Q1 > Q2 < Q3"), "Q1 ] Q2  Q3");
    EXPECT_EQ(cleaned("C:\\Docs\\Letter.doc"), "C -Docs-Letter");
    EXPECT_EQ(cleaned("Report: Q1/Q2"), "Report  Q1"); // the URL decoder cuts at the slash first
}

TEST(title_cleanup, leading_blanks_then_line_breaks_are_removed_once_each) {
    EXPECT_EQ(cleaned("   Title"), "Title");
    EXPECT_EQ(cleaned(" \r\n Title"), " Title");
    EXPECT_EQ(cleaned("\n\r Title"), "\r Title");
    EXPECT_EQ(cleaned("Title  "), "Title  ");
}

TEST(title_cleanup, long_titles_keep_their_last_171_characters) {
    const std::string tail = repeat("b", 170) + "Z";
    EXPECT_EQ(cleaned(repeat("a", 29) + tail), tail);
    EXPECT_EQ(cleaned(repeat("c", 170)), repeat("c", 170));
    EXPECT_EQ(cleaned(repeat("c", 171)), repeat("c", 171));
    // Characters, not bytes: 200 umlauts keep 171 umlauts.
    EXPECT_EQ(cleaned(repeat("ä", 200)), repeat("ä", 171));
    EXPECT_EQ(text::length(cleaned(repeat("€", 180))), 171u);
}

TEST(title_cleanup, application_hex_titles_are_decoded) {
    EXPECT_EQ(cleaned("<48616C6C6F>"), "Hallo");
    // UTF-16 with byte-order mark: the mark's bytes stay as two characters.
    EXPECT_EQ(cleaned("<FEFF00480069>"), "\u00FE\u00FFHi");
    EXPECT_EQ(cleaned("<FEFF0047007200F600DF0065002E0064006F00630078>"), "\u00FE\u00FFGröße");
    // A unit above 00FF becomes one character per byte.
    EXPECT_EQ(cleaned("<004B20AC>"), "K \u00AC");
    // Of several groups only the last survives, with the text before it.
    EXPECT_EQ(cleaned("<41> and <42>"), "and B");
}

TEST(title_cleanup, url_titles_are_decoded) {
    EXPECT_EQ(cleaned("file:///C:/temp/a%41b.html"), "-C -temp-aAb");
    EXPECT_EQ(cleaned("http://www.example.com/reports/q1.html"), "www.example.com");
    EXPECT_EQ(cleaned("FTP://files.example.org/pub/x"), "files.example.org");
    EXPECT_EQ(cleaned("Annual+Report"), "Annual Report");
    EXPECT_EQ(cleaned("a%20b"), "a%20b");
    EXPECT_EQ(cleaned("a%41b"), "aAb");
    EXPECT_EQ(cleaned("a%2Fb"), "a%2Fb");
}

TEST(title_cleanup, postscript_octal_escapes_are_decoded) {
    EXPECT_EQ(cleaned("Gr\\374\\337e"), "Grüße");
    EXPECT_EQ(cleaned("(Budget\\051"), "(Budget)");
    // Not three octal digits: left as it is, and the backslash becomes a hyphen like any other.
    EXPECT_EQ(cleaned("Nr\\389"), "Nr-389");
    EXPECT_EQ(cleaned("\\1"), "-1");
}

TEST(title_cleanup, a_bad_hex_pair_is_reported_and_the_title_left_as_far_as_it_got) {
    test::RecordingSink sink;
    std::string title = repeat("x", 200) + "<4G>";
    ParsePdfFileName(title, sink);
    ASSERT_EQ(sink.reports.size(), 1u);
    EXPECT_EQ(sink.reports[0].tag, "ParsePDFName.ParsePdfFileName");
    EXPECT_EQ(sink.reports[0].number, err::TypeMismatch);
    // The cut to 171 characters had happened; nothing after it.
    EXPECT_EQ(title, repeat("x", 167) + "<4G>");
    EXPECT_EQ(sink.reports[0].data, title);
}
