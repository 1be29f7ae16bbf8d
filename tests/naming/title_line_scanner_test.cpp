#include "naming/title_line_scanner.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using pl::naming::TitleLineScanner;

namespace {

// The raw title found in `input` fed in pieces of `piece` bytes (nothing when no title line).
std::optional<std::string> scan(std::string_view input, std::size_t piece) {
    TitleLineScanner scanner;
    bool done = false;
    for (std::size_t at = 0; at < input.size() && !done; at += piece)
        done = scanner.feed(input.substr(at, piece));
    scanner.finish();
    if (!scanner.found())
        return std::nullopt;
    return scanner.rawTitle();
}

struct Case {
    std::string input;
    std::optional<std::string> title;
};

} // namespace

TEST(title_line_scanner, finds_the_same_title_however_the_input_is_split) {
    const Case cases[] = {
        {"%!PS-Adobe-3.0\r\n%%Title: Report 2004\r\n%%Pages: 1\r\n", "Report 2004"},
        {"%%TITLE:Report\n", "eport"},                // the character after the colon goes
        {"%%Title:\xC3\x84rger\n", "rger"},           // ... a whole UTF-8 character
        {"%%Title:\xC4rger\r", "rger"},               // ... or one Latin-1 byte
        {"%%Title:\xE2\x82", "\x82"},                 // ... or a broken sequence's first byte
        {"x %%tItLe:    spaced  \rrest", "spaced  "}, // anywhere in a line, any case
        {"%%%Title: T", "T"},                         // a third "%" in front
        {"%%Title: A\n%%Title: B\n", "A"},            // the first line wins
        {"%%Title: Mac\rNext line", "Mac"},           // CR alone ends a line
        {"%%Title: Unix\nNext line", "Unix"},         //
        {"%%Title:\r\n%%Title: late", ""},            // nothing after the colon
        {"%%Title: \n", ""},                          //
        {"abc%%Title:", ""},                          // the marker ends the file
        {"%%Titl: x\n%%Title x\n%Title: y\n%%Title\n:z", std::nullopt},
        {"", std::nullopt},
    };
    for (const Case& c : cases) {
        for (std::size_t piece = 1; piece <= c.input.size() + 1; ++piece)
            EXPECT_EQ(scan(c.input, piece), c.title) << "input \"" << c.input << "\" in pieces of " << piece;
    }
}

TEST(title_line_scanner, keeps_only_the_end_of_a_very_long_title) {
    const std::string tail = "End Of Title";
    const std::string input = "%%Title: " + std::string(300 * 1024, 'x') + tail + "\r\nmore";
    for (std::size_t piece : {std::size_t{1000}, std::size_t{4096}, std::size_t{65537}, input.size()}) {
        const auto title = scan(input, piece);
        ASSERT_TRUE(title.has_value());
        EXPECT_EQ(title->size(), TitleLineScanner::MaxTitleBytes) << "pieces of " << piece;
        EXPECT_TRUE(title->ends_with("x" + tail)) << "pieces of " << piece;
    }
    // Blanks in front of a long title are trimmed before it is cut, not after.
    const std::string blanks = "%%Title: " + std::string(100 * 1024, ' ') + "short\n";
    EXPECT_EQ(scan(blanks, 4096), "short");
}
