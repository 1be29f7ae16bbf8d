#include "naming/title_cleanup.h"

#include "support/recording_errors.h"

#include <gtest/gtest.h>

using namespace pl;
using naming::ParsePdfFileName;

namespace {

std::string repeat(std::string_view piece, int times) {
    std::string out;
    for (int i = 0; i < times; ++i)
        out += piece;
    return out;
}

} // namespace

TEST(title_cleanup, turns_real_world_titles_into_file_names) {
    const std::pair<std::string, std::string> cases[] = {
        {"MICROSOFT EXCEL - Budget 2024.xlsx", "Budget 2024"},
        {"Notes.txt - Editor", "Notes - "}, // the Windows editors put their name behind the document's
        {"Größenvergleich 2024", "Größenvergleich 2024"},
        {"", ""},
        // Extensions and application names go wherever they stand, longest first, in one pass.
        {"my.document", "myument"},
        {"Editorial", "ial"},
        {"Plan.DOCX", "Plan"},
        {"x.t.txtxt", "x.txt"},
        // Characters file names cannot hold.
        {"a*b?c|d\"e", "a-b-c-d\"e"},
        {"x>y", "x]y"},
        {"x<y", "x[y"},
        {"Q1 > Q2 < Q3", "Q1 ] Q2  Q3"}, // the "<" after a ">" opens a hex group, which the decoder drops
        {"Report: Q1/Q2", "Report  Q1"}, // the URL decoder cuts at the slash first
        // Leading blanks, then one line break, go once each.
        {"   Title", "Title"},
        {" \r\n Title", " Title"},
        // Only the last 171 characters are kept, counted as characters, not bytes.
        {repeat("a", 29) + repeat("b", 170) + "Z", repeat("b", 170) + "Z"},
        {repeat("c", 171), repeat("c", 171)},
        {repeat("ä", 200), repeat("ä", 171)},
        // Hexadecimal titles; a UTF-16 byte-order mark stays as two characters; only the last group survives.
        {"<48616C6C6F>", "Hallo"},
        {"<FEFF0047007200F600DF0065002E0064006F00630078>", "\u00FE\u00FFGröße"},
        {"<004B20AC>", "K \u00AC"},
        {"<41> and <42>", "and B"},
        // URL titles: escapes below "%32" (read as a decimal number) stay, the others are hexadecimal.
        {"file:///C:/temp/a%41b.html", "-C -temp-aAb"},
        {"http://www.example.com/reports/q1.html", "www.example.com"},
        {"Annual+Report", "Annual Report"},
        {"a%20b", "a%20b"},
        {"a%41b", "aAb"},
        {"%31%32", "%312"},
        {"%99", "\xC2\x99"},
        // PostScript octal escapes; a backslash an escape produced is not decoded again.
        {"Gr\\374\\337e", "Grüße"},
        {"(Budget\\051", "(Budget)"},
        {"Nr\\389", "Nr-389"},
        {"\\777", "\u01FF"},
        {"\\134101", "-101"},
    };
    for (const auto& [title, expected] : cases) {
        test::RecordingErrors errors;
        std::string cleaned = title;
        ParsePdfFileName(cleaned, errors);
        EXPECT_EQ(cleaned, expected) << title;
        EXPECT_TRUE(errors.entries.empty()) << title;
    }
}

TEST(title_cleanup, a_bad_hex_pair_is_reported_and_the_title_left_as_far_as_it_got) {
    test::RecordingErrors errors;
    std::string title = repeat("x", 200) + "<4G>";
    ParsePdfFileName(title, errors);
    ASSERT_EQ(errors.entries.size(), 1u);
    EXPECT_EQ(errors.entries[0].tag, "ParsePDFName.ParsePdfFileName");
    EXPECT_EQ(errors.entries[0].number, err::TypeMismatch);
    EXPECT_EQ(title, repeat("x", 167) + "<4G>"); // the cut to 171 characters had happened; nothing after it
}
